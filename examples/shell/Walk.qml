import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// Uses the shell as somebody at the screen would, says what is seen, and ends the program: with 0
// if all was seen. Beside it run the programs of the script "session", which reads along.
Item {
    id: walk

    required property Applications applications
    required property Launcher launcher
    required property NotificationCentre centre
    required property PopupStack popups
    required property Tip toast
    required property TrayBar trayBar
    required property string pictures

    readonly property int _narrow: 840 // The pop-ups show, and the list of the centre does not.
    property int _step: 0
    property int _saved: 0

    // What is said when it is seen, when it is seen, and what is done before.
    readonly property var _steps: [
        ["The launcher lists the programs, and not the hidden one",
         () => launcher.grid.count === 15 && _tile("Writer") && !_tile("Background Agent")],
        ["Typed two words: the spreadsheet is the best match",
         () => launcher.grid.count === 1 && _tile("Spreadsheets"),
         () => launcher.search.text = "tab sprea"],
        ["Pressed Enter: it is running",
         () => _tile("Spreadsheets").running,
         () => launcher.search.accepted()],
        ["Chose a category",
         () => launcher.grid.count === 4 && _tile("Mail"),
         () => { launcher.search.clear(); applications.category = "Office"; }],
        ["Chose all of them again", () => _tile("Broken"), () => applications.category = ""],
        ["Started a program that fails: it says why, and what to do",
         () => toast.visible && /^Broken: .*\n.*terminal/.test(toast.text),
         () => _tile("Broken").clicked()],
        ["Started another", () => _tile("Chat").running,
         () => { toast.close(); _tile("Chat").clicked(); }],
        ["Stopped it", () => !_tile("Chat").running, () => _tile("Chat").stopRequested()],
        ["The menu of a program has its actions",
         () => launcher.menu.opened && launcher.menu.list.count === 4,
         () => _tile("Calendar").menuRequested(40, 40)],
        ["Chose one of them: it is running", () => _tile("Calendar").running,
         () => launcher.menu.choose(3)],
        ["Four notifications came, and three pop up",
         () => centre.list.count === 4 && popups.list.count === 3],
        ["One was updated in its place",
         () => _card("Downloaded") && _card("Downloaded").notification.progress === 100],
        ["Three tray items came, one with a label",
         () => trayBar.items.count === 3 && _trayItem("Cloud storage") && _trayItem("Cloud storage").width > 60],
        ["Opened the menu of a tray item", () => trayBar.menu.opened && trayBar.menu.list.count === 6,
         () => _trayItem("Cloud storage").click(Qt.RightButton)],
        ["Wrote the picture of the menu and the pop-ups", () => _saved === 1,
         () => _save("demo-menu.png")],
        ["Chose from it", () => !trayBar.menu.opened, () => trayBar.menu.choose(0)],
        ["Opened it by a click", () => trayBar.menu.opened && trayBar.menu.list.count === 6,
         () => _trayItem("Cloud storage").click(Qt.LeftButton)],
        ["Entered its submenu", () => trayBar.menu.list.count === 3, () => trayBar.menu.choose(3)],
        ["Chose from that", () => !trayBar.menu.opened, () => trayBar.menu.choose(1)],
        ["Clicked two items with the left and the middle button: the stopped one is grey",
         () => _trayItems().filter(item => item.opacity < 0.5).length === 1,
         () => _trayItems().forEach(item => { item.click(Qt.LeftButton); item.click(Qt.MiddleButton); })],
        ["Dismissed a pop-up; it stays in the list",
         () => popups.list.count === 2 && centre.list.count === 4,
         () => _items(popups.list)[0].dismissed()],
        ["Widened the window: the list is in view, and the pop-ups are gone",
         () => popups.list.count === 0 && _card("New message from Anna"),
         () => walk.Window.window.width = 1200],
        ["Wrote the light picture", () => _saved === 2, () => _save("demo.png")],
        ["Wrote the dark picture", () => _saved === 3,
         () => { Theme.scheme = "dark"; _save("demo-dark.png"); }],
        ["Chose an action: the notification left the list", () => !_card("New message from Anna"),
         () => _card("New message from Anna").buttons.itemAt(0).clicked()],
        ["Clicked a notification: its program heard", () => !_card("Downloaded"),
         () => _card("Downloaded").activate()],
        ["What is transient pops up beside the list, and is not in it",
         () => popups.list.count === 1 && !_card("Volume")],
        ["Asks not to be disturbed", () => centre.list.count === 2,
         () => { walk.Window.window.width = _narrow; centre.notifications.doNotDisturb = true; }],
        ["Only what is critical pops up then", () => popups.list.count === 1],
        ["Of five of one program three are shown", () => _cards("News") === 3,
         () => walk.Window.window.width = 1200],
        ["And the rest on demand", () => _cards("News") === 5, () => centre.unfold("News")],
        ["Cleared the list", () => centre.list.count === 0 && popups.list.count === 0,
         () => centre.notifications.clear()],
        ["Opened the menu of a program that hangs: it says so",
         () => trayBar.menu.opened && trayBar.menu.said.endsWith("not answer"),
         () => _trayItem("Cloud storage").click(Qt.RightButton)]
    ]

    function _items(view) {
        const items = [];
        for (let row = 0; row < view.count; ++row)
            items.push(view.itemAtIndex ? view.itemAtIndex(row) : view.itemAt(row));
        return items.filter(item => item !== null);
    }

    function _tile(name) {
        return _items(launcher.grid).find(tile => tile.text === name);
    }

    function _card(summary) {
        return _items(centre.list).find(card => card.text === summary);
    }

    function _cards(program) {
        return _items(centre.list).filter(card => card.notification.appName === program).length;
    }

    function _trayItem(title) {
        return _items(trayBar.items).find(item => item.text === title);
    }

    function _trayItems() {
        return _items(trayBar.items).filter(item => item.text === "Tray item example");
    }

    function _save(name) {
        // What moves has settled by then.
        settled.then = () => Window.contentItem.grabToImage(result => {
            if (result.saveToFile(pictures + "/" + name))
                ++_saved;
        });
        settled.restart();
    }

    Component.onCompleted: {
        popups.lifetime = 600000; // Here the pop-ups wait to be seen.
        Window.window.width = _narrow;
        Theme.scheme = "light";
    }

    Timer {
        id: settled

        property var then

        interval: 4 * Theme.moment
        onTriggered: then()
    }
    Timer {
        property int looks: 0

        interval: 50
        repeat: true
        running: true
        onTriggered: {
            const [sentence, seen, act] = walk._steps[walk._step];
            if (looks++ === 0) {
                if (act)
                    act();
            } else if (seen()) {
                console.log(sentence);
                looks = 0;
                if (++walk._step === walk._steps.length)
                    Qt.exit(0);
            } else if (looks > 1200) {
                console.log("This was not seen: " + sentence);
                Qt.exit(1);
            }
        }
    }
}

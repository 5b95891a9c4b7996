import QtQuick 2.15

// Uses the shell as somebody at the screen would, says what is seen, and ends the program: with 0
// if all was seen. Beside it run the programs of the script "session".
Item {
    id: walk

    required property Item launcher
    required property Item centre
    required property Item popup
    required property Item toast
    required property Item tray
    required property Item page
    required property string pictures

    signal schemeChosen(string scheme)

    property int _step: 0
    property int _saved: 0

    // Each step waits for what shall come, after something that it may do, and says what was seen.
    readonly property var _steps: [
        {
            what: "the list of applications",
            seen: () => launcher.grid.count > 0,
            say: () => "The launcher lists " + launcher.grid.count + " applications"
        }, {
            what: "two running programs",
            act: () => { _tile(1).clicked(); _tile(3).clicked(); },
            seen: () => _tile(1).isRunning && _tile(3).isRunning,
            say: () => "Launched " + _tile(1).name + " and " + _tile(3).name + ": both are running"
        }, {
            what: "the sentence about the running program",
            act: () => _tile(3).clicked(),
            seen: () => toast.shown,
            say: () => "Launched it again: " + toast.text
        }, {
            what: "three notifications and a pop-up",
            seen: () => centre.list.count === 3 && popup.shown && _card().buttons.count > 0,
            say: () => "A notification came and pops up: \"" + _card().summary + "\" with "
                       + _card().buttons.count + " actions"
        }, {
            what: "a tray item",
            seen: () => tray.list.count > 0 && _trayItem().title !== "",
            say: () => "A tray item came: \"" + _trayItem().title + "\""
        }, {
            what: "pop-up and sentence in full view",
            act: () => schemeChosen("light"),
            seen: () => popup.settled && toast.opacity === 1,
            say: () => "Everything is on the screen"
        }, {
            what: "the light picture",
            act: () => _save("demo.png"),
            seen: () => _saved === 1,
            say: () => "Wrote " + pictures + "/demo.png"
        }, {
            what: "the dark picture",
            act: () => { schemeChosen("dark"); _save("demo-dark.png"); },
            seen: () => _saved === 2,
            say: () => "Wrote " + pictures + "/demo-dark.png"
        }, {
            what: "the end of the pop-up",
            seen: () => !popup.shown && centre.list.count === 3,
            say: () => "The pop-up left by itself; the notification stays in the list"
        }, {
            what: "the end of the notification that was answered",
            act: () => _card().buttons.itemAt(0).clicked(),
            seen: () => centre.list.count === 2,
            say: () => "Chose its first action: the notification left the list"
        }, {
            what: "the clicks",
            act: () => { _trayItem().clicked(); _trayItem().secondaryClicked(); },
            seen: () => true,
            say: () => "Clicked the tray item with the left and the right button"
        }, {
            what: "the end of the two programs",
            act: () => { _tile(1).stopRequested(); _tile(3).stopRequested(); },
            seen: () => !_tile(1).isRunning && !_tile(3).isRunning,
            say: () => "Stopped " + _tile(1).name + " and " + _tile(3).name
        }
    ]

    function _tile(row) {
        return launcher.grid.itemAtIndex(row).tile;
    }

    function _card() {
        return centre.list.itemAtIndex(0);
    }

    function _trayItem() {
        return tray.list.itemAtIndex(0);
    }

    function _save(name) {
        page.grabToImage(result => {
            if (result.saveToFile(pictures + "/" + name))
                ++_saved;
        });
    }

    function _end(code) {
        poll.stop();
        Qt.exit(code);
    }

    Timer {
        id: poll
        interval: 50
        repeat: true
        running: true
        onTriggered: {
            const step = walk._steps[walk._step];
            if (!step.begun) {
                step.begun = true;
                patience.restart();
                if (step.act)
                    step.act();
            } else if (step.seen()) {
                console.log(step.say());
                if (++walk._step === walk._steps.length)
                    walk._end(0);
            }
        }
    }
    Timer {
        id: patience
        interval: 30000
        onTriggered: {
            console.log("This did not come: " + walk._steps[walk._step].what);
            walk._end(1);
        }
    }
}

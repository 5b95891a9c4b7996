import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQuick.Layouts 1.15
import QtQml.Models 2.15
import Quorvane 1.1

// What is pending, newest first. Of one program three are shown, and the rest is folded, but for
// what is critical.
FocusScope {
    id: centre

    required property Notifications notifications
    property alias list: list
    property alias heading: heading.text
    property bool quiet: false // Do not disturb: the shell pops up what is critical only.
    property date now: new Date()
    property var _unfolded: ({}) // Names of programs.
    property var _folded: ({}) // How many are folded behind the notification of an id.

    function unfold(application) {
        _unfolded = Object.assign({}, _unfolded, { [application]: true });
        pending.arrange();
    }

    DelegateModel {
        id: pending

        function arrange() {
            const seen = {};
            const folded = {};
            for (let i = 0; i < items.count; ++i) {
                const item = items.get(i);
                const of = seen[item.model.appName] || (seen[item.model.appName] = { count: 0 });
                item.inShown = item.model.urgency === 2 || ++of.count <= 3
                               || !!centre._unfolded[item.model.appName];
                if (!item.inShown)
                    folded[of.last] = of.count - 3;
                else if (item.model.urgency !== 2)
                    of.last = item.model.id;
            }
            centre._folded = folded;
            centre.now = new Date();
        }

        model: centre.notifications
        groups: DelegateModelGroup {
            name: "shown"
            includeByDefault: true
        }
        filterOnGroup: "shown"
        items.onChanged: Qt.callLater(arrange)

        delegate: NotificationCard {
            width: list.width
            focused: list.activeFocus && ListView.isCurrentItem
            folded: centre._folded[model.id] || 0
            notification: model
            now: centre.now
            onAnswered: centre.notifications.invoke(model.id, key)
            onDismissed: centre.notifications.dismiss(model.id)
            onUnfolded: centre.unfold(model.appName)
        }
    }
    Timer { // For the ages.
        interval: 30000
        repeat: true
        running: list.count > 0
        onTriggered: centre.now = new Date()
    }

    ColumnLayout {
        anchors { fill: parent; margins: Theme.margin; bottomMargin: 0 }
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            Layout.minimumHeight: 40
            spacing: Theme.gap

            Label {
                id: heading

                Layout.fillWidth: true
                font { bold: true; pixelSize: Theme.headingText }
            }
            PushButton {
                id: hush

                checkable: true
                text: "Quiet"
                Accessible.name: "Do not disturb"
                onToggled: centre.quiet = checked

                Tip {
                    text: "Do not disturb: only what is critical pops up"
                    visible: hush.hovered
                }
            }
            PushButton {
                text: "Clear all"
                visible: centre.notifications.count > 0
                onClicked: centre.notifications.clear()
            }
        }

        ListView {
            id: list

            Layout.fillWidth: true
            Layout.fillHeight: true
            activeFocusOnTab: count > 0
            bottomMargin: Theme.margin
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            model: pending
            spacing: 12
            Accessible.role: Accessible.List
            Accessible.name: "Notifications"
            onCountChanged: if (!activeFocus) currentIndex = 0
            Keys.onDeletePressed: if (currentItem) currentItem.dismissed()
            Keys.onReturnPressed: if (currentItem) currentItem.activate()
            Controls.ScrollBar.vertical: Controls.ScrollBar { }

            EmptyState {
                title: centre.notifications.registered ? "All quiet" : "Shown elsewhere"
                sentence: centre.notifications.registered
                          ? "Messages from your programs will gather here until you deal with them."
                          : "Another program shows the notifications. This one takes over when it leaves."
                visible: list.count === 0
            }
        }
    }
}

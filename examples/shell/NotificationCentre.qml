import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Templates 2.15 as T
import QtQml.Models 2.15
import Quorvane 1.1

// What is pending, newest first. Of one program three are shown, and the rest folded.
FocusScope {
    id: centre

    required property Notifications notifications
    property alias list: list
    property alias heading: heading.text
    property bool quiet: false // Do not disturb: the shell pops up what is critical only.
    property date _now: new Date()
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
                item.inShown = ++of.count <= 3 || !!centre._unfolded[item.model.appName];
                if (item.inShown)
                    of.last = item.model.id;
                else
                    folded[of.last] = of.count - 3;
            }
            centre._folded = folded;
            centre._now = new Date();
        }

        model: centre.notifications
        groups: DelegateModelGroup {
            name: "shown"
            includeByDefault: true
        }
        filterOnGroup: "shown"
        items.onChanged: Qt.callLater(arrange)

        delegate: Column {
            property alias card: card
            readonly property string text: model.summary

            width: list.width
            spacing: 6

            NotificationCard {
                id: card

                width: parent.width
                focused: list.activeFocus && parent.ListView.isCurrentItem
                notification: model
                now: centre._now
                onAnswered: centre.notifications.invoke(model.id, key)
                onDismissed: centre.notifications.dismiss(model.id)
            }
            PushButton {
                objectName: "more"
                text: centre._folded[model.id] + " more from " + (model.appName || "a program")
                visible: model.id in centre._folded
                width: Math.min(implicitWidth, parent.width)
                onClicked: centre.unfold(model.appName)
            }
        }
    }
    Timer { // For the ages.
        interval: 30000
        repeat: true
        running: list.count > 0 && centre.visible
        onTriggered: centre._now = new Date()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin
            Layout.rightMargin: Theme.margin
            Layout.topMargin: Theme.margin
            Layout.minimumHeight: 40
            spacing: Theme.gap

            Label {
                id: heading

                Layout.fillWidth: true
                font { bold: true; pixelSize: Theme.headingText }
            }
            PushButton {
                checkable: true
                prominent: checked
                text: "Quiet"
                Accessible.name: "Do not disturb"
                Accessible.checkable: true
                Accessible.checked: checked
                onToggled: centre.quiet = checked

                Tip {
                    text: "Do not disturb: only what is critical pops up"
                    visible: parent.hovered
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
            Layout.leftMargin: Theme.margin
            Layout.rightMargin: Theme.margin
            activeFocusOnTab: count > 0
            bottomMargin: Theme.margin
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            model: pending
            spacing: 12
            Accessible.role: Accessible.List
            Accessible.name: "Notifications"
            onCountChanged: if (!activeFocus) currentIndex = 0
            Keys.onDeletePressed: if (currentItem) currentItem.card.dismissed()
            Keys.onReturnPressed: if (currentItem) currentItem.card.activate()
            T.ScrollBar.vertical: SlimScrollBar { }

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

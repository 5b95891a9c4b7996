import QtQuick 2.15
import QtQml.Models 2.15
import Quorvane 1.1

// The newest notifications for a while, three at most. They stay in the notification centre.
ListView {
    id: stack

    required property Notifications notifications
    property bool quiet: false
    property int lifetime: 5000

    implicitHeight: contentHeight
    interactive: false
    spacing: 10

    // The pointer over one of them stops the time of all.
    HoverHandler { id: hover }
    Connections {
        target: stack.notifications
        function onPosted(id) { fresh.show(id); }
        function onReplaced(id) { fresh.show(id); }
    }

    model: DelegateModel {
        id: fresh

        function show(id) {
            for (let i = 0; i < items.count; ++i) {
                const item = items.get(i);
                if (item.model.id !== id)
                    continue;
                item.inFresh = !stack.quiet || item.model.urgency === 2;
                if (freshOnes.count > 3)
                    _oldest().inFresh = false;
                return;
            }
        }

        function hide(id) {
            for (let i = 0; i < freshOnes.count; ++i) {
                if (freshOnes.get(i).model.id === id)
                    freshOnes.get(i).inFresh = false;
            }
        }

        // The last to go: what is critical outlasts the rest.
        function _oldest() {
            let row = freshOnes.count - 1;
            while (row > 0 && freshOnes.get(row).model.urgency === 2)
                --row;
            return freshOnes.get(row);
        }

        model: stack.notifications
        groups: DelegateModelGroup {
            id: freshOnes
            name: "fresh"
        }
        filterOnGroup: "fresh"

        delegate: NotificationCard {
            width: stack.width
            notification: model
            now: model.time
            onAnswered: stack.notifications.invoke(model.id, key)
            onDismissed: {
                const id = model.id;
                Qt.callLater(() => fresh.hide(id)); // Not while the card itself is at it.
            }

            Rectangle { // A shadow.
                anchors { fill: parent; margins: -1; topMargin: 3; bottomMargin: -5 }
                z: -1
                color: "#000000"
                opacity: Theme.dark ? 0.5 : 0.12
                radius: parent.radius + 2
            }
            Timer {
                id: life

                interval: stack.lifetime
                running: !hover.hovered && !parent.critical
                onTriggered: parent.dismissed()
            }
            Connections {
                target: stack.notifications
                function onReplaced(id) { if (id === model.id) life.restart(); }
            }
            NumberAnimation on opacity { from: 0; to: 1; duration: Theme.moment }
        }
    }
}

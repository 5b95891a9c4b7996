import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQml.Models 2.15
import Quorvane 1.1

// The newest notifications for a while, three at most. They stay in the notification centre, but for
// what is transient: that is not listed there, and goes with its pop-up.
Controls.Control {
    id: stack

    required property Notifications notifications
    property bool quiet: false
    property bool listed: false // The centre is in view, so what it lists needs no pop-up.
    property int lifetime: 5000
    property date now
    property alias list: list

    function _show(id) {
        const row = notifications.indexOf(id);
        if (row < 0)
            return;
        const item = fresh.items.get(row);
        if (quiet && item.model.urgency !== 2 || listed && !item.model.isTransient)
            return _drop(item);
        item.inFresh = true;
        if (freshOnes.count <= 3)
            return;
        // What is critical outlasts the rest.
        let oldest = freshOnes.count - 1;
        while (oldest > 0 && freshOnes.get(oldest).model.urgency === 2)
            --oldest;
        _drop(freshOnes.get(oldest));
    }

    function _drop(item) {
        const id = item.model.id;
        item.inFresh = false;
        if (item.model.isTransient)
            Qt.callLater(() => notifications.dismiss(id)); // Not inside of its own signal.
    }

    hoverEnabled: true
    onListedChanged: {
        for (let row = freshOnes.count - 1; listed && row >= 0; --row)
            freshOnes.get(row).inFresh = freshOnes.get(row).model.isTransient;
    }

    Connections {
        target: stack.notifications
        function onPosted(id) { stack._show(id); }
        function onReplaced(id) { stack._show(id); }
    }

    contentItem: ListView {
        id: list

        implicitHeight: contentHeight
        interactive: false
        spacing: 10

        model: DelegateModel {
            id: fresh

            model: stack.notifications
            groups: DelegateModelGroup {
                id: freshOnes
                name: "fresh"
            }
            filterOnGroup: "fresh"

            delegate: NotificationCard {
                id: card

                width: stack.width
                notification: model
                now: stack.now
                onAnswered: key => stack.notifications.invoke(model.id, key)
                onDismissed: {
                    const item = fresh.items.get(DelegateModel.itemsIndex);
                    Qt.callLater(() => stack._drop(item)); // Not while the card itself is at it.
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
                    running: !stack.hovered && !card.critical // The pointer stops the time of all.
                    onTriggered: card.dismissed()
                }
                Connections {
                    target: stack.notifications
                    function onReplaced(id) { if (id === model.id && life.running) life.restart(); }
                }
                NumberAnimation on opacity { from: 0; to: 1; duration: Theme.moment }
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQml.Models 2.15
import Quorvane 1.1

// The newest notifications for a while, three at most. They stay in the notification centre.
Controls.Control {
    id: stack

    required property Notifications notifications
    property bool quiet: false
    property int lifetime: 5000
    property date now
    property alias list: list

    function _show(id) {
        const item = fresh.items.get(notifications.indexOf(id));
        item.inFresh = !quiet || item.model.urgency === 2;
        if (freshOnes.count <= 3)
            return;
        // What is critical outlasts the rest.
        let oldest = freshOnes.count - 1;
        while (oldest > 0 && freshOnes.get(oldest).model.urgency === 2)
            --oldest;
        freshOnes.get(oldest).inFresh = false;
    }

    hoverEnabled: true

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
                onAnswered: stack.notifications.invoke(model.id, key)
                onDismissed: {
                    const item = fresh.items.get(DelegateModel.itemsIndex);
                    Qt.callLater(() => item.inFresh = false); // Not while the card itself is at it.
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

import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import Quorvane 1.1

// The newest notifications for a while, three at most. They stay in the notification centre, but for
// what is transient: that is not listed there, and goes with its pop-up.
Controls.Control {
    id: stack

    required property Notifications notifications
    property alias listed: popups.transientOnly // The centre is in view, so what it lists needs no pop-up.
    property alias lifetime: popups.duration
    property date now
    property alias list: list

    hoverEnabled: true

    NotificationPopups {
        id: popups

        duration: 5000
        held: stack.hovered // The pointer stops the time of all.
        maximum: 3
    }

    contentItem: ListView {
        id: list

        implicitHeight: contentHeight
        interactive: false
        model: popups
        spacing: 10

        delegate: NotificationCard {
            width: stack.width
            notification: model
            now: stack.now
            onAnswered: function(actionId) { stack.notifications.invoke(model.id, actionId); }
            onDismissed: popups.close(model.id)

            Rectangle { // A shadow.
                anchors { fill: parent; margins: -1; topMargin: 3; bottomMargin: -5 }
                z: -1
                color: "#000000"
                opacity: Theme.dark ? 0.5 : 0.12
                radius: parent.radius + 2
            }
            NumberAnimation on opacity { from: 0; to: 1; duration: Theme.moment }
        }
    }
}

import QtQuick 2.15
import Quorvane 1.1

// Shows the newest notification for a while. It stays in the notification centre.
Item {
    id: popup

    required property NotificationManager manager
    property int lifetime: 5000
    property int _id: 0
    readonly property bool shown: _id !== 0
    readonly property bool settled: card.opacity === (shown ? 1 : 0)

    implicitHeight: card.implicitHeight
    visible: card.opacity > 0

    function leave() {
        _id = 0;
    }

    SortFilterProxyModel {
        id: pending

        function value(row, role) {
            return data(index(row, 0), Qt.UserRole + role);
        }

        sourceModel: popup.manager
        onRowsInserted: {
            popup._id = value(first, 7);
            card.appName = value(first, 1);
            card.appIcon = value(first, 2);
            card.summary = value(first, 3);
            card.body = value(first, 4);
            card.actions = value(first, 5);
            life.restart();
        }
        onRowsRemoved: {
            for (let row = 0; row < rowCount(); ++row) {
                if (value(row, 7) === popup._id)
                    return;
            }
            popup.leave();
        }
    }
    Timer {
        id: life
        interval: popup.lifetime
        running: popup.shown && !hover.hovered
        onTriggered: popup.leave()
    }
    HoverHandler { id: hover }

    Rectangle { // A shadow.
        anchors { fill: card; margins: -1; topMargin: 3; bottomMargin: -5 }
        color: "#000000"
        opacity: card.opacity * (Theme.dark ? 0.5 : 0.12)
        radius: card.radius + 2
    }
    NotificationCard {
        id: card

        y: popup.shown ? 0 : 16
        width: parent.width
        border.color: Theme.accent
        opacity: popup.shown ? 1 : 0
        onAnswered: popup.manager.returnAction(popup._id, key)
        onDismissed: popup.leave()

        Behavior on opacity { NumberAnimation { duration: Theme.moment } }
        Behavior on y { NumberAnimation { duration: Theme.moment; easing.type: Easing.OutCubic } }
    }
}

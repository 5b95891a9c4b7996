import QtQuick 2.15
import QtQuick.Layouts 1.15
import Quorvane 1.1

// The bar at the bottom: the tray and the time.
Rectangle {
    id: tray

    property alias list: list
    property StatusNotifierHost _host
    // A change is announced for the row that the item had when it came, see NotificationCentre.
    property int _changes: 0

    function _activate(item, idItem, mode) {
        const place = item.mapToGlobal(item.width / 2, item.height / 2);
        _host.activate(place.x, place.y, idItem, mode);
    }

    implicitHeight: 56
    color: Theme.surface

    // The host registers once, so the watcher is made before it.
    StatusNotifierWatcher { id: watcher }
    Component {
        id: hosts
        StatusNotifierHost { onDataChanged: ++tray._changes }
    }
    SortFilterProxyModel {
        id: items
        sourceModel: tray._host
    }
    Component.onCompleted: _host = hosts.createObject(tray)

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.line
    }
    RowLayout {
        anchors { fill: parent; leftMargin: Theme.margin - 12; rightMargin: Theme.margin }
        spacing: Theme.gap

        ListView {
            id: list

            function click(mode) {
                if (currentItem)
                    mode === 1 ? currentItem.secondaryClicked() : currentItem.clicked();
            }

            Layout.fillWidth: true
            Layout.preferredHeight: 40
            activeFocusOnTab: count > 0
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            model: items
            orientation: ListView.Horizontal
            spacing: 4
            Accessible.role: Accessible.List
            Accessible.name: "Tray"
            Keys.onReturnPressed: click(event.modifiers & Qt.ShiftModifier ? 1 : 0)
            Keys.onMenuPressed: click(1)

            // Every value is read from the item over the bus, and waited for.
            delegate: TrayItem {
                anchors.verticalCenter: parent ? parent.verticalCenter : undefined
                focused: list.activeFocus && ListView.isCurrentItem
                iconName: (tray._changes, status === "NeedsAttention" && model.attentionIconName
                           || model.iconName)
                status: (tray._changes, model.status)
                title: (tray._changes, model.title || model.idItem)
                onClicked: tray._activate(this, model.idItem, 0)
                onSecondaryClicked: tray._activate(this, model.idItem, 1)
            }

            Label {
                anchors { fill: parent; leftMargin: 12 }
                color: Theme.muted
                text: "The tray is empty. Programs that want a place here show up by themselves."
                visible: list.count === 0
            }
        }
        Label {
            id: clock

            font.pixelSize: Theme.titleText

            Timer {
                interval: 1000
                repeat: true
                running: true
                triggeredOnStart: true
                onTriggered: clock.text = Qt.formatTime(new Date(), "hh:mm")
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQuick.Layouts 1.15
import Quorvane 1.1

// The bar at the bottom: the tray, who else serves this desktop, and the time. Items that find no
// room are in a pop-up.
Rectangle {
    id: bar

    required property Tray tray
    property alias items: items
    property alias menu: menu
    property alias standing: standing.text
    // How many items fit: those with labels are wider.
    readonly property int _room: {
        let left = width - 300;
        for (let row = 0; row < items.count; ++row) {
            const item = items.itemAt(row);
            left -= item ? item.implicitWidth + 4 : 44;
            if (left < 0)
                return Math.max(1, row);
        }
        return items.count;
    }

    implicitHeight: 56
    color: Theme.surface

    PopupMenu { id: menu }
    Connections {
        target: bar.tray
        function onMenuRequested(key, x, y) {
            const place = bar.mapFromGlobal(x, y);
            const wanted = bar.tray.menu(key);
            if (wanted)
                menu.show(bar, place.x, place.y, wanted);
        }
    }

    RowLayout {
        anchors { fill: parent; leftMargin: Theme.margin - 12; rightMargin: Theme.margin }
        spacing: Theme.gap

        Row {
            spacing: 4
            Accessible.role: Accessible.List
            Accessible.name: "Tray"

            Repeater {
                id: items

                model: bar.tray
                delegate: TrayItem {
                    explained: !menu.visible
                    tray: bar.tray
                    visible: index < bar._room
                }
            }
        }
        PushButton {
            text: "+" + (bar.tray.count - bar._room)
            visible: bar.tray.count > bar._room
            Accessible.name: "More tray items"
            onClicked: overflow.open()

            Controls.Popup {
                id: overflow

                y: -height - 12
                focus: true
                margins: 6
                padding: 8

                contentItem: Grid {
                    columns: 5
                    spacing: 4

                    Repeater {
                        model: bar.tray
                        delegate: TrayItem {
                            explained: !menu.visible
                            tray: bar.tray
                            visible: index >= bar._room
                        }
                    }
                }
                background: Rectangle {
                    border.color: Theme.line
                    color: Theme.surface
                    radius: Theme.radius
                }
            }
        }
        Label {
            id: standing

            Layout.fillWidth: true
            color: Theme.muted
            font.pixelSize: Theme.smallText
            horizontalAlignment: Text.AlignRight
        }
        Label {
            id: clock

            font.pixelSize: Theme.titleText

            Timer { // At each full minute.
                repeat: true
                running: true
                triggeredOnStart: true
                onTriggered: {
                    const now = new Date();
                    clock.text = Qt.formatTime(now, "hh:mm");
                    interval = 60050 - now.getTime() % 60000;
                }
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// A tray, and below it the menu of an item, opened by the second button.
Window {
    id: panel
    property TrayMenu open

    function show(menu) { if (open) open.close(); open = menu; if (menu) menu.open() }
    width: 320; height: 320; visible: true

    Tray { id: tray; onMenuRequested: key => panel.show(menu(key)) }
    Row {
        Repeater {
            model: tray
            Image {
                width: 32; height: 32; source: model.iconSource; sourceSize: Qt.size(32, 32)
                visible: model.status !== "Passive"; opacity: model.responds ? 1 : 0.4
                MouseArea {
                    anchors.fill: parent; acceptedButtons: Qt.AllButtons
                    onClicked: mouse => (mouse.button === Qt.RightButton ? tray.contextMenu
                        : mouse.button === Qt.MiddleButton ? tray.secondaryActivate
                        : tray.activate)(model.key, panel.x + mouse.x, panel.y + mouse.y)
                    onWheel: wheel => tray.scroll(model.key, wheel.angleDelta.y)
                }
            }
        }
    }
    ListView {
        y: 40; width: 320; height: 280; model: panel.open
        delegate: Text {
            textFormat: Text.PlainText
            text: (model.checked ? "✓ " : "") + model.label + (model.hasChildren ? " ▸" : "")
            visible: model.visible; height: visible ? implicitHeight : 0; opacity: model.enabled ? 1 : 0.5
            TapHandler { onTapped: { const menu = panel.open.submenu(index); panel.open.trigger(index); panel.show(menu) } }
        }
    }
}

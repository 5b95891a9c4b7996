import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// The menu of one program. A click chooses a row or shows what is below it.
Window {
    id: window
    property alias service: top.service
    property alias path: top.path
    property TrayMenu menu: top

    function show(next) { menu = next; next.open() }
    width: 240; height: 320; visible: true
    Component.onCompleted: top.open()
    onClosing: top.close()

    TrayMenu {
        id: top
        service: "org.example.kettle"; path: "/MenuBar"
        onActivationRequested: window.requestActivate()
    }
    ListView {
        anchors.fill: parent
        model: window.menu
        opacity: top.responds ? 1 : 0.5
        delegate: Row {
            visible: model.visible; height: visible ? 24 : 0
            opacity: model.enabled ? 1 : 0.5
            Text { width: 24; text: model.checked ? (model.radio ? "•" : "✓") : "" }
            Image { width: 16; height: 16; source: model.iconSource; sourceSize: Qt.size(16, 16) }
            Text { width: 160; leftPadding: 8; text: model.separator ? "———" : model.label; textFormat: Text.PlainText }
            Text { text: model.hasChildren ? "▸" : model.shortcut; textFormat: Text.PlainText }
            TapHandler {
                onTapped: model.hasChildren ? window.show(window.menu.submenu(index))
                                            : window.menu.trigger(index)
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import Quorvane 1.1

// A panel: launcher, tray with menus, notifications, clock.
Window {
    id: panel
    readonly property int bottom: Screen.virtualY + Screen.height
    x: Screen.virtualX; y: bottom - height; width: Screen.width; height: 40; visible: true
    title: "Panel"; color: palette.window
    flags: Qt.FramelessWindowHint | Qt.WindowDoesNotAcceptFocus

    Applications { id: applications; search: input.text }
    Notifications { id: notifications }
    NotificationPopups { id: popups; transientOnly: centre.visible }
    Tray {
        id: tray
        onMenuRequested: function(key, x, y) {
            menuWindow.x = Math.min(x, panel.x + panel.width - menuWindow.width)
            menuWindow.show(tray.menu(key))
        }
    }
    SystemPalette { id: palette }

    component Surface: Window {
        y: panel.y - height
        color: palette.window
        flags: Qt.Popup | Qt.FramelessWindowHint
    }
    component Picture: Image { sourceSize: Qt.size(width, height) }
    component PlainLabel: Label { textFormat: Text.PlainText; elide: Text.ElideRight }

    component Card: Pane {
        id: card
        property var row
        GridLayout {
            anchors.fill: parent
            columns: 3
            Picture { source: card.row.iconSource; Layout.preferredWidth: 32; Layout.preferredHeight: 32 }
            PlainLabel { text: card.row.summary; font.bold: true; Layout.fillWidth: true }
            ToolButton {
                text: "×"; Accessible.name: "Dismiss"
                onClicked: notifications.dismiss(card.row.id)
            }
            Label {
                text: card.row.styledBody; textFormat: Text.StyledText; wrapMode: Text.Wrap
                Layout.columnSpan: 3; Layout.fillWidth: true
                onLinkActivated: function(link) { Qt.openUrlExternally(link) }
            }
            Flow {
                Layout.columnSpan: 3; Layout.fillWidth: true
                Repeater {
                    model: (card.row.hasDefault ? [{ id: "default", text: "Open" }] : []).concat(card.row.actions)
                    Button {
                        required property var modelData
                        text: modelData.text
                        onClicked: notifications.invoke(card.row.id, modelData.id)
                    }
                }
            }
        }
    }

    RowLayout {
        anchors { fill: parent; leftMargin: 4; rightMargin: 8 }
        ToolButton { text: "Applications"; onClicked: launcher.visible = !launcher.visible }
        Item { Layout.fillWidth: true }
        Repeater {
            model: tray
            Picture {
                width: 24; height: 24; source: model.iconSource
                opacity: model.responds ? 1 : 0.4
                ToolTip.text: model.toolTip
                ToolTip.visible: pointer.containsMouse
                MouseArea {
                    id: pointer
                    anchors.fill: parent; acceptedButtons: Qt.AllButtons; hoverEnabled: true
                    onClicked: function(mouse) {
                        const place = mapToGlobal(mouse.x, mouse.y)
                        const click = mouse.button === Qt.RightButton ? tray.contextMenu
                            : mouse.button === Qt.MiddleButton ? tray.secondaryActivate : tray.activate
                        click(model.key, place.x, place.y)
                    }
                    onWheel: function(wheel) { tray.scroll(model.key, wheel.angleDelta.y) }
                }
            }
        }
        ToolButton {
            text: "Notifications" + (notifications.count ? " (" + notifications.count + ")" : "")
            onClicked: centre.visible = !centre.visible
        }
        Label {
            id: clock
            Timer {
                interval: 1000; running: true; repeat: true; triggeredOnStart: true
                onTriggered: clock.text = new Date().toLocaleTimeString(Qt.locale(), Locale.ShortFormat)
            }
        }
    }

    Surface {
        id: launcher
        x: panel.x; width: 360; height: 480
        onVisibleChanged: { requestActivate(); input.clear(); input.forceActiveFocus() }
        function launch(appId) { visible = false; applications.launch(appId) }
        ColumnLayout {
            anchors { fill: parent; margins: 8 }
            TextField {
                id: input
                Layout.fillWidth: true; placeholderText: "Search"
                onAccepted: if (applications.count) launcher.launch(applications.get(list.currentIndex).appId)
                Keys.onUpPressed: list.decrementCurrentIndex()
                Keys.onDownPressed: list.incrementCurrentIndex()
            }
            ListView {
                id: list
                Layout.fillWidth: true; Layout.fillHeight: true
                clip: true; model: applications; currentIndex: 0
                delegate: ItemDelegate {
                    width: ListView.view.width; highlighted: ListView.isCurrentItem
                    contentItem: RowLayout {
                        Picture { source: model.iconSource; Layout.preferredWidth: 32; Layout.preferredHeight: 32 }
                        PlainLabel { text: model.name; Layout.fillWidth: true }
                    }
                    onClicked: launcher.launch(model.appId)
                }
            }
        }
    }

    Surface {
        id: menuWindow
        property TrayMenu menu
        width: 260; height: rows.contentHeight
        function show(next) { menu = next; next.open() }
        onVisibleChanged: if (!visible && menu) menu.close()
        Connections {
            target: menuWindow.menu
            function onOpened() { menuWindow.visible = true }
        }
        ListView {
            id: rows
            anchors.fill: parent
            model: menuWindow.menu
            delegate: ItemDelegate {
                width: ListView.view.width
                visible: model.visible; height: !visible ? 0 : model.separator ? 8 : implicitHeight
                enabled: model.enabled && !model.separator
                text: (model.checked ? "✓ " : "") + model.label + (model.hasChildren ? " ▸" : "")
                icon.source: model.iconSource
                onClicked: {
                    if (model.hasChildren)
                        return menuWindow.show(menuWindow.menu.submenu(index))
                    menuWindow.menu.trigger(index)
                    menuWindow.visible = false
                }
            }
        }
    }

    Surface {
        id: centre
        x: panel.x + panel.width - width; width: 340; height: Math.min(pending.contentHeight, 600)
        ListView {
            id: pending
            anchors.fill: parent
            model: notifications
            delegate: Card { width: ListView.view.width; row: model }
        }
    }

    Surface {
        x: panel.x + panel.width - width; width: 340; height: Math.max(1, cards.height)
        flags: Qt.ToolTip | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
        visible: popups.count > 0
        Column {
            id: cards
            width: parent.width
            Repeater {
                model: popups
                Card { width: cards.width; row: model }
            }
        }
        HoverHandler { onHoveredChanged: popups.held = hovered }
    }
}

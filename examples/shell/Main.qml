import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import Quorvane 1.1

Window {
    id: shell

    property string scheme: "system"
    property string pictures // Where the walk leaves its pictures; empty for no walk.
    readonly property bool wide: width >= 900

    width: 1200
    height: 800
    minimumWidth: 480
    minimumHeight: 480
    color: Theme.window
    title: "Quorvane"
    visible: true

    Binding {
        target: Theme
        property: "scheme"
        value: shell.scheme
    }
    NotificationManager { id: notifications }

    Rectangle {
        id: screen

        anchors.fill: parent
        color: Theme.window

        ColumnLayout {
            anchors.fill: parent
            spacing: 0

            Rectangle {
                Layout.fillWidth: true
                Layout.preferredHeight: 56
                color: Theme.surface
                visible: !shell.wide

                Rectangle {
                    y: parent.height - height
                    width: parent.width
                    height: 1
                    color: Theme.line
                }
                ChipRow {
                    id: panes

                    anchors { fill: parent; leftMargin: Theme.margin - 4; topMargin: 8 }
                    chosen: "Applications"
                    model: ["Applications", "Notifications"]
                    textOf: pane => pane === "Notifications" && notifications.nbNotifications > 0
                                    ? pane + " (" + notifications.nbNotifications + ")" : pane
                    onChose: chosen = choice
                }
            }
            RowLayout {
                Layout.fillWidth: true
                Layout.fillHeight: true
                spacing: 0

                Launcher {
                    id: launcherPane

                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    focus: true
                    heading: shell.wide ? "Applications" : ""
                    visible: shell.wide || panes.chosen === "Applications"
                    onRunsAlready: notice.show(name + " is running already, as process " + pid)
                }
                Rectangle {
                    Layout.preferredWidth: 1
                    Layout.fillHeight: true
                    color: Theme.line
                    visible: shell.wide
                }
                NotificationCentre {
                    id: centrePane

                    Layout.fillHeight: true
                    Layout.fillWidth: !shell.wide
                    Layout.preferredWidth: Math.min(420, shell.width / 3)
                    heading: shell.wide ? "Notifications" : ""
                    manager: notifications
                    visible: shell.wide || panes.chosen === "Notifications"
                }
            }
            Tray {
                id: trayBar
                Layout.fillWidth: true
            }
        }

        NotificationPopup {
            id: newest

            width: (shell.wide ? centrePane.width : Math.min(420, screen.width)) - 2 * Theme.margin
            anchors { right: parent.right; rightMargin: Theme.margin }
            anchors { bottom: parent.bottom; bottomMargin: trayBar.height + 16 }
            manager: notifications
        }
        Toast {
            id: notice

            x: (launcherPane.visible ? launcherPane.width - width : screen.width - width) / 2
            anchors.bottom: !shell.wide && newest.visible ? newest.top : newest.bottom
            anchors.bottomMargin: !shell.wide && newest.visible ? 16 : 0
        }
    }

    Loader {
        active: shell.pictures !== ""
        sourceComponent: Walk {
            centre: centrePane
            launcher: launcherPane
            page: screen
            pictures: shell.pictures
            popup: newest
            toast: notice
            tray: trayBar
            onSchemeChosen: shell.scheme = scheme
        }
    }
}

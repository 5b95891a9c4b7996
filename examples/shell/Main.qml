import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import Quorvane 1.1

Window {
    id: shell

    property string scheme: "system"
    property string pictures // Where the walk leaves its pictures; empty for no walk.
    readonly property bool wide: width >= 900
    readonly property string standing: [_owner("Notifications", messages.owner),
                                        _owner("Tray", trayItems.owner)]
                                       .filter(text => text !== "").join(" \u00b7 ")

    function _owner(what, owner) {
        return !owner.name ? "" : what + ": " + owner.name + ", process " + owner.pid;
    }

    width: 1200
    height: 800
    minimumWidth: 480
    minimumHeight: 480
    color: Theme.window
    title: "Quorvane"
    visible: true
    onStandingChanged: console.log(standing || "Notifications and tray are served here")

    Binding {
        target: Theme
        property: "scheme"
        value: shell.scheme
    }
    Applications {
        id: programs
        onFailed: notice.show((programs.find(appId).name || appId) + ": " + message)
    }
    Notifications { id: messages }
    Tray { id: trayItems }

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
                    textOf: pane => pane === "Notifications" && messages.count > 0
                                    ? pane + " (" + messages.count + ")" : pane
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
                    applications: programs
                    focus: true
                    heading: shell.wide ? "Applications" : ""
                    visible: shell.wide || panes.chosen === "Applications"
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
                    notifications: messages
                    visible: shell.wide || panes.chosen === "Notifications"
                }
            }
            TrayBar {
                id: bar

                Layout.fillWidth: true
                standing: shell.standing
                tray: trayItems
            }
        }

        // Over the launcher, so that the list of the centre stays free.
        PopupStack {
            id: popupStack

            width: Math.min(380, launcherPane.width - 2 * Theme.margin)
            height: Math.min(contentHeight, parent.height - 120)
            x: launcherPane.width - width - Theme.margin
            anchors { bottom: parent.bottom; bottomMargin: bar.height + 16 }
            notifications: messages
            quiet: centrePane.quiet
            visible: launcherPane.visible
        }
        Toast {
            id: notice

            x: Theme.margin
            anchors { bottom: parent.bottom; bottomMargin: bar.height + 16 }
        }
    }

    Loader {
        active: shell.pictures !== ""
        sourceComponent: Walk {
            applications: programs
            centre: centrePane
            launcher: launcherPane
            page: shell.contentItem
            pictures: shell.pictures
            popups: popupStack
            toast: notice
            trayBar: bar
            onSchemeChosen: shell.scheme = scheme
        }
    }
}

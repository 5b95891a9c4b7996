import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQuick.Layouts 1.15
import Quorvane 1.1

Controls.ApplicationWindow {
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
    font.pixelSize: Theme.bodyText
    palette {
        highlight: Theme.accent
        highlightedText: Theme.accentText
        mid: Theme.line
        text: Theme.text
    }
    title: "Quorvane"
    visible: true
    onSchemeChanged: Theme.scheme = scheme
    onStandingChanged: console.log(standing || "Notifications and tray are served here")

    Applications {
        id: programs
        onFailed: (appId, message) => notice.show((programs.find(appId).name || appId) + ": " + message
                              + "\nIts menu starts it in a terminal, where you can read what it says.", 8000)
    }
    Notifications {
        id: messages

        Component.onCompleted: capabilities = capabilities.concat("action-icons")
    }
    Tray { id: trayItems }

    background: Rectangle { color: Theme.window }
    header: Controls.Control {
        horizontalPadding: Theme.margin
        topPadding: 16
        visible: !shell.wide

        contentItem: ChipRow {
            id: panes

            chosen: "Applications"
            model: ["Applications", "Notifications"]
            textOf: pane => pane === "Notifications" && centrePane.list.count > 0
                            ? pane + " (" + centrePane.list.count + ")" : pane
            Accessible.name: "Panes"
            onChose: choice => chosen = choice
        }
    }
    footer: TrayBar {
        id: bar
        standing: shell.standing
        tray: trayItems
    }

    RowLayout {
        anchors.fill: parent
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

    // Beside the list of the centre if that is in view: then only what it does not list pops up.
    PopupStack {
        id: popupStack

        width: Math.min(380, parent.width - 2 * Theme.margin)
        height: Math.min(implicitHeight, parent.height - 64)
        x: (shell.wide ? launcherPane.width : parent.width) - width - Theme.margin
        anchors { bottom: parent.bottom; bottomMargin: 16 }
        listed: centrePane.visible
        notifications: messages
        now: centrePane.now
    }
    Tip {
        id: notice

        x: Theme.margin
        y: parent.height - height - 16
    }

    Loader {
        active: shell.pictures !== ""
        sourceComponent: Walk {
            applications: programs
            centre: centrePane
            launcher: launcherPane
            pictures: shell.pictures
            popups: popupStack
            toast: notice
            trayBar: bar
        }
    }
}

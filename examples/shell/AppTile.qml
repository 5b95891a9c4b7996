import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A program in the grid. A click starts it; while it runs, the corner button stops it.
T.AbstractButton {
    id: tile

    property string name
    property string iconName
    property string status: "stopped"
    property bool focused: false
    readonly property bool isRunning: status === "running"

    signal stopRequested

    text: name
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    padding: 12
    Accessible.name: isRunning ? name + ", running" : name

    contentItem: Column {
        spacing: Theme.gap

        Icon {
            anchors.horizontalCenter: parent.horizontalCenter
            label: tile.name
            name: tile.iconName
            size: 56
            scale: tile.down ? 0.94 : 1

            Behavior on scale { NumberAnimation { duration: Theme.moment } }
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            maximumLineCount: tile.isRunning ? 1 : 2
            text: tile.name
            wrapMode: Text.Wrap
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 6
            visible: tile.isRunning

            Rectangle {
                width: 8
                height: 8
                anchors.verticalCenter: parent.verticalCenter
                color: Theme.running
                radius: 4
            }
            Label {
                color: Theme.running
                font.pixelSize: Theme.smallText
                text: "Running"
            }
        }
    }
    background: Rectangle {
        border.color: Theme.line
        border.width: tile.isRunning ? 1 : 0
        color: tile.isRunning ? Theme.surface : tile.hovered ? Theme.raised : "transparent"
        radius: Theme.radius

        FocusRing { shown: tile.focused }
    }

    CornerButton {
        anchors { right: parent.right; top: parent.top; margins: 6 }
        focusPolicy: Qt.NoFocus
        objectName: "stop"
        text: "Stop " + tile.name
        visible: tile.isRunning
        onClicked: tile.stopRequested()

        sign: Rectangle {
            width: 9
            height: 9
            color: Theme.muted
            radius: 1
        }
    }
}

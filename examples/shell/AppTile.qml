import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A program in the grid. A click starts it, files that are dropped on it are opened with it; while it
// runs, the corner button stops it.
T.AbstractButton {
    id: tile

    property bool focused: false
    property bool running: false
    property alias iconSource: image.icon

    signal filesDropped(var urls)
    signal menuRequested(real x, real y)
    signal stopRequested

    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    padding: 12
    Accessible.name: running ? text + ", running" : text

    contentItem: Column {
        spacing: Theme.gap

        Icon {
            id: image

            anchors.horizontalCenter: parent.horizontalCenter
            label: tile.text
            size: 56
            scale: tile.down ? 0.94 : 1

            Behavior on scale { NumberAnimation { duration: Theme.moment } }
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            maximumLineCount: tile.running ? 1 : 2
            text: tile.text
            wrapMode: Text.Wrap
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 6
            visible: tile.running

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
        border { color: Theme.line; width: tile.running ? 1 : 0 }
        color: tile.running ? Theme.surface : tile.hovered || drop.containsDrag ? Theme.raised : "transparent"
        radius: Theme.radius

        FocusRing { shown: tile.focused }
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: tile.menuRequested(eventPoint.position.x, eventPoint.position.y)
    }
    DropArea {
        id: drop

        anchors.fill: parent
        keys: ["text/uri-list"]
        onDropped: event => tile.filesDropped(event.urls)
    }
    CornerButton {
        anchors { right: parent.right; top: parent.top; margins: 6 }
        focusPolicy: Qt.NoFocus
        text: "Stop " + tile.text
        visible: tile.running
        onClicked: tile.stopRequested()

        sign: Rectangle {
            width: 9
            height: 9
            color: Theme.muted
            radius: 1
        }
    }
}

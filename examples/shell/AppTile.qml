import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls

// A program in the grid. A click starts it, files that are dropped on it are opened with it; while it
// runs, the corner button stops it.
Controls.AbstractButton {
    id: tile

    property bool focused: false
    property bool running: false
    property alias iconSource: image.icon

    signal filesDropped(var urls)
    signal menuRequested(real x, real y)
    signal stopRequested

    focusPolicy: Qt.NoFocus
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
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            maximumLineCount: tile.running ? 1 : 2
            text: tile.text
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            color: Theme.running
            font.pixelSize: Theme.smallText
            horizontalAlignment: Text.AlignHCenter
            text: "\u25cf Running"
            visible: tile.running
        }
    }
    background: Rectangle {
        border.color: tile.focused ? Theme.accent : Theme.line
        border.width: tile.focused ? 2 : tile.running ? 1 : 0
        color: tile.running ? Theme.surface : tile.hovered || drop.containsDrag ? Theme.raised : "transparent"
        radius: Theme.radius
    }

    TapHandler {
        acceptedButtons: Qt.RightButton
        onTapped: eventPoint => tile.menuRequested(eventPoint.position.x, eventPoint.position.y)
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
        icon.source: "image://quorvane/icon/media-playback-stop-symbolic"
        text: "Stop " + tile.text
        visible: tile.running
        onClicked: tile.stopRequested()
    }
}

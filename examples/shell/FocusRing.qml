import QtQuick 2.15

// Shows which item has the keyboard.
Rectangle {
    property bool shown: false

    anchors.fill: parent
    border.color: Theme.accent
    border.width: 2
    color: "transparent"
    radius: Theme.radius
    visible: shown
}

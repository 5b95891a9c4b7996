import QtQuick 2.15

Item {
    width: 10
    height: 10

    Repeater {
        model: [45, -45]

        Rectangle {
            anchors.centerIn: parent
            width: 12
            height: 2
            antialiasing: true
            color: Theme.muted
            radius: 1
            rotation: modelData
        }
    }
}

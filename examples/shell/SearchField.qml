import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.TextField {
    id: field

    property string hint

    implicitHeight: 40
    leftPadding: 40
    rightPadding: 16
    color: Theme.text
    font.pixelSize: Theme.bodyText
    selectByMouse: true
    selectedTextColor: Theme.accentText
    selectionColor: Theme.accent
    verticalAlignment: TextInput.AlignVCenter
    Accessible.name: hint
    Keys.onEscapePressed: clear()

    background: Rectangle {
        border.color: field.activeFocus ? Theme.accent : Theme.line
        border.width: field.activeFocus ? 2 : 1
        color: Theme.surface
        radius: height / 2

        Item { // A magnifying glass.
            x: 15
            width: 16
            height: 16
            anchors.verticalCenter: parent.verticalCenter

            Rectangle {
                width: 12
                height: 12
                border.color: Theme.muted
                border.width: 2
                color: "transparent"
                radius: 6
            }
            Rectangle {
                x: 9
                y: 11.5
                width: 7
                height: 2
                antialiasing: true
                color: Theme.muted
                radius: 1
                rotation: 45
            }
        }
    }

    Label {
        anchors.fill: parent
        anchors.leftMargin: field.leftPadding
        anchors.rightMargin: field.rightPadding
        color: Theme.muted
        text: field.hint
        visible: field.length === 0
    }
}

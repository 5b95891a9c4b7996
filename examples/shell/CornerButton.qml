import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A small round button with a sign instead of a text.
T.Button {
    id: button

    property alias sign: sign.sourceComponent

    implicitHeight: 26
    implicitWidth: 26
    hoverEnabled: true
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {
        Loader {
            id: sign
            anchors.centerIn: parent
        }
    }
    background: Rectangle {
        border.color: Theme.line
        border.width: button.hovered ? 0 : 1
        color: button.hovered || button.down ? Theme.line : Theme.raised
        radius: height / 2

        FocusRing {
            anchors.margins: -2
            radius: height / 2
            shown: button.visualFocus
        }
    }
}

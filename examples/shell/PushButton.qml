import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.Button {
    id: button

    property bool prominent: false

    implicitHeight: 34
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    leftPadding: 14
    rightPadding: 14
    hoverEnabled: true
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Label {
        color: button.prominent ? Theme.accentText : Theme.text
        horizontalAlignment: Text.AlignHCenter
        opacity: button.enabled ? 1 : 0.5
        text: button.text
    }
    background: Rectangle {
        color: button.prominent ? Theme.accent : Theme.raised
        opacity: button.down ? 0.7 : button.hovered ? 0.85 : 1
        radius: height / 2

        FocusRing {
            anchors.margins: -3
            radius: height / 2
            shown: button.visualFocus
        }
    }
}

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.Button {
    id: button

    property bool prominent: false
    property bool outlined: false
    property bool focused: visualFocus

    implicitHeight: 34
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    leftPadding: 14
    rightPadding: 14
    hoverEnabled: true
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Label {
        color: button.prominent ? Theme.accentText : Theme.text
        horizontalAlignment: Text.AlignHCenter
        text: button.text
    }
    background: Rectangle {
        border { color: Theme.line; width: button.outlined && !button.prominent ? 1 : 0 }
        color: button.prominent ? Theme.accent
                                : button.outlined && !button.hovered ? Theme.surface : Theme.raised
        opacity: button.down ? 0.7 : 1
        radius: height / 2

        FocusRing {
            anchors.margins: -3
            radius: height / 2
            shown: button.focused
        }
    }
}

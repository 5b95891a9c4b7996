import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls

Controls.RoundButton {
    id: button

    implicitHeight: 34
    leftPadding: 14
    rightPadding: 14
    palette { button: hovered ? Theme.line : Theme.raised; dark: Theme.accent; highlight: Theme.text }
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Label {
        color: button.highlighted || button.checked ? Theme.accentText : Theme.text
        horizontalAlignment: Text.AlignHCenter
        text: button.text
    }
}

import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// One of several choices in a row.
T.AbstractButton {
    id: chip

    property bool focused: false

    implicitHeight: 32
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    leftPadding: 14
    rightPadding: 14
    focusPolicy: Qt.NoFocus
    hoverEnabled: true

    contentItem: Label {
        color: chip.checked ? Theme.accentText : Theme.text
        horizontalAlignment: Text.AlignHCenter
        text: chip.text
    }
    background: Rectangle {
        border.color: Theme.line
        border.width: chip.checked ? 0 : 1
        color: chip.checked ? Theme.accent : chip.hovered ? Theme.raised : Theme.surface
        radius: height / 2

        FocusRing {
            anchors.margins: -3
            radius: height / 2
            shown: chip.focused
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls

// A small round button that shows an icon instead of its text.
Controls.RoundButton {
    implicitHeight: 26
    implicitWidth: 26
    display: Controls.AbstractButton.IconOnly
    icon { color: Theme.text; height: 16; width: 16 }
    palette.button: hovered ? Theme.line : Theme.raised
    Accessible.name: text
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
}

import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls

// A sentence that passes: what a button is for, or what went wrong.
Controls.ToolTip {
    id: tip

    width: Math.min(implicitWidth, 420)
    closePolicy: Controls.Popup.NoAutoClose // Escape is for what has the keyboard.
    horizontalPadding: 12

    contentItem: Label {
        color: Theme.window
        maximumLineCount: 6
        text: tip.text
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        color: Theme.text
        radius: 8
    }
}

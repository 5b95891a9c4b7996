import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// What a button without a text says under the pointer.
T.ToolTip {
    id: tip

    x: (parent.width - width) / 2
    y: -height - 6
    delay: 500
    implicitHeight: contentItem.implicitHeight + 12
    implicitWidth: Math.min(contentItem.implicitWidth + 20, 320)
    leftPadding: 10
    margins: 6
    rightPadding: 10

    contentItem: Label {
        color: Theme.window
        font.pixelSize: Theme.smallText
        maximumLineCount: 6
        text: tip.text
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        color: Theme.text
        radius: 6
    }
}

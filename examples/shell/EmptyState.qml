import QtQuick 2.15

// What a pane says while it has nothing to show.
Column {
    property alias title: title.text
    property alias sentence: sentence.text

    width: Math.min(parent.width - 2 * Theme.margin, 320)
    anchors.centerIn: parent
    spacing: Theme.gap

    Label {
        id: title

        width: parent.width
        font.bold: true
        font.pixelSize: Theme.titleText
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }
    Label {
        id: sentence

        width: parent.width
        color: Theme.muted
        horizontalAlignment: Text.AlignHCenter
        lineHeight: 1.25
        wrapMode: Text.Wrap
    }
}

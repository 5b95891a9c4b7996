import QtQuick 2.15

// What a pane says while it has nothing to show.
Label {
    property string title
    property string sentence

    anchors.centerIn: parent
    width: Math.min(parent.width - 2 * Theme.margin, 320)
    color: Theme.muted
    horizontalAlignment: Text.AlignHCenter
    lineHeight: 1.3
    text: "<b>" + title + "</b><br>" + sentence
    textFormat: Text.StyledText
    wrapMode: Text.Wrap
}

import QtQuick 2.15

// Text from anywhere: what a peer sends is never taken for markup.
Text {
    color: Theme.text
    elide: Text.ElideRight
    font.pixelSize: Theme.bodyText
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
}

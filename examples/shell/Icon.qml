import QtQuick 2.15

// An icon; where there is none, a tile with the first letter of its label. Icons of one colour are
// shown in that of the text, so that they stand out in both schemes.
Image {
    property string label
    property string icon
    property int size: 48

    width: size
    height: size
    fillMode: Image.PreserveAspectFit
    sourceSize: Qt.size(size, size)
    source: Theme.picture(icon || "image://quorvane/icon/",
                          "color=" + encodeURIComponent(Theme.text)
                          + "&label=" + encodeURIComponent(label || "?"))
}

import QtQuick 2.15

// The icon of a program, or a lettered tile where the theme has none.
Image {
    property string label
    property string name
    property int size: 48

    width: size
    height: size
    sourceSize: Qt.size(size, size)
    fillMode: Image.PreserveAspectFit
    source: "image://icon/" + encodeURIComponent(label || "?") + "/" + encodeURIComponent(name)
}

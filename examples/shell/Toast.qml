import QtQuick 2.15

// A sentence that passes.
Rectangle {
    property alias text: label.text
    readonly property bool shown: life.running

    function show(sentence) {
        text = sentence;
        life.restart();
    }

    implicitHeight: 40
    implicitWidth: Math.min(label.implicitWidth + 40, parent.width - 2 * Theme.margin)
    color: Theme.text
    opacity: shown ? 1 : 0
    radius: height / 2
    visible: opacity > 0

    Behavior on opacity { NumberAnimation { duration: Theme.moment } }
    Timer {
        id: life
        interval: 4000
    }
    Label {
        id: label

        anchors { fill: parent; leftMargin: 20; rightMargin: 20 }
        color: Theme.window
        horizontalAlignment: Text.AlignHCenter
    }
}

import QtQuick 2.15

// A row of chips, one of which is chosen: by a click, or by the arrow keys.
ListView {
    id: row

    property string chosen
    property var textOf: choice => choice

    signal chose(string choice)

    implicitHeight: 34
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    currentIndex: model.indexOf(chosen)
    orientation: ListView.Horizontal
    spacing: Theme.gap
    Accessible.role: Accessible.PageTabList
    Keys.onLeftPressed: if (currentIndex > 0) chose(model[currentIndex - 1])
    Keys.onRightPressed: if (currentIndex < count - 1) chose(model[currentIndex + 1])

    delegate: PushButton {
        focusPolicy: Qt.NoFocus
        highlighted: modelData === row.chosen
        palette.dark: row.activeFocus ? Theme.text : Theme.accent
        text: row.textOf(modelData)
        Accessible.role: Accessible.PageTab
        onClicked: row.chose(modelData)
    }
}

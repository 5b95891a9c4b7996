import QtQuick 2.15

// A row of chips, one of which is chosen: by a click, or by the arrow keys.
ListView {
    id: row

    property string chosen
    property var textOf: function (choice) { return choice; }

    signal chose(string choice)

    function _move(step) {
        const index = model.indexOf(chosen) + step;
        if (index >= 0 && index < model.length) {
            chose(model[index]);
            positionViewAtIndex(index, ListView.Contain);
        }
    }

    implicitHeight: 40
    activeFocusOnTab: true
    boundsBehavior: Flickable.StopAtBounds
    clip: contentWidth > width
    keyNavigationEnabled: false
    orientation: ListView.Horizontal
    spacing: Theme.gap
    // Room for the focus ring inside the clip.
    leftMargin: 4
    rightMargin: 4
    topMargin: 4

    Keys.onLeftPressed: _move(-1)
    Keys.onRightPressed: _move(1)

    delegate: Chip {
        checked: modelData === row.chosen
        focused: checked && row.activeFocus
        text: row.textOf(modelData)
        onClicked: row.chose(modelData)
    }
}

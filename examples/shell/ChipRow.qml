import QtQuick 2.15
import QtQuick.Templates 2.15 as T

// A row of chips, one of which is chosen: by a click, or by the arrow keys.
ListView {
    id: row

    property string chosen
    property var textOf: choice => choice

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
    Accessible.role: Accessible.PageTabList

    Keys.onLeftPressed: _move(-1)
    Keys.onRightPressed: _move(1)

    delegate: PushButton {
        implicitHeight: 32
        focusPolicy: Qt.NoFocus
        focused: prominent && row.activeFocus
        outlined: true
        prominent: modelData === row.chosen
        text: row.textOf(modelData)
        Accessible.role: Accessible.PageTab
        onClicked: row.chose(modelData)
    }
}

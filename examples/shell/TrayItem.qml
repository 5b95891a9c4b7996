import QtQuick 2.15
import QtQuick.Templates 2.15 as T
import Quorvane 1.1

// A program's place in the tray.
T.AbstractButton {
    id: item

    required property var model // The roles of its row.
    required property int index
    property Tray tray
    readonly property string _title: model.title || model.itemId

    function click(button) {
        const place = mapToGlobal(0, 0);
        const call = button === Qt.LeftButton ? tray.activate
                   : button === Qt.RightButton ? tray.contextMenu : tray.secondaryActivate;
        call(model.key, place.x, place.y);
    }

    implicitHeight: 40
    implicitWidth: 40
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: !model.responds ? 0.4 : model.status === "Passive" ? 0.65 : 1
    text: _title
    Accessible.name: _title + (model.status === "NeedsAttention" ? ", needs attention" : "")
                     + (model.responds ? "" : ", does not respond")
    onClicked: click(Qt.LeftButton)
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onMenuPressed: click(Qt.RightButton)

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            icon: item.model.iconSource
            label: item._title
            size: 24
        }
        Rectangle {
            anchors { right: parent.right; top: parent.top; margins: 4 }
            width: 10
            height: 10
            border { color: Theme.surface; width: 2 }
            color: Theme.attention
            radius: 5
            visible: item.model.status === "NeedsAttention"
        }
    }
    background: Rectangle {
        color: item.hovered || item.down ? Theme.raised : "transparent"
        radius: Theme.radius

        FocusRing { shown: item.visualFocus }
    }

    Tip {
        text: item.model.toolTip + (item.model.responds ? "" : "\nDoes not respond")
        visible: item.hovered
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton | Qt.MiddleButton
        onClicked: item.click(mouse.button)
        onWheel: wheel.angleDelta.y !== 0
                 ? item.tray.scroll(item.model.key, wheel.angleDelta.y, "vertical")
                 : item.tray.scroll(item.model.key, wheel.angleDelta.x, "horizontal")
    }
}

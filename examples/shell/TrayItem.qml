import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import Quorvane 1.1

// A program's place in the tray.
Controls.AbstractButton {
    id: item

    required property var model // The roles of its row.
    required property int index
    property Tray tray
    property bool explained: true // By a tool tip, under the pointer.

    function click(button) {
        const place = mapToGlobal(0, 0);
        const call = button === Qt.LeftButton ? tray.activate
                   : button === Qt.RightButton ? tray.contextMenu : tray.secondaryActivate;
        call(model.key, place.x, place.y);
    }

    implicitHeight: 40
    implicitWidth: 40 + (label.visible ? label.width : 0)
    focusPolicy: Qt.StrongFocus
    opacity: !model.responds ? 0.4 : model.status === "Passive" ? 0.65 : 1
    text: model.title || model.itemId
    Accessible.name: text + (model.status === "NeedsAttention" ? ", needs attention" : "")
                     + (model.responds ? "" : ", does not respond")
    onClicked: click(Qt.LeftButton)
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onMenuPressed: click(Qt.RightButton)

    contentItem: Item {
        Icon {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            icon: item.model.iconSource
            label: item.text
            size: 24
        }
        Label {
            id: label

            x: 36
            width: Math.min(implicitWidth, 96)
            height: parent.height
            text: item.model.label
            visible: text !== ""
        }
        Label {
            anchors { right: parent.left; top: parent.top; rightMargin: -36 }
            color: Theme.attention
            font.pixelSize: Theme.smallText
            text: item.model.status === "NeedsAttention" ? "\u25cf" : ""
        }
    }
    background: Rectangle {
        border { color: Theme.accent; width: item.visualFocus ? 2 : 0 }
        color: item.hovered || item.down ? Theme.raised : "transparent"
        radius: Theme.radius
    }

    Tip {
        delay: 500
        text: item.model.toolTip + (item.model.responds ? "" : "\nDoes not respond")
        visible: item.hovered && item.explained
    }
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.RightButton | Qt.MiddleButton
        onClicked: mouse => item.click(mouse.button)
        onWheel: wheel => wheel.angleDelta.y !== 0
                 ? item.tray.scroll(item.model.key, wheel.angleDelta.y, "vertical")
                 : item.tray.scroll(item.model.key, wheel.angleDelta.x, "horizontal")
    }
}

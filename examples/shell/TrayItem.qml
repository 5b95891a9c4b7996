import QtQuick 2.15
import QtQuick.Layouts 1.15

// A program's place in the tray.
Rectangle {
    id: item

    property string title
    property string iconName
    property string status: "Active"
    property bool focused: false

    signal clicked
    signal secondaryClicked

    implicitHeight: 40
    implicitWidth: Math.min(content.implicitWidth + 24, 240)
    color: area.pressed ? Theme.line : area.containsMouse ? Theme.raised : "transparent"
    opacity: status === "Passive" ? 0.65 : 1
    radius: Theme.radius
    Accessible.role: Accessible.Button
    Accessible.name: status === "NeedsAttention" ? title + ", needs attention" : title
    Accessible.onPressAction: clicked()

    RowLayout {
        id: content

        anchors { fill: parent; leftMargin: 12; rightMargin: 12 }
        spacing: Theme.gap

        Icon {
            label: item.title
            name: item.iconName
            size: 24

            Rectangle {
                x: 17
                y: -3
                width: 10
                height: 10
                border.color: Theme.surface
                border.width: 2
                color: Theme.attention
                radius: 5
                visible: item.status === "NeedsAttention"
            }
        }
        Label {
            Layout.fillWidth: true
            text: item.title
        }
    }
    FocusRing { shown: item.focused }
    MouseArea {
        id: area

        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        hoverEnabled: true
        onClicked: mouse.button === Qt.RightButton ? item.secondaryClicked() : item.clicked()
    }
}

import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// What is pending, newest first. A click is the default action, or means that it has been read.
Window {
    width: 360; height: 480; visible: true
    title: notifications.registered ? "Notifications" : "Shown by " + notifications.owner.name

    Notifications { id: notifications }

    ListView {
        anchors.fill: parent
        model: notifications
        delegate: MouseArea {
            id: card
            readonly property int number: model.id
            width: 360; height: Math.max(content.height, 56)
            onClicked: model.hasDefault ? notifications.invoke(number, "default")
                                        : notifications.dismiss(number)

            Image { source: model.iconSource; sourceSize: Qt.size(48, 48) }
            Column {
                id: content; x: 60; width: 290; bottomPadding: 12
                Text { text: model.summary; font.bold: model.urgency > 1; textFormat: Text.PlainText }
                Text { text: model.styledBody; width: 290; wrapMode: Text.Wrap; textFormat: Text.StyledText
                       onLinkActivated: link => Qt.openUrlExternally(link) }
                Rectangle { width: 2.9 * model.progress; height: 4; visible: width > 0; color: "steelblue" }
                Repeater {
                    model: actions
                    Text {
                        text: "▸ " + modelData.text; textFormat: Text.PlainText
                        MouseArea { anchors.fill: parent; onClicked: notifications.invoke(card.number, modelData.key) }
                    }
                }
            }
        }
    }
}

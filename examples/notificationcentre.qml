import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// A notification centre. A click means a notification's default action, or that it has been read.
Window {
    width: 360; height: 480; visible: true
    title: notifications.registered ? "Notifications" : "Shown by " + notifications.owner.name

    Notifications { id: notifications }

    ListView {
        anchors.fill: parent
        model: notifications
        spacing: 12
        delegate: MouseArea {
            id: card
            readonly property int number: model.id
            width: 360; height: content.height
            onClicked: model.hasDefault ? notifications.invoke(number, "default")
                                        : notifications.dismiss(number)

            Image { width: 48; height: 48; source: model.iconSource; sourceSize: Qt.size(48, 48) }
            Column {
                id: content
                x: 60; width: 300
                Text { text: model.summary; textFormat: Text.PlainText; font.bold: model.urgency > 1 }
                Text { text: model.styledBody; textFormat: Text.StyledText; wrapMode: Text.Wrap
                       width: 300; onLinkActivated: Qt.openUrlExternally(link) }
                Rectangle { color: "steelblue"; width: 3 * model.progress; height: 4; visible: width > 0 }
                Repeater {
                    model: actions
                    Text { text: "▸ " + modelData.text
                           MouseArea { anchors.fill: parent; onClicked: notifications.invoke(card.number, modelData.key) } }
                }
            }
        }
    }
}

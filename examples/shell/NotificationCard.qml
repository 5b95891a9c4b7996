import QtQuick 2.15
import QtQuick.Layouts 1.15
import Quorvane 1.1

// One notification: who says what, and what can be answered.
Rectangle {
    id: card

    property string appName
    property string appIcon
    property string summary
    property string body
    property var actions: []
    property bool focused: false
    property alias buttons: buttons

    signal dismissed
    signal answered(string key)

    implicitHeight: content.implicitHeight + 28
    border.color: Theme.line
    border.width: 1
    color: Theme.surface
    radius: Theme.radius
    Accessible.role: Accessible.Notification
    Accessible.name: summary
    Accessible.description: body

    Column {
        id: content

        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 14 }
        spacing: Theme.gap

        RowLayout {
            width: parent.width
            spacing: Theme.gap

            Icon {
                label: card.appName
                name: card.appIcon
                size: 22
            }
            Label {
                Layout.fillWidth: true
                color: Theme.muted
                font.pixelSize: Theme.smallText
                text: card.appName || "A program"
            }
            CornerButton {
                sign: Cross { }
                text: "Dismiss"
                onClicked: card.dismissed()
            }
        }
        Label {
            width: parent.width
            font.bold: true
            font.pixelSize: Theme.titleText
            maximumLineCount: 2
            text: card.summary
            visible: text !== ""
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            color: Theme.muted
            lineHeight: 1.2
            maximumLineCount: 5
            text: card.body
            visible: text !== ""
            wrapMode: Text.Wrap
        }
        Flow {
            width: parent.width
            topPadding: 4
            spacing: Theme.gap
            visible: buttons.count > 0

            Repeater {
                id: buttons

                model: SortFilterProxyModel {
                    sourceModel: NotificationActions { actionslist: card.actions }
                }
                delegate: PushButton {
                    width: Math.min(implicitWidth, content.width)
                    prominent: index === 0
                    text: model.actionText
                    onClicked: card.answered(model.key)
                }
            }
        }
    }

    FocusRing { shown: card.focused }
}

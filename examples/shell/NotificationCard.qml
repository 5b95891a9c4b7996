import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import Quorvane 1.1

// One notification: who says what, and what can be answered. A click does what the notification is
// about; a middle click or a swipe dismisses it.
Rectangle {
    id: card

    property var notification // The roles of its row.
    property date now
    property bool focused: false
    property int folded: 0 // How many of the same program are behind it.
    property alias buttons: buttons
    property alias text: summary.text
    readonly property bool critical: notification.urgency === Notifications.Critical
    readonly property string _application: notification.appName || "A program"

    signal dismissed
    signal answered(string actionId)
    signal unfolded

    function activate() {
        if (notification.hasDefault)
            answered("default");
    }

    function _age() {
        const time = notification.time || now; // It has none any more while it goes.
        const minutes = Math.floor((now - time) / 60000);
        return minutes < 1 ? "now" : minutes < 60 ? minutes + " min ago"
             : minutes < 1440 ? Math.floor(minutes / 60) + " h ago"
             : time.toLocaleDateString(Qt.locale(), Locale.ShortFormat);
    }

    implicitHeight: content.implicitHeight + 28
    border.color: focused ? Theme.accent : critical ? Theme.critical : Theme.line
    border.width: focused || critical ? 2 : 1
    color: area.containsMouse && notification.hasDefault ? Theme.raised : Theme.surface
    opacity: 1 - Math.min(0.8, Math.abs(swipe.translation.x) / width)
    radius: Theme.radius
    transform: Translate { x: swipe.active ? swipe.translation.x : 0 }
    Accessible.role: Accessible.Notification
    Accessible.name: (critical ? "Critical: " : "") + notification.summary
    Accessible.description: notification.body
    Accessible.onPressAction: activate()

    MouseArea {
        id: area

        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.MiddleButton
        cursorShape: card.notification.hasDefault ? Qt.PointingHandCursor : Qt.ArrowCursor
        hoverEnabled: true
        onClicked: function(mouse) {
            if (mouse.button === Qt.MiddleButton)
                card.dismissed();
            else
                card.activate();
        }
    }
    DragHandler {
        id: swipe

        target: null
        yAxis.enabled: false
        onActiveChanged: if (!active && Math.abs(translation.x) > card.width / 3) card.dismissed()
    }
    Icon {
        id: icon

        x: 14
        y: 14
        icon: card.notification.iconSource
        label: card._application
        size: 40
    }
    CornerButton {
        anchors { right: parent.right; top: parent.top; margins: 14 }
        icon.source: "image://quorvane/icon/window-close-symbolic"
        text: "Dismiss"
        onClicked: card.dismissed()
    }
    Column {
        id: content

        anchors { left: icon.right; leftMargin: 12; right: parent.right; rightMargin: 14 }
        y: 14
        spacing: 6

        Label {
            width: parent.width - 30
            height: 26
            color: card.critical ? Theme.critical : Theme.muted
            font.pixelSize: Theme.smallText
            text: card._application + " \u00b7 " + card._age()
        }
        Label {
            id: summary

            width: parent.width
            color: card.notification.urgency === Notifications.Low ? Theme.muted : Theme.text
            font { bold: true; pixelSize: Theme.titleText }
            maximumLineCount: 2
            text: card.notification.summary
            visible: text !== ""
            wrapMode: Text.Wrap
        }
        Label {
            width: parent.width
            color: Theme.muted
            linkColor: Theme.accent
            lineHeight: 1.2
            maximumLineCount: 5
            text: card.notification.styledBody
            textFormat: Text.StyledText
            visible: text !== ""
            wrapMode: Text.Wrap
            onLinkActivated: function(link) { Qt.openUrlExternally(link); }
        }
        Controls.ProgressBar {
            id: progress

            width: parent.width
            palette.midlight: Theme.raised
            to: 100
            value: card.notification.progress
            visible: card.notification.progress >= 0

            contentItem: Item {
                Rectangle { width: parent.width * progress.position; height: 6; color: Theme.accent }
            }
        }
        Flow {
            width: parent.width
            topPadding: 2
            spacing: Theme.gap
            visible: buttons.count > 0 || card.folded > 0

            Repeater {
                id: buttons

                model: card.notification.actions
                delegate: PushButton {
                    width: Math.min(implicitWidth, content.width)
                    highlighted: index === 0
                    leftPadding: picture.visible ? 34 : rightPadding
                    text: modelData.text
                    onClicked: card.answered(modelData.id)

                    Image {
                        id: picture

                        anchors.verticalCenter: parent.verticalCenter
                        x: 12
                        source: Theme.picture(modelData.iconSource,
                                              "color=" + encodeURIComponent(parent.highlighted
                                                                            ? Theme.accentText : Theme.text))
                        sourceSize: Qt.size(16, 16)
                        visible: status === Image.Ready
                    }
                }
            }
            PushButton {
                width: Math.min(implicitWidth, content.width)
                text: card.folded + " more from " + card._application
                visible: card.folded > 0
                onClicked: card.unfolded()
            }
        }
    }
}

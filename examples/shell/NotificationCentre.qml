import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Templates 2.15 as T
import Quorvane 1.1

// What is pending, newest first.
FocusScope {
    id: centre

    required property NotificationManager manager
    property alias list: list
    property alias heading: heading.text
    // A change is announced for the row that the notification once had. Whoever shows one reads
    // this, too, and so reads anew at any change.
    property int _changes: 0

    function clearAll() {
        while (pending.rowCount() > 0)
            manager.close(pending.data(pending.index(0, 0), Qt.UserRole + 7));
    }

    Connections {
        target: centre.manager
        function onDataChanged() { ++centre._changes; }
    }
    SortFilterProxyModel {
        id: pending
        sourceModel: centre.manager
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin
            Layout.rightMargin: Theme.margin
            Layout.topMargin: Theme.margin
            Layout.minimumHeight: 40

            Label {
                id: heading

                Layout.fillWidth: true
                font.bold: true
                font.pixelSize: Theme.headingText
            }
            PushButton {
                text: "Clear all"
                visible: list.count > 0
                onClicked: centre.clearAll()
            }
        }

        ListView {
            id: list

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: Theme.margin
            Layout.rightMargin: Theme.margin
            activeFocusOnTab: count > 0
            bottomMargin: Theme.margin
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            model: pending
            spacing: 12
            Accessible.role: Accessible.List
            Accessible.name: "Notifications"
            onCountChanged: if (!activeFocus) currentIndex = 0
            Keys.onDeletePressed: if (currentItem) currentItem.dismissed()
            Keys.onReturnPressed: if (currentItem && currentItem.actions.length > 1)
                                      currentItem.answered(currentItem.actions[0])
            T.ScrollBar.vertical: SlimScrollBar { }

            delegate: NotificationCard {
                width: list.width
                actions: (centre._changes, model.actions)
                appIcon: (centre._changes, model.appIcon)
                appName: (centre._changes, model.appName)
                body: (centre._changes, model.body)
                focused: list.activeFocus && ListView.isCurrentItem
                summary: (centre._changes, model.summary)
                onAnswered: centre.manager.returnAction(model.appId, key)
                onDismissed: centre.manager.close(model.appId)

                NumberAnimation on opacity { from: 0; to: 1; duration: Theme.moment }
            }

            EmptyState {
                title: "All quiet"
                sentence: "Messages from your programs will gather here until you deal with them."
                visible: list.count === 0
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// The notification service of a session: what is pending, newest first. A click dismisses.
Window {
    width: 320
    height: 480
    visible: true

    NotificationManager { id: manager }

    ListView {
        anchors.fill: parent
        model: SortFilterProxyModel { sourceModel: manager }
        delegate: Text {
            padding: 8
            text: model.summary
            textFormat: Text.PlainText

            TapHandler { onTapped: manager.close(model.appId) }
        }
    }
}

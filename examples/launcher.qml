import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// A launcher: type to search, Enter starts the best match, a click any other.
Window {
    width: 480
    height: 640
    visible: true

    Applications {
        id: applications
        search: input.text
        onFailed: (appId, message) => failure.text = message
    }
    TextInput {
        id: input
        width: parent.width
        padding: 12
        focus: true
        onAccepted: if (applications.count > 0) applications.launch(applications.get(0).appId)
    }
    ListView {
        anchors { fill: parent; topMargin: input.height; bottomMargin: failure.height }
        clip: true
        model: applications
        delegate: Row {
            padding: 8
            spacing: 8
            Image { source: model.iconSource; sourceSize: Qt.size(32, 32) }
            Text {
                text: model.name + (model.running ? " (running)" : "") + "\n" + model.comment
                textFormat: Text.PlainText
            }
            TapHandler { onTapped: applications.launch(model.appId) }
        }
    }
    Text { id: failure; anchors.bottom: parent.bottom; padding: 8; textFormat: Text.PlainText }
}

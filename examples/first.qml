import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// A small shell: a click starts an application, dismisses a notification, activates a tray item.
Window {
    width: 640; height: 480; visible: true

    Applications { id: applications }
    Notifications { id: notifications }
    Tray { id: tray }

    ListView {
        width: 320; height: 440; clip: true
        model: applications
        delegate: Row {
            Image { source: model.iconSource; sourceSize: Qt.size(32, 32) }
            Text { text: model.name + (model.running ? " (running)" : ""); textFormat: Text.PlainText }
            TapHandler { onTapped: applications.launch(model.appId) }
        }
    }
    ListView {
        x: 320; width: 320; height: 440; clip: true
        model: notifications
        delegate: Text {
            text: model.summary + "\n" + model.body; textFormat: Text.PlainText
            TapHandler { onTapped: notifications.dismiss(model.id) }
        }
    }
    Row {
        y: 440
        Repeater {
            model: tray
            Image {
                source: model.iconSource; sourceSize: Qt.size(32, 32)
                TapHandler { onTapped: tray.activate(model.key, 0, 0) }
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// The installed applications of all categories; a click starts one.
Window {
    width: 320
    height: 480
    visible: true

    DesktopEntries { id: entries }

    ListView {
        anchors.fill: parent
        model: DesktopFilter { model: entries }
        delegate: Text {
            width: ListView.view.width
            padding: 8
            text: model.name + (model.keywords.endsWith(" running") ? " (running)" : "")

            TapHandler { onTapped: entries.start(model.path, []) }
        }
    }
}

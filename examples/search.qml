import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// The installed applications whose name has the typed letters.
Window {
    width: 320
    height: 480
    visible: true

    TextInput {
        id: search
        width: parent.width
        padding: 8
        focus: true
    }
    ListView {
        anchors { fill: parent; topMargin: search.height }
        delegate: Text { text: model.name; padding: 8 }
        model: SortFilterProxyModel {
            filterRegularExpression: new RegExp(search.text, "i")
            filterRole: Qt.UserRole + 2
            sourceModel: DesktopFilter { model: DesktopEntries { } }
        }
    }
}

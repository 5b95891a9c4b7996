import QtQuick 2.15
import QtQuick.Window 2.15
import Quorvane 1.1

// The plain model of applications, sorted by name, with those that the typed words find.
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
        delegate: Text { text: model.name; padding: 8; textFormat: Text.PlainText }
        model: SortFilterProxyModel {
            filterRoleNames: ["name", "keywords"]
            filterText: search.text
            sortRoleName: "name"
            sourceModel: DesktopFilter { model: DesktopEntries { } }
        }
    }
}

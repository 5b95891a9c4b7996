import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQuick.Layouts 1.15

// An entry of a menu, or a line between entries.
Controls.AbstractButton {
    id: row

    property var entry
    property bool current: false

    implicitHeight: entry.visible === false ? 0 : entry.separator ? 9 : 34
    topInset: entry.separator ? 4 : 0
    bottomInset: topInset
    visible: implicitHeight > 0
    enabled: entry.enabled !== false && !entry.separator
    focusPolicy: Qt.NoFocus
    text: entry.label || ""
    Accessible.role: entry.separator ? Accessible.Separator : Accessible.MenuItem
    Accessible.name: text
    Accessible.checkable: !!entry.checkable
    Accessible.checked: !!entry.checked

    contentItem: RowLayout {
        opacity: row.enabled ? 1 : 0.5
        spacing: Theme.gap
        visible: !row.entry.separator

        Label {
            Layout.leftMargin: 10
            Layout.preferredWidth: 14
            text: !row.entry.checked ? "" : row.entry.radio ? "\u25cf" : "\u2713"
        }
        Image {
            source: Theme.picture(row.entry.iconSource || "",
                                  "color=" + encodeURIComponent(Theme.text))
            sourceSize: Qt.size(16, 16)
            visible: source != ""
        }
        Label {
            Layout.fillWidth: true
            text: row.text
        }
        Label {
            Layout.rightMargin: 10
            text: row.entry.hasChildren ? "\u203a" : ""
        }
    }
    background: Rectangle {
        color: row.entry.separator ? Theme.line : row.current ? Theme.raised : "transparent"
        radius: 8
    }
}

import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Templates 2.15 as T

T.AbstractButton {
    id: row

    property var entry
    property bool current: false
    readonly property string _mark: !entry.checkable ? "" : entry.checked ? (entry.radio ? "\u25cf" : "\u2713")
                                                                        : entry.radio ? "\u25cb" : ""

    implicitHeight: entry.visible === false ? 0 : entry.separator ? 9 : 34
    visible: implicitHeight > 0
    enabled: entry.enabled !== false && !entry.separator
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    text: entry.label || ""
    Accessible.role: entry.separator ? Accessible.Separator : Accessible.MenuItem
    Accessible.name: text
    Accessible.checkable: !!entry.checkable
    Accessible.checked: !!entry.checked

    contentItem: RowLayout {
        spacing: Theme.gap
        visible: !row.entry.separator

        Label {
            Layout.leftMargin: 10
            Layout.preferredWidth: 14
            text: row._mark
        }
        Image {
            source: row.entry.iconSource || ""
            sourceSize: Qt.size(16, 16)
            visible: source != ""
        }
        Label {
            Layout.fillWidth: true
            opacity: row.enabled ? 1 : 0.5
            text: row.text
        }
        Label {
            Layout.rightMargin: 10
            text: "\u203a"
            visible: !!row.entry.hasChildren
        }
    }
    background: Rectangle {
        height: row.entry.separator ? 1 : row.height
        y: row.entry.separator ? 4 : 0
        color: row.entry.separator ? Theme.line : row.current ? Theme.raised : "transparent"
        radius: row.entry.separator ? 0 : 8
    }
}

import QtQuick 2.15
import QtQuick.Layouts 1.15
import QtQuick.Templates 2.15 as T
import Quorvane 1.1

// The installed programs: search, categories, and a grid that starts and stops them.
FocusScope {
    id: launcher

    property alias grid: grid
    property alias heading: heading.text
    property string category
    property string _started
    readonly property bool _narrowed: search.length > 0 || category !== ""
    readonly property var categories: [""].concat(
        Array.from(entries.categories).filter(category => category !== "").sort())

    // A program was started that runs already: the place to raise its windows.
    signal runsAlready(string name, int pid)

    function start(name, path) {
        _started = name;
        entries.start(path, []);
    }

    // While rows change is no time to filter anew.
    onCategoriesChanged: Qt.callLater(() => {
        if (!categories.includes(category))
            category = "";
    })

    DesktopEntries {
        id: entries
        onRaiseProcess: launcher.runsAlready(launcher._started, pid)
    }
    DesktopFilter {
        id: shown
        category: launcher.category
        model: entries
    }
    SortFilterProxyModel {
        id: found
        filterRegularExpression: new RegExp(
            search.text.trim().replace(/[.*+?^${}()|[\]\\]/g, "\\$&"), "i")
        filterRole: Qt.UserRole + 2 // The name.
        sourceModel: shown
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin
            Layout.rightMargin: Theme.margin
            Layout.topMargin: Theme.margin
            spacing: Theme.margin

            Label {
                id: heading

                font.bold: true
                font.pixelSize: Theme.headingText
                visible: text !== ""
            }
            SearchField {
                id: search

                Layout.fillWidth: true
                Layout.maximumWidth: 440
                focus: true
                hint: "Search applications"
                Keys.onDownPressed: grid.forceActiveFocus()
                onAccepted: if (grid.count > 0) grid.itemAtIndex(0).tile.clicked()
            }
        }

        ChipRow {
            Layout.fillWidth: true
            Layout.leftMargin: Theme.margin - 4
            Layout.rightMargin: Theme.margin - 4
            chosen: launcher.category
            model: launcher.categories
            textOf: category => category === "" ? "All" : category.split(";")[0]
            visible: model.length > 1
            onChose: launcher.category = choice
        }

        GridView {
            id: grid

            readonly property int columns: Math.max(1, Math.floor(width / 132))

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: Theme.margin - 12
            Layout.rightMargin: Theme.margin - 12
            activeFocusOnTab: count > 0
            boundsBehavior: Flickable.StopAtBounds
            cellHeight: 144
            cellWidth: Math.floor(width / columns)
            clip: true
            model: found
            Accessible.role: Accessible.List
            Accessible.name: "Applications"
            Keys.onReturnPressed: if (currentItem) currentItem.tile.clicked()
            Keys.onEnterPressed: if (currentItem) currentItem.tile.clicked()
            Keys.onDeletePressed: if (currentItem) currentItem.tile.stopRequested()
            T.ScrollBar.vertical: SlimScrollBar { }

            delegate: Item {
                property alias tile: tile

                width: grid.cellWidth
                height: grid.cellHeight

                AppTile {
                    id: tile

                    anchors.fill: parent
                    anchors.margins: 4
                    focused: grid.activeFocus && parent.GridView.isCurrentItem
                    iconName: model.appIcon
                    name: model.name
                    status: model.keywords.split(" ").pop()
                    onClicked: {
                        grid.currentIndex = index;
                        launcher.start(model.name, model.path);
                    }
                    onStopRequested: entries.stop(model.path, [])
                }
            }

            EmptyState {
                title: launcher._narrowed ? "Nothing found" : "No applications"
                sentence: launcher._narrowed
                          ? "No application of this name is here. Try another word or all categories."
                          : "Programs appear here as soon as they are installed."
                visible: grid.count === 0
            }
        }
    }
}

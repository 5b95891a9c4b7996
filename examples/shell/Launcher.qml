import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQuick.Layouts 1.15
import Quorvane 1.1

// The installed programs: search, categories, and a grid that starts and stops them.
FocusScope {
    id: launcher

    required property Applications applications
    property alias grid: grid
    property alias heading: heading.text
    property alias menu: menu
    property alias search: search
    readonly property bool _narrowed: search.length > 0 || applications.category !== ""

    function launch(row) {
        const application = applications.get(row);
        if (application.appId)
            applications.launch(application.appId, []);
    }

    function showMenu(row, x, y) {
        const application = applications.get(row);
        const id = application.appId;
        const entry = (label, act) => ({ label, act });
        grid.currentIndex = row;
        menu.show(grid.itemAtIndex(row), x, y, [
            entry("Start", () => applications.launch(id, [])),
            entry("Start in terminal", () => applications.launchInTerminal(id, [])),
            ...application.actions.map(
                action => entry(action.text, () => applications.invoke(id, action.id))),
            ...(application.running ? [entry("Stop", () => applications.stop(id))] : [])
        ]);
    }

    Keys.onEscapePressed: {
        if (search.text !== "")
            search.clear();
        else
            applications.category = "";
        search.forceActiveFocus();
    }
    Keys.onPressed: event => {
        // Letters go to the search wherever the keyboard is.
        if (/^[^\s\x00-\x1f\x7f]/.test(event.text) && !(event.modifiers & (Qt.ControlModifier | Qt.AltModifier))) {
            search.forceActiveFocus();
            search.insert(search.length, event.text);
            event.accepted = true;
        }
    }

    PopupMenu {
        id: menu
        onClosed: grid.forceActiveFocus()
    }
    ColumnLayout {
        anchors { fill: parent; margins: Theme.margin; bottomMargin: 0 }
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            spacing: Theme.margin

            Label {
                id: heading

                font { bold: true; pixelSize: Theme.headingText }
                visible: text !== ""
            }
            Controls.TextField {
                id: search

                Layout.fillWidth: true
                Layout.maximumWidth: 440
                focus: true
                leftPadding: 40
                placeholderText: "Search applications"
                placeholderTextColor: Theme.muted
                selectByMouse: true
                Accessible.name: placeholderText
                Keys.onDownPressed: grid.forceActiveFocus()
                onAccepted: launcher.launch(0)
                onTextChanged: {
                    launcher.applications.search = text;
                    grid.currentIndex = 0;
                }

                background: Rectangle {
                    implicitHeight: 40
                    border { color: search.activeFocus ? Theme.accent : Theme.line; width: 1 }
                    color: Theme.surface
                    radius: height / 2

                    Icon {
                        x: 14
                        anchors.verticalCenter: parent.verticalCenter
                        icon: "image://quorvane/icon/edit-find-symbolic"
                        size: 16
                    }
                }
            }
        }

        ChipRow {
            Layout.fillWidth: true
            chosen: launcher.applications.category
            model: [""].concat(launcher.applications.categories)
            textOf: category => category === "" ? "All" : launcher.applications.categoryName(category)
            visible: model.length > 1
            Accessible.name: "Categories"
            onChose: choice => launcher.applications.category = choice
        }

        GridView {
            id: grid

            readonly property int _columns: Math.max(1, Math.floor(width / 132))
            readonly property int _page: _columns * Math.max(1, Math.floor(height / cellHeight))

            Layout.fillWidth: true
            Layout.fillHeight: true
            activeFocusOnTab: true
            boundsBehavior: Flickable.StopAtBounds
            cellHeight: 144
            cellWidth: Math.floor(width / _columns)
            clip: true
            model: launcher.applications
            Accessible.role: Accessible.List
            Accessible.name: "Applications"
            Keys.onReturnPressed: launcher.launch(currentIndex)
            Keys.onEnterPressed: launcher.launch(currentIndex)
            Keys.onDeletePressed: if (currentItem) currentItem.stopRequested()
            Keys.onMenuPressed: launcher.showMenu(currentIndex, cellWidth / 2, cellHeight / 2)
            Keys.onUpPressed: currentIndex < _columns ? search.forceActiveFocus() : moveCurrentIndexUp()
            Keys.onPressed: event => {
                const to = { [Qt.Key_Home]: 0, [Qt.Key_End]: count,
                             [Qt.Key_PageUp]: currentIndex - _page,
                             [Qt.Key_PageDown]: currentIndex + _page }[event.key];
                event.accepted = to !== undefined;
                if (event.accepted)
                    currentIndex = Math.max(0, Math.min(count - 1, to));
            }
            Controls.ScrollBar.vertical: Controls.ScrollBar { }

            delegate: AppTile {
                width: grid.cellWidth - Theme.gap
                height: grid.cellHeight - Theme.gap
                focused: grid.activeFocus && GridView.isCurrentItem
                iconSource: model.iconSource
                running: model.running
                text: model.name
                Accessible.description: model.comment
                onClicked: {
                    grid.currentIndex = index;
                    launcher.launch(index);
                }
                onFilesDropped: urls => launcher.applications.launch(model.appId, urls)
                onMenuRequested: (x, y) => launcher.showMenu(index, x, y)
                onStopRequested: launcher.applications.stop(model.appId)
            }

            EmptyState {
                title: launcher._narrowed ? "Nothing found" : "No applications"
                sentence: launcher._narrowed
                          ? "No application fits. Try another word or all categories."
                          : "Programs appear here as soon as they are installed."
                visible: grid.count === 0
            }
        }
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls

// A menu: of a tray item, whose submenus take its place when they are entered, or a list of
// { label, act } for a menu of the shell's own.
Controls.Popup {
    id: popup

    property alias list: list
    property alias said: message.text
    property var _levels: [] // { menu, row, x, y } of the one that was opened and those entered from it.
    property bool _waiting: false // For the program to fill its menu.
    property bool _failed: false
    readonly property var _level: _levels.length > 0 ? _levels[_levels.length - 1] : ({ x: 0, y: 0 })
    readonly property var _menu: _level.menu || null

    // Opens at the place in the item. That of a program opens when the program has answered.
    function show(item, x, y, menu) {
        close();
        _leaveAll();
        _enter(menu, -1, item.mapToItem(parent, x, y));
        if (!menu.open)
            open();
    }

    function choose(row) {
        const entry = _entry(row);
        if (!entry)
            return;
        // What is below stands where its row is.
        if (entry.hasChildren)
            return _enter(_menu.submenu(row), row,
                          list.itemAtIndex(row).mapToItem(parent, -padding, -padding));
        const menu = _menu;
        close();
        entry.act ? entry.act() : menu.trigger(row);
    }

    // Null for a row that can't be chosen.
    function _entry(row) {
        const entry = row < 0 || row >= list.count ? null : _menu.get ? _menu.get(row) : _menu[row];
        return !entry || entry.enabled === false || entry.visible === false || entry.separator ? null : entry;
    }

    // To the next row that can be chosen, and from the last one to the first.
    function _move(by) {
        let row = Math.max(list.currentIndex, by < 0 ? 0 : -1);
        for (let tries = 0; tries < list.count; ++tries) {
            row = (row + by + list.count) % list.count;
            if (_entry(row))
                return list.currentIndex = row;
        }
    }

    function _enter(menu, row, place) {
        _levels = _levels.concat([{ menu, row, x: place.x, y: place.y }]);
        list.currentIndex = -1;
        _failed = false;
        _waiting = !!menu && !!menu.open;
        if (_waiting)
            menu.open();
    }

    function _leave() {
        const { menu, row } = _level;
        _levels = _levels.slice(0, -1);
        _failed = false;
        _waiting = false;
        list.currentIndex = row;
        if (menu && menu.close)
            menu.close();
    }

    function _leaveAll() {
        while (_levels.length > 0)
            _leave();
    }

    function _answered(well) {
        _waiting = false;
        _failed = !well;
        open();
    }

    x: _level.x
    y: _levels.length === 1 && parent && _level.y + implicitHeight > parent.height
       ? _level.y - implicitHeight : _level.y
    implicitHeight: contentItem.implicitHeight + 12
    parent: Controls.Overlay.overlay
    width: 300
    focus: true
    margins: 6
    padding: 6
    onClosed: _leaveAll()

    Connections {
        target: popup._menu && popup._menu.open ? popup._menu : null
        function onOpened() { popup._answered(true); }
        function onFailed() { popup._answered(false); }
    }

    contentItem: Column {
        PushButton {
            width: parent.width
            text: "\u2039 Back"
            visible: popup._levels.length > 1
            onClicked: popup._leave()
        }
        Label {
            id: message

            width: parent.width
            height: 34
            leftPadding: 10
            color: Theme.muted
            text: popup._failed ? "The program does not answer"
                : list.count > 0 ? "" : popup._waiting ? "\u2026" : "Nothing to choose from"
            visible: text !== ""
        }
        ListView {
            id: list

            width: parent.width
            implicitHeight: contentHeight
            height: Math.min(implicitHeight, popup.parent ? popup.parent.height - 80 : 0)
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            focus: true
            highlightMoveDuration: 0
            model: popup._failed ? null : popup._menu
            Accessible.role: Accessible.PopupMenu
            Keys.onUpPressed: popup._move(-1)
            Keys.onDownPressed: popup._move(1)
            Keys.onReturnPressed: popup.choose(currentIndex)
            Keys.onEnterPressed: popup.choose(currentIndex)
            Keys.onRightPressed: popup.choose(currentIndex)
            Keys.onLeftPressed: if (popup._levels.length > 1) popup._leave()
            Controls.ScrollBar.vertical: Controls.ScrollBar { }

            delegate: MenuRow {
                width: list.width
                entry: typeof modelData === "undefined" ? model : modelData
                current: ListView.isCurrentItem
                onHoveredChanged: if (hovered) list.currentIndex = index
                onClicked: popup.choose(index)
            }
        }
    }
    background: Rectangle {
        border.color: Theme.line
        color: Theme.surface
        radius: Theme.radius
    }
}

import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls

// A menu: of a tray item, whose submenus take its place when they are entered, or a list of
// { label, act } for a menu of the shell's own.
Controls.Popup {
    id: popup

    property alias list: list
    property var _levels: [] // The menu that was opened, and those entered from it.
    property point _place
    readonly property var _menu: _levels.length > 0 ? _levels[_levels.length - 1] : null

    // Opens at the place in the item.
    function show(item, x, y, menu) {
        _place = item.mapToItem(parent, x, y);
        _levels = [];
        _enter(menu);
        open();
    }

    function choose(row) {
        const entry = Array.isArray(_menu) ? _menu[row] : _menu.get(row);
        if (row < 0 || entry.enabled === false || entry.separator)
            return;
        if (entry.hasChildren)
            return _enter(_menu.submenu(row));
        const menu = _menu;
        close();
        entry.act ? entry.act() : menu.trigger(row);
    }

    function _enter(menu) {
        if (menu && menu.open)
            menu.open();
        _levels = _levels.concat([menu]);
        list.currentIndex = -1;
    }

    function _leave() {
        if (_menu && _menu.close)
            _menu.close();
        _levels = _levels.slice(0, -1);
    }

    x: _place.x
    y: parent && _place.y + implicitHeight > parent.height ? _place.y - implicitHeight : _place.y
    implicitHeight: contentItem.implicitHeight + 12
    parent: Controls.Overlay.overlay
    width: 300
    focus: true
    margins: 6
    padding: 6
    onClosed: _levels.forEach(_ => _leave())

    contentItem: Column {
        PushButton {
            width: parent.width
            text: "\u2039 Back"
            visible: popup._levels.length > 1
            onClicked: popup._leave()
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
            model: popup._menu
            Accessible.role: Accessible.PopupMenu
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

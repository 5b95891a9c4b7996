import QtQuick 2.15
import QtQuick.Controls 2.15 as Controls
import QtQuick.Layouts 1.15
import QtQml.Models 2.15
import Quorvane 1.1

// What is pending, newest first. Of one program three are shown, and the rest is folded, but for
// what is critical. What is transient is not listed: it pops up.
FocusScope {
    id: centre

    required property Notifications notifications
    property alias list: list
    property alias heading: heading.text
    property date now: new Date()
    // Programs call themselves what they like, so their names are keys of maps and of nothing else.
    readonly property var _programs: new Map() // The ids that fold of each, the newest last.
    readonly property var _programOf: new Map() // Of each such id.
    readonly property var _unfolded: new Set()
    property int _changes: 0 // Of these.

    function unfold(program) {
        _unfolded.add(program);
        _programs.get(program).forEach(id => _show(id, true));
        ++_changes;
    }

    function _show(id, shown) {
        const row = notifications.indexOf(id);
        if (row >= 0)
            pending.items.get(row).inShown = shown;
    }

    function _put(id) {
        const row = notifications.indexOf(id);
        if (row < 0)
            return;
        const { appName, isTransient, urgency } = pending.items.get(row).model;
        now = new Date();
        const folds = !isTransient && urgency !== Notifications.Critical;
        if (folds && _programOf.get(id) === appName)
            return;
        _take(id);
        _show(id, !isTransient);
        if (folds) {
            _programOf.set(id, appName);
            const ids = _programs.get(appName) || [];
            _programs.set(appName, ids);
            if (!_unfolded.has(appName) && ids.length >= 3)
                _show(ids[ids.length - 3], false);
            ids.push(id);
            ++_changes;
        }
    }

    function _take(id) {
        const program = _programOf.get(id);
        if (!_programOf.delete(id))
            return;
        const ids = _programs.get(program);
        ids.splice(ids.indexOf(id), 1);
        if (ids.length >= 3)
            _show(ids[ids.length - 3], true);
        if (ids.length === 0) {
            _programs.delete(program);
            _unfolded.delete(program);
        }
        ++_changes;
    }

    function _foldedBehind(id) {
        const ids = _programs.get(_programOf.get(id)) || [];
        return _unfolded.has(_programOf.get(id)) || ids[ids.length - 3] !== id ? 0 : ids.length - 3;
    }

    Component.onCompleted: {
        for (let row = notifications.count - 1; row >= 0; --row)
            _put(notifications.get(row).id);
    }

    Connections {
        target: centre.notifications
        function onPosted(id) { centre._put(id); }
        function onReplaced(id) { centre._put(id); }
        function onClosed(id) { centre._take(id); }
    }
    DelegateModel {
        id: pending

        model: centre.notifications
        groups: DelegateModelGroup { name: "shown" }
        filterOnGroup: "shown"

        delegate: NotificationCard {
            width: list.width
            focused: list.activeFocus && ListView.isCurrentItem
            folded: centre._changes, centre._foldedBehind(model.id)
            notification: model
            now: centre.now
            onAnswered: function(actionId) { centre.notifications.invoke(model.id, actionId); }
            onDismissed: centre.notifications.dismiss(model.id)
            onUnfolded: centre.unfold(model.appName)
        }
    }
    Timer { // For the ages.
        interval: 30000
        repeat: true
        running: list.count > 0
        onTriggered: centre.now = new Date()
    }

    ColumnLayout {
        anchors { fill: parent; margins: Theme.margin; bottomMargin: 0 }
        spacing: 12

        RowLayout {
            Layout.fillWidth: true
            Layout.minimumHeight: 40
            spacing: Theme.gap

            Label {
                id: heading

                Layout.fillWidth: true
                font { bold: true; pixelSize: Theme.headingText }
            }
            PushButton {
                id: hush

                checkable: true
                text: "Quiet"
                Accessible.name: "Do not disturb"
                onToggled: centre.notifications.doNotDisturb = checked

                Tip {
                    text: "Do not disturb: only what is critical pops up"
                    visible: hush.hovered
                }
            }
            PushButton { // Keeps its place: with Qt 6 a layout doesn't follow what comes later.
                text: "Clear all"
                enabled: list.count > 0
                opacity: enabled ? 1 : 0
                onClicked: centre.notifications.clear()
            }
        }

        ListView {
            id: list

            Layout.fillWidth: true
            Layout.fillHeight: true
            activeFocusOnTab: true
            bottomMargin: Theme.margin
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            model: pending
            spacing: 12
            Accessible.role: Accessible.List
            Accessible.name: "Notifications"
            onCountChanged: if (!activeFocus) currentIndex = 0
            Keys.onDeletePressed: if (currentItem) currentItem.dismissed()
            Keys.onReturnPressed: if (currentItem) currentItem.activate()
            Controls.ScrollBar.vertical: Controls.ScrollBar { }

            EmptyState {
                title: centre.notifications.registered ? "All quiet" : "Shown elsewhere"
                sentence: centre.notifications.registered
                          ? "Messages from your programs will gather here until you deal with them."
                          : "Another program shows the notifications. This one takes over when it leaves."
                visible: list.count === 0
            }
        }
    }
}

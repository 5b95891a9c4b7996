import QtQuick 2.15
import QtQuick.Templates 2.15 as T

T.ScrollBar {
    id: bar

    implicitWidth: 10
    padding: 2
    minimumSize: 0.08
    visible: size < 1

    contentItem: Rectangle {
        implicitWidth: 6
        color: Theme.muted
        opacity: bar.pressed || bar.hovered ? 0.8 : 0.35
        radius: 3
    }
}

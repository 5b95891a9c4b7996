import QtQuick 2.15
import Quorvane 1.1

Item { DesktopEntries { Component.onCompleted: Qt.exit(rowCount() > 0 ? 0 : 1) } }

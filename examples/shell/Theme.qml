pragma Singleton
import QtQuick 2.15

// Colours, type sizes and distances of the whole shell.
QtObject {
    property string scheme: "system" // or "light", or "dark"
    readonly property bool dark: scheme === "dark"
                                 || scheme === "system" && systemPalette.window.hslLightness < 0.5

    readonly property color window: dark ? "#14161b" : "#f3f4f7"
    readonly property color surface: dark ? "#1f2229" : "#ffffff"
    readonly property color raised: dark ? "#2a2e37" : "#e9ebf0"
    readonly property color line: dark ? "#343944" : "#dcdfe6"
    readonly property color text: dark ? "#eef0f4" : "#1a1c21"
    readonly property color muted: dark ? "#a9b0bd" : "#59606d"
    readonly property color accent: dark ? "#8db2ff" : "#2857d0"
    readonly property color accentText: dark ? "#0e1930" : "#ffffff"
    readonly property color running: dark ? "#6fd39a" : "#1c7a45"
    readonly property color attention: dark ? "#ffb86b" : "#c25700"
    readonly property color critical: dark ? "#ff8a80" : "#c62828"

    readonly property int smallText: 12
    readonly property int bodyText: 14
    readonly property int titleText: 15
    readonly property int headingText: 22

    readonly property int gap: 8
    readonly property int margin: 24
    readonly property int radius: 12
    readonly property int moment: 160 // Milliseconds of a transition.

    // The URL of a picture, with what is asked of it besides.
    function picture(url, query) {
        return url === "" ? "" : url + "?" + query;
    }

    readonly property SystemPalette systemPalette: SystemPalette { }
}

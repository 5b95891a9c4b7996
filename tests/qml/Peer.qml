import QtQml 2.15
import Quorvane 1.1

// A program that posts a notification and ends when it is answered.
QtObject {
    property Notifier notifier: Notifier {
        property string key

        Component.onCompleted: notifyWithActions("Tea", "It is ready", false, ["drink", "Drink it"])
        onActionInvoked: key = action
        onNotificationClosed: {
            console.log(key, reason);
            Qt.quit();
        }
    }
}

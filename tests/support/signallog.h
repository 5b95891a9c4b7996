#pragma once

#include <QMetaMethod>
#include <QStringList>
#include <QVariant>

// Writes down the signals of objects, in order: their names and arguments.
struct SignalLog : QObject
{
    explicit SignalLog(const QObjectList &senders)
    {
        for (const QObject *sender : senders) {
            for (int i = 0; i < sender->metaObject()->methodCount(); ++i) {
                if (sender->metaObject()->method(i).methodType() == QMetaMethod::Signal)
                    QMetaObject::connect(sender, i, this, staticMetaObject.methodCount());
            }
        }
    }
    int qt_metacall(QMetaObject::Call, int, void **arguments) override
    {
        const QMetaMethod signal = sender()->metaObject()->method(senderSignalIndex());
        QString line = signal.name();
        for (int i = 0; i < signal.parameterCount(); ++i)
            line += ' ' + argument(signal, i, arguments[i + 1]).toString();
        lines += line.simplified();
        return -1;
    }
    static QVariant argument(const QMetaMethod &signal, int index, const void *value)
    {
#if QT_VERSION_MAJOR > 5
        return QVariant(signal.parameterMetaType(index), value);
#else
        return QVariant(signal.parameterType(index), value);
#endif
    }
    QString take()
    {
        return std::exchange(lines, {}).join(", ");
    }

    QStringList lines;
};

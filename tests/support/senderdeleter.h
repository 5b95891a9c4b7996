#pragma once

#include <QMetaMethod>
#include <QPointer>

// Deletes an object inside its signal of that name, or another one instead.
struct SenderDeleter : QObject
{
    SenderDeleter(const QObject *sender, const QByteArray &signal, QObject *other = nullptr)
        : _other(other)
    {
        for (int i = 0; i < sender->metaObject()->methodCount(); ++i) {
            if (sender->metaObject()->method(i).name() == signal)
                QMetaObject::connect(sender, i, this, staticMetaObject.methodCount());
        }
    }
    int qt_metacall(QMetaObject::Call, int, void **) override
    {
        delete (_other ? _other.data() : sender());
        return -1;
    }

private:
    const QPointer<QObject> _other;
};

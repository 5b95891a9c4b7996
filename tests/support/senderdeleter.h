#pragma once

#include <QMetaMethod>

// Deletes an object inside its signal of that name.
struct SenderDeleter : QObject
{
    SenderDeleter(const QObject *sender, const QByteArray &signal)
    {
        for (int i = 0; i < sender->metaObject()->methodCount(); ++i) {
            if (sender->metaObject()->method(i).name() == signal)
                QMetaObject::connect(sender, i, this, staticMetaObject.methodCount());
        }
    }
    int qt_metacall(QMetaObject::Call, int, void **) override
    {
        delete sender();
        return -1;
    }
};

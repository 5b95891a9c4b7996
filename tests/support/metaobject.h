#pragma once

#include <QStringList>

struct QMetaObject;

// The signals, slots and invokable methods that a class declares itself, in declared order and with
// the names of their arguments: "start(QString path,QStringList args)".
QStringList declaredMethods(const QMetaObject *metaObject);

// The properties that a class declares itself, in declared order, with their notify signals:
// "QString icon iconChanged".
QStringList declaredProperties(const QMetaObject *metaObject);

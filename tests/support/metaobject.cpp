#include "metaobject.h"

#include <QMetaMethod>
#include <QMetaObject>
#include <QMetaProperty>

QStringList declaredMethods(const QMetaObject *metaObject)
{
    QStringList methods;
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        QStringList arguments;
        for (int j = 0; j < method.parameterCount(); ++j) {
            const QByteArray name = method.parameterNames().at(j);
            const QByteArray type = method.parameterTypes().at(j);
            arguments += name.isEmpty() ? type : type + ' ' + name;
        }
        methods += QStringLiteral("%1(%2)").arg(QString::fromLatin1(method.name()),
                                                arguments.join(','));
    }
    return methods;
}

QStringList declaredProperties(const QMetaObject *metaObject)
{
    QStringList properties;
    for (int i = metaObject->propertyOffset(); i < metaObject->propertyCount(); ++i) {
        const QMetaProperty property = metaObject->property(i);
        properties += QStringLiteral("%1 %2 %3")
                              .arg(property.typeName(), property.name(),
                                   QString::fromLatin1(property.notifySignal().name()));
    }
    return properties;
}

#pragma once

#include <QByteArray>
#include <QMap>

// Sets environment variables for the life of a test and puts them back.
class Environment
{
public:
    Environment() = default;
    ~Environment();
    Q_DISABLE_COPY(Environment)

    void set(const char *name, const QByteArray &value);
    void unset(const char *name);

private:
    void _remember(const char *name);

    QMap<QByteArray, QByteArray> _before; // A null value: the variable was not set.
};

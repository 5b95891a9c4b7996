#include "environment.h"

Environment::~Environment()
{
    for (auto it = _before.cbegin(); it != _before.cend(); ++it) {
        if (it.value().isNull())
            qunsetenv(it.key().constData());
        else
            qputenv(it.key().constData(), it.value());
    }
}

void Environment::set(const char *name, const QByteArray &value)
{
    _remember(name);
    qputenv(name, value);
}

void Environment::unset(const char *name)
{
    _remember(name);
    qunsetenv(name);
}

void Environment::_remember(const char *name)
{
    if (!_before.contains(name))
        _before.insert(name, qEnvironmentVariableIsSet(name) ? qgetenv(name) : QByteArray());
}

#pragma once

#include <QStringList>
#include <QtGlobal>

// Records what goes through Qt's message handler for the life of a test: "category level: text".
class Messages
{
public:
    Messages();
    ~Messages();
    Q_DISABLE_COPY(Messages)

    // What was recorded since the last call.
    QStringList take();

private:
    QtMessageHandler _before;
};

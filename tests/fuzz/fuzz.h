#pragma once

#include <QCoreApplication>
#include <QString>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

// Ends a run with a finding. Unlike an assertion it is there in every kind of build.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

inline QString takeString(FuzzedDataProvider &input, std::size_t maximum = 64)
{
    return QString::fromStdString(input.ConsumeRandomLengthString(maximum));
}

// An application without a session bus, whose messages go nowhere.
inline void startApplication(int *argc, char ***argv)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static const auto *application = new QCoreApplication(*argc, *argv);
    Q_UNUSED(application)
}

// Lets the event loop turn once, deferred deletions included.
inline void turnEventLoop()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

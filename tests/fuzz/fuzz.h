#pragma once

#include <QCoreApplication>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

// Ends a run with a finding. Unlike an assertion it is there in every kind of build.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

// Each target has an application without a session bus, whose messages go nowhere.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    static const auto *application = new QCoreApplication(*argc, *argv);
    return int(application == nullptr);
}

// Lets the event loop turn once, deferred deletions included.
inline void turnEventLoop()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

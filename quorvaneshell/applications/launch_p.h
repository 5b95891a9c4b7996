#pragma once

#include "application_p.h"

#include <QByteArrayList>
#include <QVector>

namespace quorvane {

// What is to be launched, and how.
struct LaunchRequest
{
    ApplicationPointer application;
    QString action;      // The id of one; empty for the application itself.
    QByteArrayList uris; // To open.
    bool inTerminal = false;
};

// What launching a program came to. The files of one launch may take more than one process.
struct Launch
{
    QVector<qint64> pids;
    QString error; // Empty if nothing went wrong.
};

// Starts the program as a child that is to be reaped: the field codes with the URIs, in its folder,
// in a terminal if it or the caller asks for one. It has the environment of this process, without
// what is about the shell itself, and its output, a session of its own, and survives this process.
Launch launchProgram(const LaunchRequest &request);

} // namespace quorvane

#pragma once

#include "patience.h"

// A program with items or a registry, of the library or in Python. It ends with the object.
struct Peer : QProcess
{
    explicit Peer(const QString &what, const QString &name = "peer")
    {
        setProcessChannelMode(MergedChannels);
        what.endsWith(".py") ? start("/usr/bin/python3", { what })
                             : start(TRAYPEER, { what, name });
        QTRY_VERIFY(says("ready"));
    }
    ~Peer() override
    {
        kill();
        waitForFinished();
    }
    void tell(const QByteArray &line) { write(line + '\n'); }
    bool says(const QByteArray &text, int times = 1) { return peek(99999).count(text) >= times; }
};

#pragma once

#include <QByteArrayList>
#include <QString>
#include <QStringList>

namespace quorvane {

// What a command line starts in the end, whatever it goes through: env, a shell, an interpreter,
// wine, flatpak and the like.
struct StartedProgram
{
    QString path; // As it stands there: a program, a script, an archive of Java.
    // Its last part as it is compared: in small letters, without the endings of scripts and wrapped
    // programs. Empty for one that says nothing ("main.py").
    QString name;
    QStringList arguments;   // Those after it, without field codes.
    QString flatpak;         // The application in the sense of flatpak.
    QString snap;            // The snap, without the name of its program.
    bool isScript = false;   // Run by an interpreter.
    bool isIndirect = false; // By the desktop entry of another application.
};

// Of the words of a command line, or of the value of Exec.
StartedProgram startedProgram(const QByteArrayList &words);

// How the last part of a path is compared.
QString programName(const QString &path);

// Whether a program is one that runs others (python3, java, electron), so that its name says
// nothing about them.
bool isInterpreter(const QString &name);

} // namespace quorvane

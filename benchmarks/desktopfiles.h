#pragma once

#include <QTemporaryDir>

// A data home with a number of applications, whose files are as applications install them (40
// languages, 4 KB), and no other data directory.
class DesktopFiles
{
public:
    explicit DesktopFiles(int count);

    QString directory() const;

    // Makes this the data home of the process and of its children.
    void use() const;

    // Writes the file of that number.
    QString write(int number) const;

private:
    QTemporaryDir _root;
};

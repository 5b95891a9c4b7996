#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

using GKeyFile = struct _GKeyFile;

namespace quorvane {

// A file of the kind that the Desktop Entry Specification describes, as it was when this was made:
// desktop entries, the names of categories, and lists of what opens what. It is read here and not by GIO, which before its
// first entry walks through all folders, along any link.
//
// Keys are those of the group "Desktop Entry", unless another is named.
class DesktopFile
{
public:
    explicit DesktopFile(const QString &path);

    // Whether it is a regular file of up to 1 MB, of that kind.
    bool isValid() const { return bool(_file); }

    bool hasGroup(const QByteArray &group) const;
    bool hasKey(const char *key) const;

    QByteArray text(const char *key) const { return text(key, mainGroup); }
    QByteArray text(const char *key, const QByteArray &group) const;
    // In the user's language, without blanks around it.
    QString localText(const char *key) const { return localText(key, mainGroup); }
    QString localText(const char *key, const QByteArray &group) const;
    QStringList list(const QByteArray &key) const { return list(key, mainGroup); }
    // Empty for a file that is not valid.
    QStringList list(const QByteArray &key, const QByteArray &group) const;
    QStringList localList(const char *key) const;
    bool flag(const char *key) const;

    // The group of an action; that of the entry itself for an empty id.
    static QByteArray actionGroup(const QString &action);

private:
    static constexpr const char *mainGroup = "Desktop Entry";

    struct Deleter
    {
        void operator()(GKeyFile *file) const;
    };

    std::unique_ptr<GKeyFile, Deleter> _file;
};

} // namespace quorvane

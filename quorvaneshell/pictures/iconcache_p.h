#pragma once

#include "icontheme_p.h"

#include <QCache>
#include <QColor>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QPixmap>
#include <QStringList>
#include <QVector>

#include <memory>

namespace quorvane {

// What icon() is asked for.
struct IconRequest
{
    QString source;
    QString label;
    QColor color;
};

// A request in a size in pixels.
struct IconKey
{
    IconRequest request;
    QSize size;
};
bool operator==(const IconKey &one, const IconKey &other);
inline auto qHash(const IconKey &key)
{
    return qHash(key.request.source) ^ uint(key.size.width() << 12 ^ key.size.height());
}

// How long the GUI thread may wait, so that it is never held for long.
class Patience
{
public:
    Patience() { _clock.start(); }
    // Milliseconds for one icon, now.
    int left() const;
    void spend(qint64 microseconds);

private:
    qint64 _now() const;

    QElapsedTimer _clock;
    qint64 _regainedAt = 0; // All that was spent.
};

// The pictures that were painted. For the GUI thread; lives as long as the process.
class IconCache : public QObject
{
    Q_OBJECT

public:
    static IconCache &instance();

    // Read now, if that takes a moment only. Else what stands for it.
    QPixmap picture(const IconRequest &request, const QSize &size);

Q_SIGNALS:
    // Pictures are there for what something else was given for. Once in a turn of the event loop.
    void iconsRead(const QStringList &sources);

private:
    struct Entry
    {
        QPixmap pixmap;
        bool isFinal = false;
        QDeadlineTimer staysFor; // Otherwise.
    };
    struct Reading;

    IconCache();

    void _followThemes();
    std::shared_ptr<Reading> _read(const IconKey &key);
    bool _waitFor(Reading &reading);
    QPixmap _take(const Reading &reading);
    void _takeLate(const std::shared_ptr<Reading> &reading);
    void _keep(const IconKey &key, const QPixmap &pixmap, bool isFinal);

    IconThemes _themes;
    QVector<QStringList> _choice; // From which the themes were made.
    QCache<IconKey, Entry> _entries;
    QHash<IconKey, std::shared_ptr<Reading>> _readings;
    QStringList _late;
    Patience _patience;
};

} // namespace quorvane

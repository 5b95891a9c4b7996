#include "iconreader_p.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace quorvane {

namespace {

// Never destroyed, as its threads may not end.
class Threads
{
public:
    explicit Threads(int number)
        : _pool(new QThreadPool)
    {
        _pool->setMaxThreadCount(number);
    }
    QThreadPool *operator->() const { return _pool; }

private:
    QThreadPool *const _pool;
};

struct Readers
{
    // Fonts need an application.
    Readers()
    {
        qAddPostRoutine([] {
            constexpr int patience = 1000; // Milliseconds.
            for (const Threads *threads : { &instance().forThemes, &instance().forFiles }) {
                (*threads)->clear();
                (*threads)->waitForDone(patience);
            }
        });
    }
    static Readers &instance()
    {
        static auto *const readers = new Readers;
        return *readers;
    }

    const Threads forThemes { 2 };
    const Threads forFiles { 4 };
};

} // namespace

void readIconInThread(const IconSource &source, const QSize &room, const IconThemes &themes,
                      const std::function<void(const IconPicture &)> &done, bool isUrgent)
{
    const Readers &readers = Readers::instance();
    const bool isOfTheme = !source.isPath() && source.folder.isEmpty();
    const Threads &threads = isOfTheme ? readers.forThemes : readers.forFiles;
    threads->start([=] { done(iconPicture(source, room, themes)); }, isUrgent ? 1 : 0);
}

} // namespace quorvane

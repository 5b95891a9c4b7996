#include "iconreader_p.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace quorvane {

namespace {

// Never destroyed, as their threads may not end.
struct Readers
{
    // Fonts need an application. A disk that doesn't answer is not waited for.
    Readers()
    {
        forThemes.setMaxThreadCount(2);
        forFiles.setMaxThreadCount(4);
        qAddPostRoutine([] {
            constexpr int patience = 5000; // Milliseconds.
            instance().forThemes.clear();
            instance().forFiles.clear();
            instance().forThemes.waitForDone();
            instance().forFiles.waitForDone(patience);
        });
    }
    static Readers &instance()
    {
        static auto *const readers = new Readers;
        return *readers;
    }

    QThreadPool forThemes;
    QThreadPool forFiles;
};

} // namespace

void readIconInThread(const IconSource &source, const QSize &room, const IconThemes &themes,
                      const std::function<void(const IconPicture &)> &done, bool isUrgent)
{
    Readers &readers = Readers::instance();
    const bool isOfTheme = !source.isPath() && source.folder.isEmpty();
    QThreadPool &threads = isOfTheme ? readers.forThemes : readers.forFiles;
    threads.start([=] { done(iconPicture(source, room, themes)); }, isUrgent ? 1 : 0);
}

} // namespace quorvane

#include "notificationinhibitions_p.h"

#include "notification_p.h"
#include "styledbody_p.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr int most = 256;
constexpr int mostOfProgram = 16;
constexpr int longestText = 1024;

QString readable(const QString &text)
{
    return withoutPiledMarks(shortened(text, longestText));
}

} // namespace

NotificationInhibitions::NotificationInhibitions()
{
    connect(&_programs, &BusNames::ownerKnown, this,
            [this](const QString &program, const QString &owner) {
                if (owner.isEmpty())
                    _removeOf(program);
            });
}

QVariantList NotificationInhibitions::values() const
{
    QVariantList values;
    for (const Inhibition &inhibition : _inhibitions)
        values += inhibition.value;
    return values;
}

uint NotificationInhibitions::add(const QString &program, const QString &desktopEntry,
                                  const QString &reason)
{
    const auto ofProgram
            = std::count_if(_inhibitions.cbegin(), _inhibitions.cend(),
                            [&program](const auto &other) { return other.program == program; });
    if (_inhibitions.size() >= most || ofProgram >= mostOfProgram)
        return 0;
    do
        ++_lastNumber;
    while (_lastNumber == 0 || _inhibitions.contains(_lastNumber));
    const uint number = _lastNumber;
    _inhibitions.insert(
            number, { program,
                      { { QStringLiteral("appId"), withoutDesktopSuffix(readable(desktopEntry)) },
                        { QStringLiteral("reason"), readable(reason) } } });
    _programs.follow(program);
    Q_EMIT changed();
    return number;
}

void NotificationInhibitions::remove(const QString &program, uint number)
{
    const auto found = _inhibitions.find(number);
    if (found == _inhibitions.end() || found->program != program)
        return;
    _inhibitions.erase(found);
    _programs.unfollow(program);
    Q_EMIT changed();
}

void NotificationInhibitions::_removeOf(const QString &program)
{
    for (auto inhibition = _inhibitions.begin(); inhibition != _inhibitions.end();) {
        if (inhibition->program != program) {
            ++inhibition;
            continue;
        }
        inhibition = _inhibitions.erase(inhibition);
        _programs.unfollow(program);
    }
    Q_EMIT changed();
}

} // namespace quorvane

#pragma once

#include "applicationlauncher_p.h"
#include "applications.h"

#include <quorvaneshell/rows/rowwalk_p.h>

#include <QVector>

#include <vector>

namespace quorvane {

class ApplicationList;
class ApplicationUsage;

// What is looked for among the applications, and the rows that this comes to.
class ApplicationsPrivate
{
public:
    explicit ApplicationsPrivate(Applications *model);

    QVariant value(const Application &application, int role) const;
    // Null, after a failed(), for an application that is not installed.
    ApplicationPointer installed(const QString &appId) const;

    // Both return whether the model is still there.
    bool updateCategories();
    bool show();

    const QSharedPointer<ApplicationList> list;
    ApplicationLauncher launcher;

    QString search;
    QStringList words; // Of the search, folded.
    QString category;
    QStringList categories;
    bool showAll = false;
    QSharedPointer<ApplicationUsage> usage; // Null where the order is that of the names.

private:
    friend class Applications;
    friend class RowWalk<ApplicationsPrivate>;
    using Wanted = std::vector<ApplicationPointer>;

    bool _isInCategory(const Application &application) const;
    Wanted _wanted() const;

    static ApplicationKey _keyOf(const ApplicationPointer &application)
    {
        return { application.data() };
    }
    static ApplicationPointer _makeRow(const ApplicationPointer &item) { return item; }
    void _rowsRemoved(const Wanted &) { }
    template<typename IsCurrent>
    void _updateRows(const Wanted &wanted, const IsCurrent &isCurrent);
    void _programsChanged(const QString &appId);

    Applications *const _model;
    std::vector<ApplicationPointer> _rows;
    RowWalk<ApplicationsPrivate> _walk;
};

} // namespace quorvane

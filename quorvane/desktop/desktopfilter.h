#pragma once

#include <quorvane/desktop/desktopentries.h>
#include <quorvane/quorvane_export.h>

#include <QSortFilterProxyModel>
#include <QString>

namespace xdg {

/*! \ingroup desktop
    \brief Narrows DesktopEntries down to what one view shows.

    A row is shown if its entry has a name, is not marked NoDisplay (unless showAll), is of the
    category (unless that is empty), and has a command in the group section (unless that is empty).
    The rows stay in the order of the model.

    With a section set, data() gives that group's values: icon, category, keywords and command are
    those of the group where it has them, and those of the main group where it has not. The name
    (roles 0 and 258) is the main name for a group that has a name of its own, and empty for one
    that has none.

    Set the properties from the event loop or from user input, not from a slot that is connected to
    DesktopEntries::categoriesChanged(): at that moment the model is in the middle of a row change.

    The filter does not own its model: the model has to outlive it. */
class QUORVANE_EXPORT DesktopFilter : public QSortFilterProxyModel
{
    Q_OBJECT

    /*! The DesktopEntries that is filtered, null at first. Null and objects of other classes are
        ignored when set. */
    Q_PROPERTY(QObject *model READ model WRITE setModel NOTIFY modelChanged)

    /*! The whole value of "Desktop Entry/Categories" that a row must have, case-sensitive: one of
        DesktopEntries::categories. Empty for all. */
    Q_PROPERTY(QString category READ category WRITE setCategory NOTIFY categoryChanged)

    /*! The name of a group of the file, such as "Desktop Action Start". Empty for none. */
    Q_PROPERTY(QString section READ section WRITE setSection NOTIFY sectionChanged)

    /*! Whether entries with NoDisplay=true (in any case) are shown; false at first. */
    Q_PROPERTY(bool showAll READ showAll WRITE setShowAll NOTIFY showAllChanged)

public:
    explicit DesktopFilter(QObject *parent = nullptr);
    ~DesktopFilter() override;

    QObject *model() const;
    QString category() const;
    QString section() const;
    bool showAll() const;

    /*! The value of the row, of the group section where one is set. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    /*! Whether the row is shown. A row of the source without an entry in its role 267 is hidden,
        with a warning. */
    bool filterAcceptsRow(int source_row, const QModelIndex &source_parent) const override;

Q_SIGNALS:
    /*! Never emitted: listen to DesktopEntries::raiseProcess(). */
    void raise(int pid);

    void modelChanged(QObject *model);
    void categoryChanged(QString category);
    void sectionChanged(QString category);
    void showAllChanged(bool showall);

public Q_SLOTS:
    /*! Sets the source model and emits modelChanged(). */
    void setModel(QObject *model);

    /*! Filters anew and emits categoryChanged(), unless the category is set already. */
    void setCategory(QString category);

    /*! Filters anew and emits sectionChanged(), unless the section is set already. Rows that stay
        are not announced as changed. */
    void setSection(QString category);

    /*! Filters anew and emits showAllChanged(), unless it is set already. */
    void setShowAll(bool showall);

private:
    DesktopEntries *_model = nullptr;
    QString _category;
    QString _section;
    bool _showAll = false;
};

} // namespace xdg

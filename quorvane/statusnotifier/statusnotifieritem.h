#pragma once

#include <quorvane/quorvane_export.h>

#include <QObject>
#include <QString>
#include <QStringList>

/*! \class StatusNotifierItemAdaptor
    \ingroup statusnotifier
    The bus interface \c org.kde.StatusNotifierItem of an xdg::StatusNotifierItem, which creates it.
    Its header is \c quorvane/statusnotifier/statusnotifieritemadaptor.h. */
class QUORVANE_EXPORT StatusNotifierItemAdaptor;

namespace xdg {

/*! \ingroup statusnotifier
    \brief An application's entry in the tray.

    An application creates one item, after QGuiApplication and its names, and sets what the tray
    shows. The item publishes itself on the session bus as \c org.kde.StatusNotifierItem at
    \c /StatusNotifierItem, tells the watcher of it, and turns the clicks that a host reports into
    activated() and secondaryActivated().

    The bus name is "org.quorvane.", the Id, "-" and the process number, and does not follow later
    changes of the Id. It is claimed together with a debug line of SYSTEM_TRAY(): with that level
    switched off the name is not claimed, and the watcher refuses the item. The logging rule
    \c xdg.system_tray.debug=true makes sure of it.

    The item registers once, in its constructor. A watcher that starts later, or starts again, does
    not know it. A process has one item: a second one has the same object path and stays
    unpublished, without a message. If the Id differs, and with it the bus name, the tray shows the
    first item twice.

    Every datum is a property under two names, in the spelling of the bus and in that of declarative
    code (the second name of Id is idItem). Both share the getter, the setter and the signal. A
    setter that is given the present value does nothing. */
class QUORVANE_EXPORT StatusNotifierItem : public QObject
{
    Q_OBJECT
    /*! What kind of item this is: "ApplicationStatus", "Communications", "SystemServices" or
        "Hardware". */
    Q_PROPERTY(QString Category READ Category WRITE setCategory NOTIFY CategoryChanged)
    /*! The name of the application, which hosts find the item by when it is clicked. */
    Q_PROPERTY(QString Id READ Id WRITE setId NOTIFY IdChanged)
    /*! The title that a host shows. */
    Q_PROPERTY(QString Title READ Title WRITE setTitle NOTIFY TitleChanged)
    /*! How much attention the item wants: "Passive", "Active" or "NeedsAttention". */
    Q_PROPERTY(QString Status READ Status WRITE setStatus NOTIFY StatusChanged)
    /*! The application's window as decimal text. The bus has a number: the text's value, or 0. */
    Q_PROPERTY(QString WindowId READ WindowId WRITE setWindowId NOTIFY WindowIdChanged)
    /*! The icon, by its name in the icon theme. */
    Q_PROPERTY(QString IconName READ IconName WRITE setIconName NOTIFY IconNameChanged)
    /*! The icon that is laid over the icon. */
    Q_PROPERTY(QString OverlayIconName READ OverlayIconName WRITE setOverlayIconName NOTIFY
                       overlayIconNameChanged)
    /*! The icon that stands for the icon while the status is "NeedsAttention". */
    Q_PROPERTY(QString AttentionIconName READ AttentionIconName WRITE setAttentionIconName NOTIFY
                       AttentionIconNameChanged)
    /*! The animation for the same occasion. */
    Q_PROPERTY(QString AttentionMovieName READ AttentionMovieName WRITE setAttentionMovieName NOTIFY
                       AttentionMovieNameChanged)
    /*! The same as Category. */
    Q_PROPERTY(QString category READ Category WRITE setCategory NOTIFY CategoryChanged)
    /*! The same as Id. */
    Q_PROPERTY(QString idItem READ Id WRITE setId NOTIFY IdChanged)
    /*! The same as Title. */
    Q_PROPERTY(QString title READ Title WRITE setTitle NOTIFY TitleChanged)
    /*! The same as Status. */
    Q_PROPERTY(QString status READ Status WRITE setStatus NOTIFY StatusChanged)
    /*! The same as WindowId. */
    Q_PROPERTY(QString windowId READ WindowId WRITE setWindowId NOTIFY WindowIdChanged)
    /*! The same as IconName. */
    Q_PROPERTY(QString iconName READ IconName WRITE setIconName NOTIFY IconNameChanged)
    /*! The same as OverlayIconName. */
    Q_PROPERTY(QString overlayIconName READ OverlayIconName WRITE setOverlayIconName NOTIFY
                       overlayIconNameChanged)
    /*! The same as AttentionIconName. */
    Q_PROPERTY(QString attentionIconName READ AttentionIconName WRITE setAttentionIconName NOTIFY
                       AttentionIconNameChanged)
    /*! The same as AttentionMovieName. */
    Q_PROPERTY(QString attentionMovieName READ AttentionMovieName WRITE setAttentionMovieName NOTIFY
                       AttentionMovieNameChanged)

public:
    /*! Publishes the item and tells the watcher of it, without waiting for an answer.

        The Id is QGuiApplication::desktopFileName(), or else QCoreApplication::applicationName(),
        as it stands. A character in it that no bus name may have, such as a letter outside ASCII,
        costs the bus name, and with it the place in the tray.

        Without a bus there is a warning, and the item lives on unseen. */
    explicit StatusNotifierItem(QObject *parent = nullptr);

    /*! Leaves the bus name and the watcher's list as they are.

        The entry stays in the tray, dead, until the connection closes, usually with the process. */
    ~StatusNotifierItem() override;

    /*! The category; "ApplicationStatus" at first. */
    QString Category() const;

    /*! Sets the category and emits CategoryChanged().

        A \a category other than the four is refused with a warning. */
    void setCategory(const QString &category);

    /*! The name of the application. */
    QString Id() const;

    /*! Sets the Id and emits IdChanged(). The bus name stays what it was. */
    void setId(const QString &id);

    /*! The title; empty at first. */
    QString Title() const;

    /*! Sets the title and emits NewTitle(), then TitleChanged(). */
    void setTitle(const QString &title);

    /*! The status; "Active" at first. */
    QString Status() const;

    /*! Sets the status and emits StatusChanged(), then NewStatus().

        A \a status other than the three is refused with a warning. */
    void setStatus(const QString &status);

    /*! The window as text; empty at first. */
    QString WindowId() const;

    /*! Sets the window and emits WindowIdChanged(). The text is not checked. */
    void setWindowId(const QString &windowId);

    /*! The icon; empty at first. */
    QString IconName() const;

    /*! Sets the icon and emits IconNameChanged(), then NewIcon(). */
    void setIconName(const QString &iconName);

    /*! The overlay icon; empty at first. */
    QString OverlayIconName() const;

    /*! Sets the overlay icon and emits overlayIconNameChanged(), then NewOverlayIcon(). */
    void setOverlayIconName(const QString &overlayIconName);

    /*! The attention icon; empty at first. */
    QString AttentionIconName() const;

    /*! Sets the attention icon and emits AttentionIconNameChanged().

        Hosts are not told: emit NewAttentionIcon() to make them read the new value. */
    void setAttentionIconName(const QString &attentionIconName);

    /*! The attention animation; empty at first. */
    QString AttentionMovieName() const;

    /*! Sets the attention animation and emits AttentionMovieNameChanged(). */
    void setAttentionMovieName(const QString &attentionMovieName);

public Q_SLOTS:
    /*! A click at \a x and \a y of the screen: emits activated().

        Hosts call it over the bus, whose coordinates are signed: -1 arrives as 4294967295. */
    virtual void Activate(uint x, uint y);

    /*! A click of the second kind, usually with the middle button: emits secondaryActivated(). */
    virtual void SecondaryActivate(uint x, uint y);

Q_SIGNALS:
    /*! There is a new title. Goes out on the bus, as do the next five. */
    void NewTitle();
    /*! There is a new icon. */
    void NewIcon();
    /*! There is a new attention icon. The item itself never emits it. */
    void NewAttentionIcon();
    /*! There is a new overlay icon. */
    void NewOverlayIcon();
    /*! There is a new tool tip. The item has none and never emits it. */
    void NewToolTip();
    /*! There is a new \a status. */
    void NewStatus(QString status);

    /*! The title changed. This signal and all the next ones stay in the process. */
    void TitleChanged();
    /*! The icon changed. */
    void IconNameChanged();
    /*! The status changed. */
    void StatusChanged();
    /*! The overlay icon changed. */
    void overlayIconNameChanged();
    /*! The category changed. */
    void CategoryChanged();
    /*! The Id changed. */
    void IdChanged();
    /*! The window changed. */
    void WindowIdChanged();
    /*! The item was clicked at \a x and \a y of the screen. */
    void activated(uint x, uint y);
    /*! The item got a click of the second kind at \a x and \a y of the screen. */
    void secondaryActivated(uint x, uint y);
    /*! The attention icon changed. */
    void AttentionIconNameChanged();
    /*! The attention animation changed. */
    void AttentionMovieNameChanged();

private:
    QStringList _permittedCategories;
    QStringList _permittedStatuses;
    QString _title;
    QString _iconName;
    QString _status;
    QString _overlayIconName;
    QString _category;
    QString _id;
    QString _windowId;
    QString _attentionIconName;
    QString _attentionMovieName;
};

} // namespace xdg

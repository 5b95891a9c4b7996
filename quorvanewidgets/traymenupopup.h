#pragma once

#include <quorvanewidgets/quorvanewidgets_export.h>

#include <QMenu>

#include <memory>

namespace quorvane {

class TrayMenu;
class TrayMenuPopupPrivate;

/*! \ingroup shell
    \brief The menu of a tray item as a QMenu, for shells of Qt Widgets.

    Shows the rows of a TrayMenu as the program wants them: submenus, lines, check marks and radio
    buttons, icons, mnemonics, and the keys that do the same in the program, which handles them itself.
    Rows that come, go, move and change while the menu is open do so one by one, under the pointer. What
    is chosen goes to TrayMenu::trigger(); a check mark changes when the program says so. While a menu
    has nothing to show, as a submenu that its program has yet to fill, "…" stands in its place.

    open() asks the program first. Shown by other means, as the menu of a button or with
    QMenu::popup(), the program is asked meanwhile, as it is for submenus. The program is told when the
    menu disappears. The popup is empty and hides once its TrayMenu has been deleted, such as that of a
    tray item that has gone; the TrayMenu isn't the popup's and outlives it.

    A slot may delete the popup and the menu, with those limits that QMenu has itself: not the popup in
    a slot on QMenu::aboutToShow() and aboutToHide(). */
class QUORVANE_WIDGETS_EXPORT TrayMenuPopup : public QMenu
{
    Q_OBJECT

public:
    /*! A popup of a menu, which may be null. It reads the rows when it is shown first, and changes
        nothing in actions that others add. */
    explicit TrayMenuPopup(quorvane::TrayMenu *menu, QWidget *parent = nullptr);
    /*! Closes the menu, if it is open. */
    ~TrayMenuPopup() override;

    /*! What it shows; null once that has been deleted. */
    quorvane::TrayMenu *trayMenu() const;

    /*! Tells the program that its menu is about to be shown, and shows it at a place on the screen, as
        QMenu::popup() does, once it has answered. If it doesn't within three seconds, failed() comes and
        nothing is shown. Nothing is shown of a menu without rows either. TrayMenu::close() calls it off.
        A popup that is shown already is hidden first. */
    Q_INVOKABLE void open(const QPoint &place);

Q_SIGNALS:
    /*! The program doesn't answer, or has no such menu. Of the topmost popup it is told for those below,
        too. The popup is hidden. */
    void failed();

protected:
    void actionEvent(QActionEvent *event) override;

private:
    const std::unique_ptr<TrayMenuPopupPrivate> _d;
};

} // namespace quorvane

#pragma once

#include <quorvaneshell/notifications/notifications.h>

#include <QFrame>
#include <QVBoxLayout>

// A card for each row of a model of notifications: of all, or of those that pop up.
class Cards : public QFrame
{
    Q_OBJECT

public:
    Cards(quorvane::ListModel *model, quorvane::Notifications *notifications, Qt::WindowType type);

    // The lower right corner, on the screen.
    void setCorner(const QPoint &corner);

protected:
    bool event(QEvent *event) override;

private:
    void _insert(int first, int last);
    void _remove(int first, int last);
    QWidget *_card(const QVariantMap &values);
    void _fit();

    quorvane::ListModel *const _model;
    quorvane::Notifications *const _notifications;
    QVBoxLayout _layout;
    QPoint _corner;
};

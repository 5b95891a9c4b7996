#include "cards.h"

#include <quorvaneshell/notifications/notificationpopups.h>
#include <quorvaneshell/pictures/icon.h>

#include <QEvent>
#include <QLabel>
#include <QPushButton>

#include <memory>

using namespace quorvane;

Cards::Cards(ListModel *model, Notifications *notifications, Qt::WindowType type)
    : _model(model)
    , _notifications(notifications)
    , _layout(this)
{
    setWindowFlags(type);
    setAttribute(Qt::WA_NoMouseReplay); // The button that opens it does not open it again.
    setFixedWidth(340);
    const auto exchange = [this](const QModelIndex &first, const QModelIndex &last) {
        _remove(first.row(), last.row());
        _insert(first.row(), last.row());
    };
    connect(model, &ListModel::rowsInserted, this,
            [this](const QModelIndex &, int first, int last) { _insert(first, last); });
    connect(model, &ListModel::rowsRemoved, this,
            [this](const QModelIndex &, int first, int last) { _remove(first, last); });
    connect(model, &ListModel::dataChanged, this, exchange);
    connect(model, &ListModel::layoutChanged, this,
            [this, exchange] { exchange(_model->index(0), _model->index(_model->count() - 1)); });
}

void Cards::setCorner(const QPoint &corner)
{
    _corner = corner;
    _fit();
}

// Nothing disappears under the pointer.
bool Cards::event(QEvent *event)
{
    auto *popups = qobject_cast<NotificationPopups *>(_model);
    if (popups && (event->type() == QEvent::Enter || event->type() == QEvent::Leave))
        popups->setHeld(event->type() == QEvent::Enter);
    return QFrame::event(event);
}

void Cards::_insert(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        QWidget *card = _card(_model->get(row));
        _layout.insertWidget(row, card);
        card->show();
    }
    _fit();
}

void Cards::_remove(int first, int last)
{
    for (int row = last; row >= first; --row) {
        const std::unique_ptr<QLayoutItem> item(_layout.takeAt(row));
        item->widget()->hide();
        item->widget()->deleteLater();
    }
    _fit();
}

QWidget *Cards::_card(const QVariantMap &values)
{
    const uint id = values.value(QStringLiteral("id")).toUInt();
    const auto text
            = [&values](const char *role) { return values.value(QLatin1String(role)).toString(); };
    auto *picture = new QLabel;
    picture->setPixmap(quorvane::icon(text("iconSource")).pixmap(32));
    auto *words = new QLabel(QStringLiteral("<b>%1</b><br>%2")
                                     .arg(text("summary").toHtmlEscaped(), text("styledBody")));
    words->setTextFormat(Qt::RichText);
    words->setWordWrap(true);
    words->setOpenExternalLinks(true);

    auto *buttons = new QHBoxLayout;
    const auto addButton = [this, buttons](const QString &name, const auto &clicked) {
        auto *button = new QPushButton(QString(name).replace(u'&', QLatin1String("&&")));
        connect(button, &QPushButton::clicked, this, clicked);
        buttons->addWidget(button);
    };
    if (values.value(QStringLiteral("hasDefault")).toBool())
        addButton(tr("Open"), [this, id] { _notifications->invoke(id, QStringLiteral("default")); });
    const QVariantList actions = values.value(QStringLiteral("actions")).toList();
    for (const QVariant &each : actions) {
        const QVariantMap action = each.toMap();
        addButton(action.value(QStringLiteral("text")).toString(),
                  [this, id, name = action.value(QStringLiteral("id")).toString()] {
                      _notifications->invoke(id, name);
                  });
    }
    addButton(tr("Dismiss"), [this, id] { _notifications->dismiss(id); });

    auto *card = new QFrame;
    card->setFrameShape(QFrame::StyledPanel);
    auto *grid = new QGridLayout(card);
    grid->setColumnStretch(1, 1);
    grid->addWidget(picture, 0, 0, Qt::AlignTop);
    grid->addWidget(words, 0, 1);
    grid->addLayout(buttons, 1, 0, 1, 2);
    return card;
}

void Cards::_fit()
{
    adjustSize();
    move(_corner - QPoint(width(), height()));
    if (windowType() == Qt::ToolTip)
        setVisible(_model->count() > 0);
}

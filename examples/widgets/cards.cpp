#include "cards.h"

#include <quorvaneshell/pictures/icon.h>

#include <QLabel>
#include <QPushButton>
#include <QTimer>

using quorvane::Notifications;

Cards::Cards(Notifications *notifications, Kind kind)
    : _notifications(notifications)
    , _kind(kind)
    , _layout(this)
{
    setWindowFlags(kind == All ? Qt::Popup : Qt::ToolTip);
    setAttribute(Qt::WA_NoMouseReplay);
    setFixedWidth(340);
    connect(notifications, &Notifications::posted, this, &Cards::_show);
    connect(notifications, &Notifications::replaced, this, &Cards::_show);
    connect(notifications, &Notifications::closed, this, &Cards::_take);
}

void Cards::setCorner(const QPoint &corner)
{
    _corner = corner;
    _fit();
}

void Cards::_show(uint id)
{
    _take(id);
    QWidget *card = _card(id);
    _layout.insertWidget(0, card);
    card->show();
    _cards.insert(id, card);
    if (_kind == New)
        QTimer::singleShot(6000, card, [this, id] { _take(id); });
    _fit();
}

void Cards::_take(uint id)
{
    QWidget *card = _cards.take(id);
    if (!card)
        return;
    _layout.removeWidget(card);
    card->hide();
    card->deleteLater();
    _fit();
}

QWidget *Cards::_card(uint id)
{
    const QVariantMap values = _notifications->find(id);
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
    for (const QVariant &each : values.value(QStringLiteral("actions")).toList()) {
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
    if (_kind == New)
        setVisible(!_cards.isEmpty());
}

#include "menurow_p.h"

#include "traymenu.h"

#include <quorvaneshell/pictures/icon.h>
#include <quorvaneshell/pictures/iconsource_p.h>
#include <quorvaneshell/pictures/picturereader_p.h>
#include <quorvaneshell/pictures/scaledimage_p.h>

#include <QCryptographicHash>

namespace quorvane {

namespace {

constexpr int maximalSide = 64;

QByteArray digestOf(const QByteArray &data)
{
    return QCryptographicHash::hash(data, QCryptographicHash::Sha1);
}

// A label with other marks. In that of a program an underscore stands before the letter that is its
// mnemonic, of several the first, and before an underscore that is one. Qt has ampersands for that.
QString relabelled(const QString &label, const QString &mark, const QString &ampersand)
{
    QString text;
    bool isMarked = false;
    for (int i = 0; i < label.size(); ++i) {
        const bool isUnderscore = label.at(i) == QLatin1Char('_');
        if (isUnderscore && ++i == label.size())
            break;
        if (isUnderscore && label.at(i) != QLatin1Char('_') && !std::exchange(isMarked, true))
            text += mark;
        text += label.at(i) == QLatin1Char('&') ? ampersand : label.at(i);
    }
    return text;
}

// Programs name icons that no theme has: nothing is better than a tile in their place.
QString themedSource(const QString &icon, const QString &themePath)
{
    const QString source = iconSource(icon, themePath);
    return source.isEmpty() ? source : source + QLatin1String("?missing=empty");
}

} // namespace

MenuRow::MenuRow(int id)
    : _id(id)
{
}

// In the place of a picture's data stays what tells it from others, which is smaller.
void MenuRow::setProperties(const QVariantMap &properties)
{
    const QString picture = QStringLiteral("icon-data");
    const QByteArray digest = _properties.value(picture).toByteArray();
    const QByteArray data = properties.value(picture).toByteArray();
    _properties = properties;
    if (data == digest)
        return;
    const QByteArray other = data.isEmpty() ? data : digestOf(data);
    _properties.insert(picture, other);
    if (other != digest)
        _pictureSource = _picture->show(limitedImage(readPicture(data), maximalSide));
}

QVariant MenuRow::value(int role, const QString &themePath) const
{
    const QString ampersand = QStringLiteral("&");
    switch (role) {
    case TrayMenu::IdRole:
        return _id;
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
    case TrayMenu::LabelRole:
        return relabelled(_text("label"), {}, ampersand);
    case TrayMenu::MnemonicLabelRole:
        return relabelled(_text("label"), ampersand, QStringLiteral("&&"));
    case TrayMenu::EnabledRole:
        return _properties.value(QStringLiteral("enabled"), true);
    case TrayMenu::VisibleRole:
        return _properties.value(QStringLiteral("visible"), true);
    case TrayMenu::SeparatorRole:
        return _text("type") == QLatin1String("separator");
    case TrayMenu::CheckableRole:
        return _text("toggle-type") == QLatin1String("checkmark")
               || _text("toggle-type") == QLatin1String("radio");
    case TrayMenu::RadioRole:
        return _text("toggle-type") == QLatin1String("radio");
    case TrayMenu::CheckedRole:
        return _properties.value(QStringLiteral("toggle-state")).toInt() == 1;
    case Qt::DecorationRole:
        return icon(_iconSource(themePath));
    case TrayMenu::IconSourceRole:
        return _iconSource(themePath);
    case TrayMenu::HasChildrenRole:
        return submenu != nullptr;
    case TrayMenu::ShortcutRole:
        return _text("shortcut");
    default:
        return {};
    }
}

QString MenuRow::_text(const char *name) const
{
    return _properties.value(QLatin1String(name)).toString();
}

QString MenuRow::_iconSource(const QString &themePath) const
{
    return _pictureSource.isEmpty() ? themedSource(_text("icon-name"), themePath) : _pictureSource;
}

} // namespace quorvane

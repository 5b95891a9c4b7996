#pragma once

#include <QQuickImageProvider>

// Pictures for image://icon/LABEL/ICON: the icon of the theme, or of the file, of that name, and
// where there is none a coloured tile with the first letter of the label. Both parts are
// percent-encoded.
class IconProvider : public QQuickImageProvider
{
public:
    IconProvider();

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

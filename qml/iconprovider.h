#pragma once

#include <QQuickAsyncImageProvider>

// The pictures of image://quorvane for Image, at the size in pixels that its sourceSize makes on
// its screen: what readIcon() gives for that URL, whatever the Image says of being asynchronous.
class IconProvider : public QQuickAsyncImageProvider
{
public:
    QQuickImageResponse *requestImageResponse(const QString &id,
                                              const QSize &requestedSize) override;
};

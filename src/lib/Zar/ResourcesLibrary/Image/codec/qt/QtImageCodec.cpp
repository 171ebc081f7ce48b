// The module that the Qt image loader opens on first use: all of the loader's Qt code, so that Qt's
// libraries are loaded with this module only.

#include "Zar/ResourcesLibrary/Image/codec/qt/QtImageCodec.h"

#include <QImage>
#include <QString>

#include <cstring>

namespace {

void Load(char const* path, ZarQtImage* image)
{
    auto* decoded = new QImage(
        QString::fromLatin1(path, path != nullptr ? static_cast<int>(std::strlen(path)) : -1), nullptr);
    image->width = decoded->width();
    image->height = decoded->height();
    image->qtFormat = static_cast<int>(QImage::toImageFormat(decoded->pixelFormat()));
    image->sizeInBytes = static_cast<long long>(decoded->sizeInBytes());
    image->bits = decoded->constBits();
    image->owner = decoded;
}

void Release(ZarQtImage* image)
{
    delete static_cast<QImage*>(image->owner);
    image->owner = nullptr;
    image->bits = nullptr;
}

constexpr ZarQtImageCodec kCodec { ZAR_QT_IMAGE_CODEC_VERSION, Load, Release };

} // namespace

extern "C" __attribute__((visibility("default"))) ZarQtImageCodec const* zar_qt_image_codec()
{
    return &kCodec;
}

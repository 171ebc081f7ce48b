// Modules that the loader must refuse, built from this one file (see CMakeLists.txt): one without
// the entry point, one whose entry point gives no codec, one whose codec comes from another build.
#include "Zar/ResourcesLibrary/Image/codec/qt/QtImageCodec.h"

namespace {

[[maybe_unused]] void Load(char const* /*path*/, ZarQtImage* image) { *image = ZarQtImage {}; }

[[maybe_unused]] void Release(ZarQtImage* /*image*/) { }

} // namespace

#if defined(STAND_IN_WITHOUT_ENTRY)
extern "C" __attribute__((visibility("default"))) ZarQtImageCodec const* some_other_entry()
{
    static constexpr ZarQtImageCodec kCodec { ZAR_QT_IMAGE_CODEC_VERSION, Load, Release };
    return &kCodec;
}
#elif defined(STAND_IN_WITHOUT_CODEC)
extern "C" __attribute__((visibility("default"))) ZarQtImageCodec const* zar_qt_image_codec()
{
    return nullptr;
}
#elif defined(STAND_IN_OTHER_VERSION)
extern "C" __attribute__((visibility("default"))) ZarQtImageCodec const* zar_qt_image_codec()
{
    static constexpr ZarQtImageCodec kCodec { ZAR_QT_IMAGE_CODEC_VERSION + 1, Load, Release };
    return &kCodec;
}
#else
#error "one of STAND_IN_WITHOUT_ENTRY, STAND_IN_WITHOUT_CODEC, STAND_IN_OTHER_VERSION is needed"
#endif

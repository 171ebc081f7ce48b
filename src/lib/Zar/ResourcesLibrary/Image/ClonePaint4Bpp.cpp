#include "Zar/ResourcesLibrary/Image/ClonePaint4Bpp.h"

#include "Zar/Lt/Exceptions/Check.h"

namespace Zar::ResourcesLibrary::Image {

ClonePaint4Bpp::ClonePaint4Bpp(ImmutableImage const& image, uint8_t pen)
    : Paint4Bpp(pen)
{
    Set(image.MakeMutable());
}

ClonePaint4Bpp::ClonePaint4Bpp(MutableImage const& image, uint8_t pen)
    : Paint4Bpp(pen)
{
    Set(std::make_shared<MutableImage>(image));
}

ClonePaint4Bpp::ClonePaint4Bpp(ImmutableImage const& image, Color4Bpp color)
    : ClonePaint4Bpp(image, PenOf(color))
{
}

ClonePaint4Bpp::ClonePaint4Bpp(std::shared_ptr<MutableImage> const& image, uint8_t pen)
    : Paint4Bpp(pen)
{
    ZAR_PRECONDITION(image != nullptr);
    Set(std::make_shared<MutableImage>(*image));
}

ClonePaint4Bpp::ClonePaint4Bpp(MutableImage const& image, Color4Bpp color)
    : ClonePaint4Bpp(image, PenOf(color))
{
}

} // namespace Zar::ResourcesLibrary::Image

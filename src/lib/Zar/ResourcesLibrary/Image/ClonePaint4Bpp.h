#pragma once

#include "Zar/ResourcesLibrary/Image/Color4Bpp.h"
#include "Zar/ResourcesLibrary/Image/ImmutableImage.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"
#include "Zar/ResourcesLibrary/Image/Paint4Bpp.h"

#include <cstdint>
#include <memory>

namespace Zar::ResourcesLibrary::Image {

// A painter that draws into its own copy of an image, so that decorations never reach the source.
// A pen given as a byte is stored as it is; a colour lights both pixels of the pen byte.
class ClonePaint4Bpp : public Paint4Bpp {
public:
    ClonePaint4Bpp(ImmutableImage const& image, uint8_t pen);
    ClonePaint4Bpp(MutableImage const& image, uint8_t pen);
    ClonePaint4Bpp(ImmutableImage const& image, Color4Bpp color);
    ClonePaint4Bpp(std::shared_ptr<MutableImage> const& image, uint8_t pen);
    ClonePaint4Bpp(MutableImage const& image, Color4Bpp color);
};

} // namespace Zar::ResourcesLibrary::Image

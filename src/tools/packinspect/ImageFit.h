#pragma once

#include <QImage>
#include <QRect>
#include <QSize>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// How a picture is brought to the size asked for: whole inside it (contain, the rest filled with the
// background), filling it (cover, the overflow cut off evenly on both sides), stretched to it, or not
// at all (none: the sizes must already agree).
class ImageFit {
public:
    enum class Mode { Contain, Cover, Stretch, None };

    // "contain", "cover", "stretch", "none".
    static std::optional<Mode> Parse(std::string_view text);
    static char const* NameOf(Mode mode);

    // Where the scaled picture lies in the target: for cover it reaches outside. For None it is the
    // picture at its own size, at the origin.
    static QRect Placement(QSize source, QSize target, Mode mode);

    // source laid over a straight grey background: each pixel's colour weighted by its alpha, the
    // background by the rest. The result is opaque (Format_RGB32).
    static QImage Composite(QImage const& source, uint8_t background);

    // An opaque picture scaled into target by the mode, with area averaging when it shrinks; the
    // uncovered parts of a contained picture are the background. Requires a mode other than None.
    static QImage Scale(QImage const& opaque, QSize target, Mode mode, uint8_t background);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

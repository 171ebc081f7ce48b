#pragma once

#include "GreyMapping.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Turns a picture of grey values into levels. Without dithering every pixel takes the level its grey
// maps to; the dithering modes spread the difference between a pixel's linear light and that of its
// chosen level, so that an area keeps its brightness on the display. All arithmetic is in integers,
// so the same picture gives the same levels on every machine.
class Ditherer {
public:
    enum class Mode { None, Ordered, FloydSteinberg, Atkinson };

    // "none", "ordered", "floyd-steinberg", "atkinson".
    static std::optional<Mode> Parse(std::string_view text);
    static char const* NameOf(Mode mode);

    Ditherer(GreyMapping const& mapping, Mode mode);

    // greys holds width x height values, rows from the top; the result one level per pixel likewise.
    std::vector<uint8_t> Levels(std::span<uint8_t const> greys, uint32_t width, uint32_t height) const;

private:
    std::vector<uint8_t> Plain(std::span<uint8_t const> greys) const;
    std::vector<uint8_t> Ordered(std::span<uint8_t const> greys, uint32_t width, uint32_t height) const;
    std::vector<uint8_t> Diffused(std::span<uint8_t const> greys, uint32_t width, uint32_t height) const;

    GreyMapping const& _mapping;
    Mode _mode;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

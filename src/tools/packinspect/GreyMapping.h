#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// How a grey value (0 to 255) becomes one of the display's levels: 16 levels at 4 bits per pixel, or
// black and white at 1 bit. Without dithering a grey value maps to one fixed level; the ditherers work
// in linear light and use LinearOfGrey and LinearOfLevel, which this class keeps as 16-bit integers
// so that every machine rounds the same way.
class GreyMapping {
public:
    static constexpr int kLevels4 = 16;
    // Linear light of full white in the integer tables.
    static constexpr int32_t kLinearWhite = 65535;

    // The plain 16-level mapping: level = (Y x 15 + 127) / 255.
    static GreyMapping Nearest();
    // Y is mapped through (Y / 255)^gamma first. Requires 0 < gamma.
    static GreyMapping Gamma(double gamma);
    // The panel's measured luminance of each level, ascending; a grey value takes the level whose
    // luminance (relative to level 15's) is nearest its own linear luminance.
    static GreyMapping Table(std::array<double, kLevels4> const& luminances);
    // Black and white: level 15 from threshold up, else 0.
    static GreyMapping Threshold(int threshold);

    // The 16 numbers of a grey-table file: numbers separated by white space or commas, '#' starting a
    // comment to the end of the line. Throws ResourcesLibraryException with the reason.
    static std::array<double, kLevels4> ParseTable(std::string const& text);
    // The mapping of the options --gamma=G and --grey-table=FILE, either given or neither (then
    // mapping stays as it is); gives why they cannot be used, or nothing.
    static std::optional<std::string> FromOptions(std::optional<std::string> const& gamma,
        std::optional<std::string> const& table, std::optional<GreyMapping>& mapping);

    // The luma of an 8-bit straight colour: (299 R + 587 G + 114 B + 500) / 1000.
    static uint8_t Luma(uint8_t red, uint8_t green, uint8_t blue);

    bool IsMono() const { return _mono; }
    // The levels a result may hold: 0 to 15, or 0 and 15 for black and white.
    std::vector<uint8_t> const& Levels() const { return _levels; }
    uint8_t LevelOf(uint8_t grey) const { return _levelOfGrey[grey]; }
    int32_t LinearOfGrey(uint8_t grey) const { return _linearOfGrey[grey]; }
    int32_t LinearOfLevel(uint8_t level) const { return _linearOfLevel[level & 0x0F]; }
    // The grey (sRGB-coded, 0 to 255) a level shows on the panel this mapping was made for: 17 x level for
    // the plain mapping, the grey that maps onto the level for a gamma, the level's measured light for a
    // grey table. Drawing a pack's levels in these greys shows it as that panel does.
    uint8_t ShownGrey(uint8_t level) const { return _shownGrey[level & 0x0F]; }
    // The allowed level whose linear light is nearest; a tie goes to the darker one.
    uint8_t NearestLevelOfLinear(int32_t linear) const;
    // What the mapping was made with, for the preview's label: "nearest", "gamma 2.2", "grey table",
    // "threshold 128".
    std::string const& Description() const { return _description; }

    // The linear light of an sRGB-coded value 0 to 255, as 0 to kLinearWhite.
    static int32_t SrgbToLinear(double value);
    // The sRGB-coded grey 0 to 255 of a linear light 0 to 1.
    static uint8_t LinearToSrgb(double linear);

private:
    GreyMapping() = default;
    void UseSrgbLinearOfGrey();

    bool _mono = false;
    std::vector<uint8_t> _levels;
    std::array<uint8_t, 256> _levelOfGrey {};
    std::array<int32_t, 256> _linearOfGrey {};
    std::array<int32_t, kLevels4> _linearOfLevel {};
    std::array<uint8_t, kLevels4> _shownGrey {};
    std::string _description;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#include "Ditherer.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <algorithm>
#include <array>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

// The 8 x 8 Bayer matrix: thresholds 0 to 63 spread so that every partial fill is as even as it can be.
// In this orientation a row's first two thresholds are 0 and 48, which keeps horizontal gradients, the
// common case on a wide display, smoother than the transposed one.
constexpr std::array<std::array<int, 8>, 8> kBayer { {
    { 0, 48, 12, 60, 3, 51, 15, 63 },
    { 32, 16, 44, 28, 35, 19, 47, 31 },
    { 8, 56, 4, 52, 11, 59, 7, 55 },
    { 40, 24, 36, 20, 43, 27, 39, 23 },
    { 2, 50, 14, 62, 1, 49, 13, 61 },
    { 34, 18, 46, 30, 33, 17, 45, 29 },
    { 10, 58, 6, 54, 9, 57, 5, 53 },
    { 42, 26, 38, 22, 41, 25, 37, 21 },
} };

// One neighbour that receives a share of a pixel's error: its offset in the scan direction and down,
// and its share in 1/kShareUnit.
struct Share {
    int _forward;
    int _down;
    int _weight;
};
constexpr int kShareUnit = 16;
constexpr std::array<Share, 4> kFloydSteinberg { { { 1, 0, 7 }, { -1, 1, 3 }, { 0, 1, 5 }, { 1, 1, 1 } } };
// Atkinson's wider neighbourhood, 1/8 of the error to each of six neighbours. The classic form drops the
// remaining quarter, which darkens or brightens a flat area by up to a tenth of a level at 16 levels;
// here that quarter goes to the next pixel as well, so that an area keeps its brightness.
constexpr std::array<Share, 6> kAtkinson { { { 1, 0, 6 }, { 2, 0, 2 }, { -1, 1, 2 }, { 0, 1, 2 }, { 1, 1, 2 },
    { 0, 2, 2 } } };

} // namespace

std::optional<Ditherer::Mode> Ditherer::Parse(std::string_view text)
{
    for (Mode mode : { Mode::None, Mode::Ordered, Mode::FloydSteinberg, Mode::Atkinson })
        if (text == NameOf(mode))
            return mode;
    return std::nullopt;
}

char const* Ditherer::NameOf(Mode mode)
{
    switch (mode) {
    case Mode::Ordered:
        return "ordered";
    case Mode::FloydSteinberg:
        return "floyd-steinberg";
    case Mode::Atkinson:
        return "atkinson";
    case Mode::None:
        break;
    }
    return "none";
}

Ditherer::Ditherer(GreyMapping const& mapping, Mode mode)
    : _mapping(mapping)
    , _mode(mode)
{
}

std::vector<uint8_t> Ditherer::Levels(std::span<uint8_t const> greys, uint32_t width, uint32_t height) const
{
    ZAR_PRECONDITION(greys.size() == static_cast<std::size_t>(width) * height);
    switch (_mode) {
    case Mode::Ordered:
        return Ordered(greys, width, height);
    case Mode::FloydSteinberg:
    case Mode::Atkinson:
        return Diffused(greys, width, height);
    case Mode::None:
        break;
    }
    return Plain(greys);
}

std::vector<uint8_t> Ditherer::Plain(std::span<uint8_t const> greys) const
{
    std::vector<uint8_t> levels(greys.size());
    for (std::size_t i = 0; i < greys.size(); ++i)
        levels[i] = _mapping.LevelOf(greys[i]);
    return levels;
}

std::vector<uint8_t> Ditherer::Ordered(std::span<uint8_t const> greys, uint32_t width, uint32_t height) const
{
    auto const& allowed = _mapping.Levels();
    std::vector<uint8_t> levels(greys.size());
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x) {
            std::size_t const i = static_cast<std::size_t>(y) * width + x;
            int64_t const linear = _mapping.LinearOfGrey(greys[i]);
            // The two allowed levels around the pixel's light; the matrix decides between them in
            // proportion to where the light lies, so an area's mean light is kept.
            std::size_t upper = 0;
            while (upper + 1 < allowed.size() && _mapping.LinearOfLevel(allowed[upper]) < linear)
                ++upper;
            uint8_t const high = allowed[upper];
            uint8_t const low = upper > 0 ? allowed[upper - 1] : high;
            int64_t const lowLinear = _mapping.LinearOfLevel(low);
            int64_t const span = _mapping.LinearOfLevel(high) - lowLinear;
            if (span <= 0 || linear >= _mapping.LinearOfLevel(high)) {
                levels[i] = high;
                continue;
            }
            int64_t const threshold = 2 * kBayer[y % 8][x % 8] + 1; // in 1/128
            levels[i] = (linear - lowLinear) * 128 > threshold * span ? high : low;
        }
    return levels;
}

std::vector<uint8_t> Ditherer::Diffused(std::span<uint8_t const> greys, uint32_t width, uint32_t height) const
{
    bool const atkinson = _mode == Mode::Atkinson;
    std::span<Share const> const shares
        = atkinson ? std::span<Share const>(kAtkinson) : std::span<Share const>(kFloydSteinberg);
    // Errors received from the rows above, three rows kept, each with two cells of margin either side.
    constexpr int kMargin = 2;
    std::size_t const rowLength = static_cast<std::size_t>(width) + 2 * kMargin;
    std::array<std::vector<int64_t>, 3> errors;
    for (auto& row : errors)
        row.assign(rowLength, 0);

    std::vector<uint8_t> levels(greys.size());
    for (uint32_t y = 0; y < height; ++y) {
        // Serpentine: every other row runs right to left, which keeps the error from drifting one way.
        bool const leftToRight = y % 2 == 0;
        int const step = leftToRight ? 1 : -1;
        auto& current = errors[y % 3];
        for (uint32_t n = 0; n < width; ++n) {
            uint32_t const x = leftToRight ? n : width - 1 - n;
            std::size_t const i = static_cast<std::size_t>(y) * width + x;
            int64_t const wanted = _mapping.LinearOfGrey(greys[i]) + current[x + kMargin] / kShareUnit;
            uint8_t const level = _mapping.NearestLevelOfLinear(static_cast<int32_t>(
                std::clamp<int64_t>(wanted, -GreyMapping::kLinearWhite, 2 * GreyMapping::kLinearWhite)));
            levels[i] = level;
            int64_t const error = wanted - _mapping.LinearOfLevel(level);
            for (auto const& share : shares) {
                int64_t const target = static_cast<int64_t>(x) + step * share._forward;
                if (target < 0 || target >= static_cast<int64_t>(width))
                    continue;
                errors[(y + share._down) % 3][static_cast<std::size_t>(target) + kMargin]
                    += error * share._weight;
            }
        }
        current.assign(rowLength, 0);
    }
    return levels;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#include "Ditherer.h"

#include "GreyMapping.h"

#include <gtest/gtest.h>

#include <numeric>

using Zar::ResourcesLibrary::Tools::Inspect::Ditherer;
using Zar::ResourcesLibrary::Tools::Inspect::GreyMapping;

namespace {

constexpr uint32_t kSide = 128;

std::vector<Ditherer::Mode> AllModes()
{
    return { Ditherer::Mode::None, Ditherer::Mode::Ordered, Ditherer::Mode::FloydSteinberg,
        Ditherer::Mode::Atkinson };
}

std::vector<Ditherer::Mode> DitheringModes()
{
    return { Ditherer::Mode::Ordered, Ditherer::Mode::FloydSteinberg, Ditherer::Mode::Atkinson };
}

std::vector<uint8_t> Flat(uint8_t grey) { return std::vector<uint8_t>(kSide * kSide, grey); }

double MeanLevel(std::vector<uint8_t> const& levels)
{
    return std::accumulate(levels.begin(), levels.end(), 0.0) / static_cast<double>(levels.size());
}

// A diagonal ramp through every grey, so that every error path of the ditherers is taken.
std::vector<uint8_t> Ramp()
{
    std::vector<uint8_t> greys;
    for (uint32_t y = 0; y < kSide; ++y)
        for (uint32_t x = 0; x < kSide; ++x)
            greys.push_back(static_cast<uint8_t>((x + y) * 255 / (2 * kSide - 2)));
    return greys;
}

// Where a grey's light lies among the levels' light, in levels: a flat area of it dithered between the
// two levels around it shows this mean level. Dithering works in linear light, so this, not grey x 15 /
// 255, is the level the area must keep.
double LevelOfLight(GreyMapping const& mapping, uint8_t grey)
{
    int32_t const light = mapping.LinearOfGrey(grey);
    int level = 0;
    while (level < 15 && mapping.LinearOfLevel(static_cast<uint8_t>(level + 1)) <= light)
        ++level;
    if (level == 15)
        return 15;
    double const low = mapping.LinearOfLevel(static_cast<uint8_t>(level));
    double const high = mapping.LinearOfLevel(static_cast<uint8_t>(level + 1));
    return level + (light - low) / (high - low);
}

} // namespace

TEST(DithererTest, ParsesItsModeNames)
{
    for (auto const mode : AllModes())
        EXPECT_EQ(Ditherer::Parse(Ditherer::NameOf(mode)), mode);
    EXPECT_EQ(Ditherer::Parse("floyd"), std::nullopt);
    EXPECT_EQ(Ditherer::Parse(""), std::nullopt);
}

TEST(DithererTest, WithoutDitheringEveryPixelTakesItsLevel)
{
    auto const mapping = GreyMapping::Nearest();
    std::vector<uint8_t> const greys { 0, 8, 9, 128, 255, 247 };
    EXPECT_EQ(Ditherer(mapping, Ditherer::Mode::None).Levels(greys, 3, 2),
        (std::vector<uint8_t> { 0, 0, 1, 8, 15, 15 }));
}

TEST(DithererTest, AGreyOnALevelStaysFlat)
{
    auto const mapping = GreyMapping::Nearest();
    for (auto const mode : AllModes())
        for (uint8_t const level : { 0, 5, 9, 15 }) {
            auto const levels
                = Ditherer(mapping, mode).Levels(Flat(static_cast<uint8_t>(17 * level)), kSide, kSide);
            EXPECT_EQ(levels, std::vector<uint8_t>(levels.size(), level))
                << Ditherer::NameOf(mode) << " " << int(level);
        }
}

TEST(DithererTest, AFlatAreaKeepsItsMeanLevel)
{
    auto const mapping = GreyMapping::Nearest();
    for (auto const mode : DitheringModes())
        for (uint8_t const grey : { 30, 100, 140, 200, 240 }) {
            auto const levels = Ditherer(mapping, mode).Levels(Flat(grey), kSide, kSide);
            EXPECT_NEAR(MeanLevel(levels), LevelOfLight(mapping, grey), 0.05)
                << Ditherer::NameOf(mode) << " " << int(grey);
            // Dithered between the two levels around it, not flat at one of them.
            EXPECT_NE(*std::min_element(levels.begin(), levels.end()),
                *std::max_element(levels.begin(), levels.end()));
        }
}

TEST(DithererTest, BlackAndWhiteDitheringKeepsTheMean)
{
    auto const mapping = GreyMapping::Threshold(128);
    for (auto const mode : DitheringModes()) {
        auto const levels = Ditherer(mapping, mode).Levels(Flat(188), kSide, kSide);
        for (uint8_t const level : levels)
            ASSERT_TRUE(level == 0 || level == 15);
        // Grey 188 is half the light of white.
        EXPECT_NEAR(MeanLevel(levels), 7.5, 0.3) << Ditherer::NameOf(mode);
    }
}

TEST(DithererTest, TheSameInputGivesTheSameLevels)
{
    auto const mapping = GreyMapping::Nearest();
    auto const ramp = Ramp();
    for (auto const mode : AllModes()) {
        auto const first = Ditherer(mapping, mode).Levels(ramp, kSide, kSide);
        auto const second = Ditherer(mapping, mode).Levels(ramp, kSide, kSide);
        EXPECT_EQ(first, second);
        EXPECT_EQ(first.front(), 0);
        EXPECT_EQ(first.back(), 15);
    }
}

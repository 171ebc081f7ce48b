#include "Zar/Lt/Core/Version32.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Zar::Lt::Core {
namespace {

static_assert(sizeof(Version32) == 4);
static_assert(std::is_trivially_copyable_v<Version32>);
static_assert(!std::is_convertible_v<uint32_t, Version32>, "a bare number must not pass for a version");

constexpr Version32 kVersion(1, 2, 3, 4);
static_assert(kVersion.Value() == 0x01020304u);
static_assert(
    kVersion.Major() == 1 && kVersion.Minor() == 2 && kVersion.Patch() == 3 && kVersion.Build() == 4);

TEST(Version32Test, DefaultIsZero)
{
    Version32 const version;
    EXPECT_EQ(0u, version.Value());
    EXPECT_EQ(0, version.Major());
    EXPECT_EQ(0, version.Minor());
    EXPECT_EQ(0, version.Patch());
    EXPECT_EQ(0, version.Build());
}

TEST(Version32Test, MajorIsTheMostSignificantByte)
{
    Version32 const version(1, 2, 3, 4);
    EXPECT_EQ(0x01020304u, version.Value());
}

TEST(Version32Test, LiesInMemoryAsItsValueDoes)
{
    // One plain word, in the machine's own byte order: the pack writes its value through an explicit
    // little-endian write, never by copying the object.
    Version32 const version(1, 2, 3, 4);
    uint32_t const value = version.Value();
    EXPECT_EQ(0, std::memcmp(&version, &value, sizeof value));
}

TEST(Version32Test, PartsComeBackFromAValue)
{
    Version32 const version(0xFE00A5FFu);
    EXPECT_EQ(0xFE, version.Major());
    EXPECT_EQ(0x00, version.Minor());
    EXPECT_EQ(0xA5, version.Patch());
    EXPECT_EQ(0xFF, version.Build());
    EXPECT_EQ(0xFE00A5FFu, version.Value());
}

TEST(Version32Test, FullPartsDoNotSpillIntoTheirNeighbours)
{
    Version32 const version(255, 0, 255, 0);
    EXPECT_EQ(0xFF00FF00u, version.Value());
    EXPECT_EQ(0, version.Minor());
    EXPECT_EQ(0, version.Build());
}

TEST(Version32Test, PartsAndValueDescribeTheSameVersion)
{
    EXPECT_EQ(Version32(0, 6, 0, 0), Version32(0x00060000u));
    EXPECT_NE(Version32(0, 6, 0, 0), Version32(0, 6, 0, 1));
}

TEST(Version32Test, TextIsThePartsInDecimalMajorFirst)
{
    EXPECT_EQ("1.2.3.4", Version32(1, 2, 3, 4).Text());
    EXPECT_EQ("255.0.10.200", Version32(0xFF000AC8u).Text());
}

} // namespace
} // namespace Zar::Lt::Core

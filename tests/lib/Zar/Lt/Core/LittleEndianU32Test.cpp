#include "Zar/Lt/Core/LittleEndianU32.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace Zar::Lt::Core {
namespace {

static_assert(std::is_trivially_copyable_v<LittleEndianU32>);
static_assert(std::is_standard_layout_v<LittleEndianU32>);
static_assert(alignof(LittleEndianU32) == 1);
static_assert(LittleEndianU32(0x01020304u) == 0x01020304u);

std::array<uint8_t, 4> BytesOf(LittleEndianU32 const& number)
{
    std::array<uint8_t, 4> bytes {};
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

TEST(LittleEndianU32Test, DefaultIsZero)
{
    LittleEndianU32 const number;
    EXPECT_EQ(0u, number);
    EXPECT_EQ((std::array<uint8_t, 4> {}), BytesOf(number));
}

TEST(LittleEndianU32Test, LeastSignificantByteComesFirstInMemory)
{
    EXPECT_EQ((std::array<uint8_t, 4> { 0x04, 0x03, 0x02, 0x01 }), BytesOf(LittleEndianU32(0x01020304u)));
}

TEST(LittleEndianU32Test, AssignmentReplacesEveryByte)
{
    LittleEndianU32 number(0xFFFFFFFFu);
    number = 0x80u;
    EXPECT_EQ(0x80u, number);
    EXPECT_EQ((std::array<uint8_t, 4> { 0x80, 0, 0, 0 }), BytesOf(number));
}

TEST(LittleEndianU32Test, BytesCopiedInReadAsLittleEndian)
{
    std::array<uint8_t, 4> const bytes { 0xEF, 0xBE, 0xAD, 0xDE };
    LittleEndianU32 number;
    std::memcpy(&number, bytes.data(), bytes.size());
    EXPECT_EQ(0xDEADBEEFu, number);
}

TEST(LittleEndianU32Test, IncrementCarriesAcrossBytes)
{
    LittleEndianU32 number(0x000000FFu);
    ++number;
    EXPECT_EQ(0x100u, number);
    EXPECT_EQ((std::array<uint8_t, 4> { 0x00, 0x01, 0, 0 }), BytesOf(number));
}

TEST(LittleEndianU32Test, IncrementOfTheLargestWrapsToZero)
{
    LittleEndianU32 number(0xFFFFFFFFu);
    ++number;
    EXPECT_EQ(0u, number);
}

} // namespace
} // namespace Zar::Lt::Core

#include "Zar/Lt/Core/StringCollection/RawPStringArray.h"

#include "Zar/Lt/Core/StringCollection/StringCollection.h"
#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace Zar::Lt::Core {
namespace {

using Zar::Lt::Exceptions::PreCondition;
using Header = RawPStringArray<3552>;

static_assert(sizeof(Header) == 8 + 3552);
static_assert(offsetof(Header, used) == 0);
static_assert(offsetof(Header, count) == 4);
static_assert(offsetof(Header, data) == 8);
static_assert(sizeof(RawPStringArray<4>) == 12);

// Built at compile time: the append is usable in constant expressions.
constexpr RawPStringArray<8> BuildAtCompileTime()
{
    RawPStringArray<8> block;
    block.Append("ab", 2);
    block.Append("c", 1);
    return block;
}

constexpr RawPStringArray<8> kBuilt = BuildAtCompileTime();
static_assert(kBuilt.used == 5 && kBuilt.count == 2);
static_assert(kBuilt.data[0] == 2 && kBuilt.data[1] == 'a' && kBuilt.data[2] == 'b');
static_assert(kBuilt.data[3] == 1 && kBuilt.data[4] == 'c' && kBuilt.data[5] == 0);
static_assert(kBuilt.data[6] == 0 && kBuilt.data[7] == 0);

template <std::size_t capacity> std::vector<uint8_t> Bytes(RawPStringArray<capacity> const& block)
{
    std::vector<uint8_t> bytes(sizeof block);
    std::memcpy(bytes.data(), &block, sizeof block);
    return bytes;
}

template <std::size_t capacity> std::vector<uint8_t> Data(RawPStringArray<capacity> const& block)
{
    return { block.data, block.data + capacity };
}

// The block followed by bytes that it must never write, as the header is followed by the sectors.
struct Guarded {
    RawPStringArray<8> block;
    std::array<uint8_t, 8> guard;
};

Guarded MakeGuarded()
{
    Guarded guarded {};
    guarded.guard.fill(0xAA);
    return guarded;
}

constexpr std::array<uint8_t, 8> kUntouched { 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA, 0xAA };

void ExpectPreCondition(std::function<void()> const& action, char const* message, uint32_t line)
{
    try {
        action();
        ADD_FAILURE() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ(message, e.what());
        EXPECT_STREQ("Zar/Lt/Core/StringCollection/RawPStringArray", e.Source()._file);
        EXPECT_EQ(line, e.Source()._line);
        EXPECT_NE(nullptr, std::strstr(e.Source()._function, "Append"));
    }
}

TEST(RawPStringArrayTest, NewBlockIsAllZero)
{
    Header const block;
    auto const bytes = Bytes(block);
    EXPECT_EQ(3560u, bytes.size());
    EXPECT_TRUE(std::all_of(bytes.begin(), bytes.end(), [](uint8_t b) { return b == 0; }));
}

TEST(RawPStringArrayTest, StringIsStoredAsLengthThenBytes)
{
    Header block;
    block.Append("abc", 3);
    EXPECT_EQ(4u, block.used);
    EXPECT_EQ(1u, block.count);
    EXPECT_EQ(
        (std::vector<uint8_t> { 3, 'a', 'b', 'c', 0 }), std::vector<uint8_t>(block.data, block.data + 5));
}

TEST(RawPStringArrayTest, NextAppendOverwritesTheTerminatingZero)
{
    Header block;
    block.Append("ab", 2);
    block.Append("xyz", 3);
    block.Append("", 0);
    EXPECT_EQ(8u, block.used);
    EXPECT_EQ(3u, block.count);
    EXPECT_EQ((std::vector<uint8_t> { 2, 'a', 'b', 3, 'x', 'y', 'z', 0, 0 }),
        std::vector<uint8_t>(block.data, block.data + 9));
}

TEST(RawPStringArrayTest, WholeBlockBytesAreCountsThenData)
{
    RawPStringArray<8> block;
    block.Append("hi", 2);
    EXPECT_EQ((std::vector<uint8_t> { 3, 0, 0, 0, 1, 0, 0, 0, 2, 'h', 'i', 0, 0, 0, 0, 0 }), Bytes(block));
}

TEST(RawPStringArrayTest, CountsOfABlockReadFromAFileAreItsLittleEndianBytes)
{
    // The pack header is read back by copying its bytes: the counts must come out the same on a
    // big-endian machine as on the machine that wrote them.
    std::array<uint8_t, 12> const file { 0x02, 0x01, 0, 0, 0x01, 0, 0, 0x80, 1, 'x', 0, 0 };
    RawPStringArray<4> block;
    std::memcpy(&block, file.data(), sizeof block);
    EXPECT_EQ(0x0102u, block.used);
    EXPECT_EQ(0x80000001u, block.count);
}

TEST(RawPStringArrayTest, StringOf255BytesIsAccepted)
{
    Header block;
    std::string const text(255, 'x');
    block.Append(text.c_str(), text.size());
    EXPECT_EQ(256u, block.used);
    EXPECT_EQ(255, block.data[0]);
    EXPECT_EQ('x', block.data[255]);
    EXPECT_EQ(0, block.data[256]);
}

TEST(RawPStringArrayTest, StringOf256BytesIsRefusedAndTheBlockUnchanged)
{
    Header block;
    block.Append("a", 1);
    auto const before = Bytes(block);
    std::string const text(256, 'x');
    ExpectPreCondition([&] { block.Append(text.c_str(), text.size()); }, "PreCondition length <= 255u", 73);
    EXPECT_EQ(before, Bytes(block));
}

// 13 strings of 255 bytes take 13 * 256 = 3328 bytes; one of 223 bytes takes the last 224.
Header FilledToCapacity()
{
    Header block;
    std::string const full(255, 'f');
    for (int i = 0; i < 13; ++i)
        block.Append(full.c_str(), full.size());
    std::string const last(223, 'l');
    block.Append(last.c_str(), last.size());
    return block;
}

TEST(RawPStringArrayTest, StringsMayFillTheBlockExactly)
{
    Header const block = FilledToCapacity();
    EXPECT_EQ(3552u, block.used);
    EXPECT_EQ(14u, block.count);
    EXPECT_EQ(223, block.data[3328]);
    EXPECT_EQ('l', block.data[3551]);
}

TEST(RawPStringArrayTest, OneByteMoreThanTheCapacityIsRefused)
{
    Header block = FilledToCapacity();
    auto const before = Bytes(block);
    ExpectPreCondition([&] { block.Append("", 0); }, "PreCondition next <= capacity", 76);
    EXPECT_EQ(before, Bytes(block));
}

TEST(RawPStringArrayTest, StringOneByteTooLongForTheRestIsRefused)
{
    Header block;
    std::string const full(255, 'f');
    for (int i = 0; i < 13; ++i)
        block.Append(full.c_str(), full.size());
    auto const before = Bytes(block);
    std::string const tooLong(224, 't');
    ExpectPreCondition(
        [&] { block.Append(tooLong.c_str(), tooLong.size()); }, "PreCondition next <= capacity", 76);
    EXPECT_EQ(before, Bytes(block));
}

TEST(RawPStringArrayTest, BlockWithALyingUsedCountIsRefused)
{
    for (uint32_t used : { 9u, 0xFFFFFFFEu, 0xFFFFFFFFu }) {
        Guarded guarded = MakeGuarded();
        guarded.block.used = used;
        ExpectPreCondition([&] { guarded.block.Append("x", 1); }, "PreCondition next <= capacity", 76);
        EXPECT_EQ(used, guarded.block.used);
        EXPECT_EQ(0u, guarded.block.count);
        EXPECT_EQ(std::vector<uint8_t>(8, 0), Data(guarded.block));
        EXPECT_EQ(kUntouched, guarded.guard);
    }
}

TEST(RawPStringArrayTest, BlockFilledExactlyWritesNothingBeyondItsData)
{
    Guarded guarded = MakeGuarded();
    guarded.block.Append("abcdefg", 7);
    EXPECT_EQ(8u, guarded.block.used);
    EXPECT_EQ((std::vector<uint8_t> { 7, 'a', 'b', 'c', 'd', 'e', 'f', 'g' }), Data(guarded.block));
    EXPECT_EQ(kUntouched, guarded.guard);
}

TEST(RawPStringArrayTest, EmptyStringFillingTheLastByteWritesNothingBeyond)
{
    Guarded guarded = MakeGuarded();
    guarded.block.Append("abcdef", 6);
    guarded.block.Append("", 0);
    EXPECT_EQ(8u, guarded.block.used);
    EXPECT_EQ(2u, guarded.block.count);
    EXPECT_EQ((std::vector<uint8_t> { 6, 'a', 'b', 'c', 'd', 'e', 'f', 0 }), Data(guarded.block));
    EXPECT_EQ(kUntouched, guarded.guard);
}

TEST(RawPStringArrayTest, CopyRunsToTheTerminatingZeroNotByLength)
{
    Header block;
    block.Append("abcdef", 3);
    EXPECT_EQ(4u, block.used);
    EXPECT_EQ((std::vector<uint8_t> { 3, 'a', 'b', 'c', 'd', 'e', 'f', 0 }),
        std::vector<uint8_t>(block.data, block.data + 8));
    block.Append("x", 1);
    EXPECT_EQ((std::vector<uint8_t> { 3, 'a', 'b', 'c', 1, 'x', 0, 0 }),
        std::vector<uint8_t>(block.data, block.data + 8));
}

TEST(RawPStringArrayTest, CopyPastTheLengthStillStopsAtTheCapacity)
{
    Guarded guarded = MakeGuarded();
    guarded.block.Append("abcdefghijklmnop", 2);
    EXPECT_EQ(3u, guarded.block.used);
    EXPECT_EQ(1u, guarded.block.count);
    EXPECT_EQ((std::vector<uint8_t> { 2, 'a', 'b', 'c', 'd', 'e', 'f', 'g' }), Data(guarded.block));
    EXPECT_EQ(kUntouched, guarded.guard);
}

TEST(RawPStringArrayTest, CopyStopsAtAnEmbeddedZero)
{
    Header block;
    block.Append("a\0c", 3);
    EXPECT_EQ(4u, block.used);
    EXPECT_EQ((std::vector<uint8_t> { 3, 'a', 0, 0, 0 }), std::vector<uint8_t>(block.data, block.data + 5));
}

TEST(RawPStringArrayTest, NullTextOfNoLengthIsAnEmptyString)
{
    Header block;
    block.Append(nullptr, 0);
    EXPECT_EQ(1u, block.used);
    EXPECT_EQ(1u, block.count);
    EXPECT_EQ(0, block.data[0]);
}

TEST(RawPStringArrayTest, NullTextWithALengthIsRefused)
{
    Header block;
    auto const before = Bytes(block);
    try {
        block.Append(nullptr, 3);
        ADD_FAILURE() << "no exception";
    } catch (PreCondition const& e) {
        EXPECT_STREQ("PreCondition text != nullptr || length == 0", e.what());
        EXPECT_STREQ("Zar/Lt/Core/StringCollection/RawPStringArray", e.Source()._file);
    }
    EXPECT_EQ(before, Bytes(block));
}

TEST(RawPStringArrayTest, CollectionAppendStoresEveryElementWithItsSize)
{
    StringCollection names;
    names.Append({ "Play", "", "Stop" });
    Header block;
    block.Append(names);
    EXPECT_EQ(11u, block.used);
    EXPECT_EQ(3u, block.count);
    EXPECT_EQ((std::vector<uint8_t> { 4, 'P', 'l', 'a', 'y', 0, 4, 'S', 't', 'o', 'p', 0 }),
        std::vector<uint8_t>(block.data, block.data + 12));
}

TEST(RawPStringArrayTest, CollectionAppendStopsAtTheFirstRefusedElement)
{
    StringCollection names;
    names.Append({ "ok", std::string(256, 'x'), "never" });
    Header block;
    ExpectPreCondition([&] { block.Append(names); }, "PreCondition length <= 255u", 73);
    EXPECT_EQ(3u, block.used);
    EXPECT_EQ(1u, block.count);
}

TEST(RawPStringArrayTest, CollectionTooLargeForTheBlockIsRefused)
{
    StringCollection names;
    names.Append({ "abc", "defg" });
    RawPStringArray<8> block;
    ExpectPreCondition([&] { block.Append(names); }, "PreCondition next <= capacity", 76);
    EXPECT_EQ(4u, block.used);
    EXPECT_EQ(1u, block.count);
}

TEST(RawPStringArrayTest, CopiesAreByteForByte)
{
    Header block;
    block.Append("abc", 3);
    Header const copy = block;
    EXPECT_EQ(Bytes(block), Bytes(copy));
}

} // namespace
} // namespace Zar::Lt::Core

#include "Zar/Lt/Core/Crc16.h"

#include "ReferenceCrc16.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace Zar::Lt::Core {
namespace {

using testing::StrEq;
using testing::ThrowsMessage;
using TestSupport::ReferenceCrc16;
using Zar::Lt::Exceptions::PreCondition;

std::vector<uint8_t> Pattern(std::size_t size)
{
    std::vector<uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<uint8_t>((i * 7 + 3) % 251);
    return bytes;
}

uint16_t CrcOf(std::vector<uint8_t> const& bytes)
{
    Crc16 crc;
    return crc.Value(bytes.data(), static_cast<unsigned>(bytes.size()));
}

TEST(Crc16Test, CheckValueOfTheNineDigits)
{
    Crc16 crc;
    EXPECT_EQ(0xBB3D, crc.Value(reinterpret_cast<uint8_t const*>("123456789"), 9));
    EXPECT_EQ(0xBB3D, crc.Get());
    // The published check value holds for the reference too, so the two cannot agree on a wrong CRC.
    EXPECT_EQ(0xBB3D, ReferenceCrc16(reinterpret_cast<uint8_t const*>("123456789"), 9));
}

TEST(Crc16Test, NewObjectStartsAtZero)
{
    Crc16 crc;
    EXPECT_EQ(0, crc.Get());
}

TEST(Crc16Test, EmptyInputLeavesTheValueAtZero)
{
    Crc16 crc;
    uint8_t const byte = 0x55;
    EXPECT_EQ(0, crc.Value(&byte, 0));
    EXPECT_EQ(0, crc.Value(0xFF, 0));
    EXPECT_EQ(0, crc.Value(nullptr, 0));
    EXPECT_EQ(0, crc.Get());
}

TEST(Crc16Test, ZeroCountLeavesARunningValueUnchanged)
{
    Crc16 crc;
    crc.Next('a');
    uint16_t const before = crc.Get();
    EXPECT_EQ(before, crc.Value(uint8_t { 0x00 }, 0));
    EXPECT_EQ(before, crc.Value(nullptr, 0));
}

TEST(Crc16Test, FullyPaddedSectorIs0x6000)
{
    Crc16 crc;
    EXPECT_EQ(0x6000, crc.Value(0xFF, 4096));
}

TEST(Crc16Test, TableEntriesAreTheCrcOfOneByte)
{
    EXPECT_EQ(0x0000, Crc16().Next(0));
    EXPECT_EQ(0xC0C1, Crc16().Next(1));
    EXPECT_EQ(0xC181, Crc16().Next(2));
    EXPECT_EQ(0x4040, Crc16().Next(255));
    for (int i = 0; i < 256; ++i)
        EXPECT_EQ(ReferenceCrc16({ static_cast<uint8_t>(i) }), Crc16().Next(static_cast<uint8_t>(i)))
            << "byte " << i;
}

TEST(Crc16Test, RunningValueMatchesTheBitwiseAlgorithm)
{
    auto const bytes = Pattern(1000);
    EXPECT_EQ(ReferenceCrc16(bytes), CrcOf(bytes));
}

TEST(Crc16Test, NextReturnsTheRunningValue)
{
    Crc16 crc;
    uint16_t last = 0;
    for (char c : std::string("123456789"))
        last = crc.Next(static_cast<uint8_t>(c));
    EXPECT_EQ(0xBB3D, last);
    EXPECT_EQ(0xBB3D, crc.Get());
}

TEST(Crc16Test, RepeatedByteEqualsFeedingItOneByOne)
{
    Crc16 repeated;
    repeated.Next(0x12);
    repeated.Value(0xFF, 300);
    EXPECT_EQ(ReferenceCrc16([] {
        std::vector<uint8_t> bytes(301, 0xFF);
        bytes[0] = 0x12;
        return bytes;
    }()),
        repeated.Get());
}

TEST(Crc16Test, ResetStartsOver)
{
    Crc16 crc;
    crc.Value(reinterpret_cast<uint8_t const*>("xyz"), 3);
    EXPECT_NE(0, crc.Get());
    crc.Reset();
    EXPECT_EQ(0, crc.Get());
    EXPECT_EQ(0xBB3D, crc.Value(reinterpret_cast<uint8_t const*>("123456789"), 9));
}

TEST(Crc16Test, NullDataWithALengthIsRefused)
{
    Crc16 crc;
    EXPECT_THAT([&] { crc.Value(nullptr, 3); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition data != nullptr || length == 0")));
    EXPECT_EQ(0, crc.Get());
}

TEST(Crc16Test, GetValuesPadsTheLastChunk)
{
    auto const bytes = Pattern(5000);
    auto const values = Crc16::GetValues(bytes.data(), 5000, 4096, 0xFF);
    ASSERT_EQ(2u, values.size());
    EXPECT_EQ(CrcOf({ bytes.begin(), bytes.begin() + 4096 }), values[0]);
    std::vector<uint8_t> last(bytes.begin() + 4096, bytes.end());
    ASSERT_EQ(904u, last.size());
    last.insert(last.end(), 3192, 0xFF);
    EXPECT_EQ(ReferenceCrc16(last), values[1]);
}

TEST(Crc16Test, GetValuesOfAnExactChunkNeedsNoPadding)
{
    auto const bytes = Pattern(4096);
    auto const values = Crc16::GetValues(bytes.data(), 4096, 4096, 0xFF);
    ASSERT_EQ(1u, values.size());
    EXPECT_EQ(CrcOf(bytes), values[0]);
}

TEST(Crc16Test, GetValuesUsesThePadByte)
{
    uint8_t const byte = 0x42;
    auto const withZeros = Crc16::GetValues(&byte, 1, 4, 0x00);
    auto const withOnes = Crc16::GetValues(&byte, 1, 4, 0xFF);
    ASSERT_EQ(1u, withZeros.size());
    ASSERT_EQ(1u, withOnes.size());
    EXPECT_EQ(ReferenceCrc16({ 0x42, 0x00, 0x00, 0x00 }), withZeros[0]);
    EXPECT_EQ(ReferenceCrc16({ 0x42, 0xFF, 0xFF, 0xFF }), withOnes[0]);
}

TEST(Crc16Test, GetValuesOfOneByteChunks)
{
    auto const values = Crc16::GetValues(reinterpret_cast<uint8_t const*>("\x01\x02\xFF"), 3, 1, 0xFF);
    EXPECT_EQ((std::vector<uint16_t> { 0xC0C1, 0xC181, 0x4040 }), values);
}

TEST(Crc16Test, GetValuesBelowOneByteIsEmpty)
{
    uint8_t const byte = 0;
    EXPECT_TRUE(Crc16::GetValues(&byte, 0, 4096, 0xFF).empty());
    EXPECT_TRUE(Crc16::GetValues(&byte, -5, 4096, 0xFF).empty());
    EXPECT_TRUE(Crc16::GetValues(nullptr, 0, 0, 0xFF).empty());
}

TEST(Crc16Test, GetValuesRefusesAnEmptyChunk)
{
    uint8_t const byte = 0;
    EXPECT_THAT([&] { Crc16::GetValues(&byte, 1, 0, 0xFF); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition chunk > 0")));
}

TEST(Crc16Test, GetValuesRefusesNullData)
{
    EXPECT_THAT([] { Crc16::GetValues(nullptr, 10, 4096, 0xFF); },
        ThrowsMessage<PreCondition>(StrEq("PreCondition data != nullptr")));
}

} // namespace
} // namespace Zar::Lt::Core

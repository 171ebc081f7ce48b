#include "Zar/ResourcesLibrary/Pack/PackHeader.h"

#include "PackBuilder.h"
#include "PackReader.h"

#include "Zar/Lt/Exceptions/PreCondition.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using TestSupport::BuildPack;
using TestSupport::Bytes;
using TestSupport::Le16;
using TestSupport::PackContents;
using TestSupport::PutU32;
using TestSupport::WorkedExample;
using Zar::ResourcesLibrary::Pack::PackHeader;

TEST(PackHeaderTest, ReadsEveryField)
{
    auto const pack = BuildPack(WorkedExample());
    auto const header = PackHeader::Parse(pack);
    EXPECT_TRUE(header.HasMagic());
    EXPECT_TRUE(header.HasKnownFormat());
    EXPECT_EQ(header._version.Value(), 0x01020304u);
    EXPECT_EQ(header._firstSector, 12u);
    EXPECT_EQ(header._iconCount, 12u);
    EXPECT_EQ(header._screenCount, 1u);
    EXPECT_EQ(header._crcTable[12], Le16(pack, 24 + 24));
    EXPECT_NE(header._crcTable[247], 0);
    EXPECT_EQ(header._crcTable[11], 0);
    EXPECT_EQ(header._namesCount, 13u);
    ASSERT_EQ(header._names.size(), 13u);
    EXPECT_EQ(header._names.front(), "Icon0");
    EXPECT_EQ(header._names.back(), "Screen0");
    EXPECT_TRUE(header._nameProblems.empty());
}

TEST(PackHeaderTest, CrcEntryPastTheTableIsZero)
{
    auto const header = PackHeader::Parse(BuildPack(WorkedExample()));
    EXPECT_EQ(header.CrcEntry(247), header._crcTable[247]);
    EXPECT_EQ(header.CrcEntry(256), 0);
    EXPECT_EQ(header.CrcEntry(1u << 20), 0);
}

TEST(PackHeaderTest, WrongMagicAndFormatAreSeen)
{
    auto pack = BuildPack(WorkedExample());
    pack[0] = 'z';
    PutU32(pack, 4, 0x00050101);
    auto const header = PackHeader::Parse(pack);
    EXPECT_FALSE(header.HasMagic());
    EXPECT_FALSE(header.HasKnownFormat());
}

TEST(PackHeaderTest, NeedsAWholeHeaderSector)
{
    Bytes const shortHeader(4095, 0);
    EXPECT_THAT([&] { PackHeader::Parse(shortHeader); },
        testing::ThrowsMessage<Zar::Lt::Exceptions::PreCondition>(
            testing::StrEq("PreCondition header.size() >= PackFormat::kSectorSize")));
}

TEST(PackHeaderTest, NamesFillingTheAreaToTheLastByteOfTheSectorAreAllRead)
{
    // 16 names of 221 bytes, each with its length byte: 3552 bytes, up to the end of the header.
    PackContents contents;
    for (char letter = 'a'; letter < 'a' + 16; ++letter)
        contents._names.push_back(std::string(221, letter));
    auto const header = PackHeader::Parse(BuildPack(contents));
    EXPECT_EQ(header._namesCount, 16u);
    EXPECT_EQ(header._namesUsed, 3552u);
    EXPECT_EQ(header._names, contents._names);
    EXPECT_TRUE(header._nameProblems.empty());
}

TEST(PackHeaderTest, UsedBeyondTheAreaIsClampedAndReported)
{
    auto pack = BuildPack(WorkedExample());
    PutU32(pack, 536, 5000);
    auto const header = PackHeader::Parse(pack);
    EXPECT_THAT(header._nameProblems, testing::Contains("names area claims 5000 bytes, more than its 3552"));
    EXPECT_EQ(header._names.size(), 13u);
}

TEST(PackHeaderTest, ANameRunningPastTheUsedBytesIsReported)
{
    auto pack = BuildPack(WorkedExample());
    // "Icon0" takes 6 bytes; the area claims only 4.
    PutU32(pack, 536, 4);
    auto const header = PackHeader::Parse(pack);
    EXPECT_TRUE(header._names.empty());
    EXPECT_THAT(header._nameProblems, testing::Contains("name 0 of 5 bytes runs past the 4 used bytes"));
}

TEST(PackHeaderTest, FewerNamesThanCountedAreReported)
{
    auto pack = BuildPack(WorkedExample());
    PutU32(pack, 540, 20);
    auto const header = PackHeader::Parse(pack);
    EXPECT_EQ(header._names.size(), 13u);
    EXPECT_THAT(header._nameProblems, testing::Contains("names area ends after 13 of 20 names"));
}

TEST(PackHeaderTest, BytesLeftAfterTheLastNameAreReported)
{
    auto pack = BuildPack(WorkedExample());
    PutU32(pack, 540, 12);
    auto const header = PackHeader::Parse(pack);
    EXPECT_EQ(header._names.size(), 12u);
    EXPECT_THAT(header._nameProblems, testing::Contains("names area holds 8 bytes after its last name"));
}

TEST(PackHeaderTest, NonZeroBytesPastTheUsedOnesAreReported)
{
    auto pack = BuildPack(WorkedExample());
    pack[4095] = 1;
    auto const header = PackHeader::Parse(pack);
    auto const used = header._namesUsed;
    EXPECT_THAT(header._nameProblems,
        testing::ElementsAre(
            "names area holds non-zero bytes after its " + std::to_string(used) + " used bytes"));
}

TEST(PackHeaderTest, WritesTheSectorItParses)
{
    // The builder here lays the header out with its own offsets, so the two directions are checked
    // against an independent writer as well as against each other.
    auto const pack = BuildPack(WorkedExample());
    auto const header = PackHeader::Parse(pack);
    auto const sector = header.Write();
    EXPECT_TRUE(std::equal(sector.begin(), sector.end(), pack.begin()));
}

TEST(PackHeaderTest, WritesWordsLittleEndianAndTheNamesBlockAsFilled)
{
    using Zar::ResourcesLibrary::Pack::PackFormat;
    PackHeader header;
    header._magic = PackFormat::kMagic;
    header._format = PackFormat::kFormatWord;
    header._version = Zar::Lt::Core::Version32(1, 2, 3, 4);
    header._firstSector = 0x0102;
    header._crcTable[255] = 0xBEEF;
    PackFormat::NamesArea names;
    names.Append("Play", 4);
    header.SetNames(names);

    auto const sector = header.Write();
    EXPECT_EQ(Bytes(sector.begin(), sector.begin() + 16),
        (Bytes { 'Z', 'A', 'R', 0, 0x00, 0x01, 0x05, 0x00, 0x04, 0x03, 0x02, 0x01, 0x02, 0x01, 0, 0 }));
    EXPECT_EQ(sector[PackFormat::CrcEntryOffset(255)], 0xEF);
    EXPECT_EQ(sector[PackFormat::CrcEntryOffset(255) + 1], 0xBE);
    EXPECT_EQ(
        Bytes(sector.begin() + PackFormat::kNamesUsedOffset, sector.begin() + PackFormat::kNamesOffset + 6),
        (Bytes { 5, 0, 0, 0, 1, 0, 0, 0, 4, 'P', 'l', 'a', 'y', 0 }));
    auto const parsed = PackHeader::Parse(sector);
    EXPECT_EQ(parsed._names, std::vector<std::string> { "Play" });
    EXPECT_EQ(parsed._firstSector, 0x0102u);
}

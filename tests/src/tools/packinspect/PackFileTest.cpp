#include "PackFile.h"

#include "FileContents.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using TestSupport::WriteFile;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;

TEST(PackFileTest, LoadsAFileWhole)
{
    ScratchFolder folder;
    auto const bytes = BuildPack(WorkedExample());
    WriteFile(folder / "oled.pack", bytes);
    auto const pack = PackFile::Load((folder / "oled.pack").string());
    EXPECT_EQ(pack.Size(), bytes.size());
    EXPECT_FALSE(pack.IsTooLarge());
    ASSERT_TRUE(pack.HasHeader());
    EXPECT_EQ(pack.Header()._iconCount, 12u);
    EXPECT_EQ(pack.SectorCount(), 5u);
    EXPECT_TRUE(std::equal(pack.Bytes().begin(), pack.Bytes().end(), bytes.begin()));
}

TEST(PackFileTest, AMissingFileCannotBeOpened)
{
    ScratchFolder folder;
    std::string const path = (folder / "none.pack").string();
    EXPECT_THAT([&] { PackFile::Load(path); },
        testing::ThrowsMessage<ResourcesLibraryException>(testing::StrEq("Cannot open " + path)));
}

TEST(PackFileTest, AFolderCannotBeRead)
{
    ScratchFolder folder;
    std::string const path = folder.Path().string();
    EXPECT_THROW(PackFile::Load(path), ResourcesLibraryException);
}

TEST(PackFileTest, ReadsNoMoreThanAPackCanHold)
{
    ScratchFolder folder;
    WriteFile(folder / "big.pack", Bytes(258 * 4096, 0xFF));
    auto const pack = PackFile::Load((folder / "big.pack").string());
    EXPECT_TRUE(pack.IsTooLarge());
    EXPECT_EQ(pack.Size(), 257u * 4096u);

    WriteFile(folder / "full.pack", Bytes(257 * 4096, 0xFF));
    EXPECT_FALSE(PackFile::Load((folder / "full.pack").string()).IsTooLarge());
}

TEST(PackFileTest, AFileShorterThanASectorHasNoHeader)
{
    PackFile const pack(Bytes(4095, 0));
    EXPECT_FALSE(pack.HasHeader());
    EXPECT_EQ(pack.SectorCount(), 1u);
    EXPECT_THAT([&] { pack.Header(); },
        testing::ThrowsMessage<Zar::Lt::Exceptions::PreCondition>(
            testing::StrEq("PreCondition _header.has_value()")));
    EXPECT_FALSE(PackFile(Bytes()).HasHeader());
}

TEST(PackFileTest, SectorsAndSlicesStopAtTheEndOfTheFile)
{
    PackFile const pack(Bytes(4096 + 100, 7));
    EXPECT_EQ(pack.SectorCount(), 2u);
    EXPECT_EQ(pack.Sector(0).size(), 4096u);
    EXPECT_EQ(pack.Sector(1).size(), 100u);
    EXPECT_TRUE(pack.Sector(2).empty());
    EXPECT_EQ(pack.Slice(4000, 1000).size(), 196u);
    EXPECT_TRUE(pack.Slice(5000, 10).empty());
    EXPECT_TRUE(pack.Slice(UINT64_MAX, UINT64_MAX).empty());
    EXPECT_EQ(pack.Slice(0, UINT64_MAX).size(), 4196u);
}

TEST(PackFileTest, TheNotAPackProblemNamesTheFormatWordOfThePackFormat)
{
    using Zar::ResourcesLibrary::Pack::PackFormat;
    EXPECT_EQ(PackFile::NotAPackProblem(),
        "not a pack: no header sector with the magic \"ZAR\" and the format word 0.5.1.0");
    EXPECT_EQ(PackFile::NotAPackProblem(),
        "not a pack: no header sector with the magic \"ZAR\" and the format word "
            + Zar::Lt::Core::Version32(PackFormat::kFormatWord).Text());
}

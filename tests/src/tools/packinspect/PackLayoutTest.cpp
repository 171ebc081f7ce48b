#include "PackLayout.h"

#include "TestPacks.h"

#include "Zar/ResourcesLibrary/Pack/PackHeader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace PackInspectTest;
using Zar::ResourcesLibrary::Pack::PackHeader;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::PackLayout;

namespace {

ImageGeometry const Icon(32, 24);
ImageGeometry const Screen(256, 64);

PackLayout Lay(PackContents const& contents, ImageGeometry const& icon = Icon)
{
    return PackLayout::Compute(PackHeader::Parse(BuildPack(contents)), icon, Screen);
}

} // namespace

TEST(PackLayoutTest, TenIconsOfTheUsualSizeFillASector)
{
    auto const layout = Lay(WorkedExample());
    auto const& images = layout.Images();
    ASSERT_EQ(images.size(), 13u);
    EXPECT_EQ(images[0]._targetSector, 12u);
    EXPECT_EQ(images[0]._offset, 0u);
    EXPECT_EQ(images[9]._targetSector, 12u);
    EXPECT_EQ(images[9]._offset, 9u * 384u);
    EXPECT_EQ(images[10]._targetSector, 13u);
    EXPECT_EQ(images[10]._offset, 0u);
    EXPECT_EQ(images[11]._offset, 384u);
    EXPECT_EQ(images[11]._fileSector, 2u);
    EXPECT_EQ(images[11].FileOffset(), 2u * 4096u + 384u);
    EXPECT_EQ(layout.IconSectors(), 2u);
    EXPECT_EQ(layout.ScreenSectors(), 2u);
    EXPECT_EQ(layout.FileSectors(), 5u);
    EXPECT_TRUE(layout.IsComplete());
}

TEST(PackLayoutTest, ValuesFollowTheGeneratedHeaders)
{
    auto const layout = Lay(WorkedExample());
    auto const& images = layout.Images();
    EXPECT_EQ(images[0]._value, 100);
    EXPECT_EQ(images[11]._value, 111);
    EXPECT_EQ(images[12]._value, 0);
    EXPECT_EQ(images[12]._kind, PackLayout::Kind::Screen);
    EXPECT_STREQ(images[12].KindName(), "screen");
    EXPECT_STREQ(images[0].KindName(), "icon");
    EXPECT_EQ(images[12]._name, "Screen0");

    auto contents = WorkedExample();
    contents._firstSector = 1;
    EXPECT_EQ(Lay(contents).Images()[0]._value, -10);
}

TEST(PackLayoutTest, ScreensStartAt247AndTakeWholeSectors)
{
    auto contents = WorkedExample();
    contents._screens.push_back(Pattern(8192, 9));
    auto const layout = Lay(contents);
    auto const& images = layout.Images();
    EXPECT_EQ(images[12]._targetSector, 247u);
    EXPECT_EQ(images[12]._fileSector, 3u);
    EXPECT_EQ(images[13]._targetSector, 249u);
    EXPECT_EQ(images[13]._fileSector, 5u);
    EXPECT_EQ(images[13]._value, 1);
    EXPECT_EQ(layout.ScreenSectors(), 4u);
}

TEST(PackLayoutTest, ASectorClosesWhenOneMoreIconWouldNotFit)
{
    // 2048-byte icons: after the first, 2048 + 2048 reaches 4096, so each icon gets its own sector.
    PackContents contents;
    contents._icons = { Pattern(2048, 1), Pattern(2048, 2) };
    auto const layout = Lay(contents, ImageGeometry(64, 64));
    EXPECT_EQ(layout.Images()[1]._targetSector, 13u);
    EXPECT_EQ(layout.Images()[1]._offset, 0u);
    EXPECT_EQ(layout.IconSectors(), 2u);
}

TEST(PackLayoutTest, ElevenIconsTakeTwoSectors)
{
    PackContents contents;
    for (uint8_t k = 0; k < 11; ++k)
        contents._icons.push_back(Pattern(384, k));
    auto const layout = Lay(contents);
    EXPECT_EQ(layout.IconSectors(), 2u);
    EXPECT_EQ(layout.FileSectors(), 3u);
}

TEST(PackLayoutTest, MissingNamesStayEmpty)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 540, 2);
    PutU32(bytes, 536, 12);
    auto const layout = PackLayout::Compute(PackHeader::Parse(bytes), Icon, Screen);
    EXPECT_EQ(layout.Images()[1]._name, "Icon1");
    EXPECT_EQ(layout.Images()[2]._name, "");
}

TEST(PackLayoutTest, ALyingCountStopsAtTheStore)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 16, 0xFFFFFFFF);
    PutU32(bytes, 20, 0xFFFFFFFF);
    auto const layout = PackLayout::Compute(PackHeader::Parse(bytes), Icon, Screen);
    EXPECT_FALSE(layout.IsComplete());
    EXPECT_EQ(layout.Images().size(), 2560u);
}

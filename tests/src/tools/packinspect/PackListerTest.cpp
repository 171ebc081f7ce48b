#include "PackLister.h"

#include "TestPacks.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace PackInspectTest;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackLister;

namespace {

struct Listing {
    std::size_t _problems;
    std::string _text;
};

Listing List(Bytes bytes, ImageGeometry const& icon = ImageGeometry(32, 24))
{
    std::ostringstream out;
    auto const problems = PackLister::List(PackFile(std::move(bytes)), icon, ImageGeometry(256, 64), out);
    return { problems, out.str() };
}

} // namespace

TEST(PackListerTest, ListsTheHeaderTheStoreAndEveryImage)
{
    PackContents contents;
    contents._icons = { Pattern(384, 1), Pattern(384, 2) };
    contents._screens = { Pattern(8192, 3) };
    contents._names = { "Play", "Stop_Selected", "Splash" };
    auto const listing = List(BuildPack(contents));
    EXPECT_EQ(listing._problems, 0u);
    EXPECT_EQ(listing._text,
        "version       1.2.3.4\n"
        "format        0.5.1.0\n"
        "first sector  12\n"
        "icons         2 (32x24, 384 bytes each, 1 sectors)\n"
        "screens       1 (256x64, 8192 bytes each, 2 sectors)\n"
        "store         4 of 256 sectors used (16384 bytes), 252 free (1032192 bytes)\n"
        "names area    26 of 3552 bytes used, 3 names\n"
        "\n"
        "kind     value  sector  offset  name\n"
        "icon       100      12       0  Play\n"
        "icon       101      12     384  Stop_Selected\n"
        "screen       0     247       0  Splash\n");
}

TEST(PackListerTest, AnEmptyPackHasNoTable)
{
    auto const listing = List(BuildPack(PackContents {}));
    EXPECT_EQ(listing._problems, 0u);
    EXPECT_THAT(listing._text, testing::EndsWith("names area    0 of 3552 bytes used, 0 names\n"));
}

TEST(PackListerTest, AGeometryThatDoesNotFitTheFileIsAProblem)
{
    auto const listing = List(BuildPack(WorkedExample()), ImageGeometry(16, 16));
    EXPECT_EQ(listing._problems, 1u);
    EXPECT_THAT(listing._text,
        testing::HasSubstr("problem: the geometry --icon 16x16 --screen 256x64 lays 4 sectors "
                           "out, the file holds 5: the geometry is probably not the pack's\n"));
}

TEST(PackListerTest, NamesProblemsAreListed)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 540, 14);
    auto const listing = List(bytes);
    EXPECT_EQ(listing._problems, 1u);
    EXPECT_THAT(listing._text, testing::HasSubstr("problem: names area ends after 13 of 14 names\n"));
}

TEST(PackListerTest, RefusesWhatIsNotAPack)
{
    auto const notAPack = List(Bytes(4096, 0xFF));
    EXPECT_EQ(notAPack._problems, 1u);
    EXPECT_EQ(notAPack._text,
        "problem: not a pack: no header sector with the magic \"ZAR\" and the format word 0.5.1.0\n");
    EXPECT_EQ(List(Bytes(10, 0))._problems, 1u);
    auto unknownFormat = BuildPack(WorkedExample());
    PutU32(unknownFormat, 4, 7);
    EXPECT_EQ(List(unknownFormat)._problems, 1u);
}

TEST(PackListerTest, ALyingCountEndsTheTable)
{
    auto bytes = BuildPack(WorkedExample());
    PutU32(bytes, 20, 0xFFFFFFFF);
    auto const listing = List(bytes);
    EXPECT_THAT(listing._text,
        testing::HasSubstr("(the header counts more images than a pack can hold; the list stops here)\n"));
}

TEST(PackListerTest, HostileHeadersStayBounded)
{
    std::size_t const fields[] = { 12, 16, 20, 536, 540 };
    uint32_t const values[] = { 0, 1, 247, 256, 0xFFFF, 0x10000, 0xFFFFFFFF };
    auto const good = BuildPack(WorkedExample());
    for (std::size_t field : fields)
        for (uint32_t value : values) {
            auto bytes = good;
            PutU32(bytes, field, value);
            auto const listing = List(bytes, ImageGeometry(1, 1));
            // At most one line per image a whole store of the smallest icons can hold.
            EXPECT_LT(std::count(listing._text.begin(), listing._text.end(), '\n'), 270000)
                << field << " " << value;
        }
}

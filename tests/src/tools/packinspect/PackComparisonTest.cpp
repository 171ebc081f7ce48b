#include "PackComparison.h"

#include "PackFile.h"
#include "PackLayout.h"
#include "PackagerTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <sstream>

using namespace PackInspectTest;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::PackComparison;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackLayout;

namespace {

Bytes IconBmp(int seed) { return Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, seed)); }

// A tree of the icons named, each drawn from its own seed, and two screens; edit changes it first.
struct TreeRecipe {
    std::vector<std::pair<std::string, int>> _icons;
    std::string _arguments = "version 1.0.0.0 sector 12";
    std::function<void(std::string const&, Bytes&)> _edit = [](std::string const&, Bytes&) {};
};

PackFile BuildPack(TreeRecipe const& recipe)
{
    PackagerTree tree;
    for (auto const& [name, seed] : recipe._icons) {
        Bytes bmp = IconBmp(seed);
        recipe._edit(name, bmp);
        tree.Icon(name, bmp);
    }
    tree.Screen("Home", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 1)));
    tree.Screen("Away", Bmp4(256, 64, AscendingGreys(), Ramp(256, 64, 2)));
    tree.Build(recipe._arguments);
    return PackFile::Load(tree.Pack());
}

PackLayout LayoutOf(PackFile const& pack)
{
    return PackLayout::Compute(pack.Header(), ImageGeometry(32, 24), ImageGeometry(256, 64));
}

std::string Printed(PackFile const& oldPack, PackFile const& newPack)
{
    std::ostringstream out;
    PackComparison::Compare(oldPack, LayoutOf(oldPack), newPack, LayoutOf(newPack)).Print(out);
    return out.str();
}

std::vector<std::pair<std::string, int>> Icons(int count)
{
    std::vector<std::pair<std::string, int>> icons;
    for (int k = 0; k < count; ++k)
        icons.emplace_back("Icon" + std::to_string(k), k);
    return icons;
}

} // namespace

TEST(PackComparisonTest, IdenticalPacksAreEqual)
{
    auto const oldPack = BuildPack({ Icons(12) });
    auto const newPack = BuildPack({ Icons(12) });
    auto const comparison = PackComparison::Compare(oldPack, LayoutOf(oldPack), newPack, LayoutOf(newPack));
    EXPECT_TRUE(comparison.IsEqual());
    EXPECT_TRUE(comparison.ImageChanges().empty());
    EXPECT_EQ(Printed(oldPack, newPack), "the packs are equal\n");
}

TEST(PackComparisonTest, OnePixelChangedNamesTheImageAndItsSector)
{
    auto const oldPack = BuildPack({ Icons(12) });
    TreeRecipe changed { Icons(12) };
    // Rows are stored bottom row first, 16 bytes each: this is the byte of pixels 22 and 23 in the
    // fifth row from the top, well inside the frame, so the frame does not hide the change.
    changed._edit = [](std::string const& name, Bytes& bmp) {
        if (name == "Icon11")
            bmp[bmp.size() - 16 * 4 - 5] ^= 0x10;
    };
    auto const newPack = BuildPack(changed);
    EXPECT_EQ(Printed(oldPack, newPack),
        "changed  icon    Icon11  (sector 13 offset 384)\n"
        "flash    sectors 13 and the header sector: 2 sectors, 8192 bytes\n");
}

TEST(PackComparisonTest, AnIconRemovedFromTheMiddleMovesTheRest)
{
    auto const oldPack = BuildPack({ Icons(12) });
    auto icons = Icons(12);
    icons.erase(icons.begin() + 9);
    auto const newPack = BuildPack({ icons });
    EXPECT_EQ(Printed(oldPack, newPack),
        "removed  icon    Icon9  (was at sector 12 offset 3456, value 109)\n"
        "moved    icon    Icon10  (sector 13 offset 0 -> sector 12 offset 3456)\n"
        "moved    icon    Icon11  (sector 13 offset 384 -> sector 13 offset 0)\n"
        "header   icons 12 -> 11\n"
        "flash    sectors 12 13 and the header sector: 3 sectors, 12288 bytes\n");
}

TEST(PackComparisonTest, AnIconAddedAtTheEnd)
{
    auto const oldPack = BuildPack({ Icons(3) });
    auto const newPack = BuildPack({ Icons(4) });
    EXPECT_EQ(Printed(oldPack, newPack),
        "added    icon    Icon3  (sector 12 offset 1152, value 103)\n"
        "header   icons 3 -> 4\n"
        "flash    sectors 12 and the header sector: 2 sectors, 8192 bytes\n");
}

TEST(PackComparisonTest, OnlyTheVersionChanged)
{
    auto const oldPack = BuildPack({ Icons(3) });
    auto const newPack = BuildPack({ Icons(3), "version 1.0.0.1 sector 12" });
    EXPECT_EQ(Printed(oldPack, newPack),
        "header   version 1.0.0.0 -> 1.0.0.1\n"
        "flash    the header sector: 1 sector, 4096 bytes\n");
}

TEST(PackComparisonTest, AnotherFirstSectorMovesEveryIconButNoScreen)
{
    auto const oldPack = BuildPack({ Icons(2) });
    auto const newPack = BuildPack({ Icons(2), "version 1.0.0.0 sector 20" });
    EXPECT_EQ(Printed(oldPack, newPack),
        "moved    icon    Icon0  (sector 12 offset 0 -> sector 20 offset 0)\n"
        "moved    icon    Icon1  (sector 12 offset 384 -> sector 20 offset 384)\n"
        "header   first sector 12 -> 20\n"
        "unused   sectors 12 (the new pack no longer uses them)\n"
        "flash    sectors 20 and the header sector: 2 sectors, 8192 bytes\n");
}

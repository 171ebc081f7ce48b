#pragma once

#include "BmpBytes.h"
#include "IconNames.h"

#include "BmpTree.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <filesystem>
#include <string>
#include <vector>

namespace Zar::Bench {

// A bmp/ tree as the packager reads it, in a temporary folder that is removed with the object:
// icons/ with 32 x 24 icons (1-bit and 4-bit in turn, names from IconNames) and screens/ with
// 256 x 64 4-bit screens, each with its list.txt; beside it the output folder out/.
class BenchTree {
public:
    static constexpr int kScreens = 4;

    explicit BenchTree(int icons)
    {
        std::filesystem::create_directories(_tree.Folder() / "out");
        _tree.IconList(std::string());
        _tree.ScreenList(std::string());
        auto const names = IconNames(icons);
        for (std::size_t i = 0; i < names.size(); ++i)
            _tree.AddIcon(names[i], MakeBmp(32, 24, i % 2 == 0 ? 1 : 4));
        for (int i = 1; i <= kScreens; ++i)
            _tree.AddScreen("Screen" + std::to_string(i), MakeBmp(256, 64, 4));
    }

    // The bmp root and the output folder, each ending in '/', as the packager's build takes them.
    std::string Root() const { return _tree.Root(); }
    std::string Output() const { return (_tree.Folder() / "out").string() + "/"; }

    // Deletes what a build wrote, so that the next one writes fresh files as a clean build does.
    void RemoveOutputs() const
    {
        std::filesystem::remove_all(_tree.Folder() / "out");
        std::filesystem::create_directories(_tree.Folder() / "out");
    }

    // As many icons as the pack header's names area holds beside the screens' names.
    static int MaxIcons()
    {
        std::size_t used = kScreens * (1 + std::string("Screen1").size());
        int count = 0;
        for (auto const& name : IconNames(1000)) {
            if (used + 1 + name.size() > Zar::ResourcesLibrary::Pack::PackFormat::kNamesCapacity)
                break;
            used += 1 + name.size();
            ++count;
        }
        return count;
    }

private:
    TestSupport::BmpTree const _tree { "packager-bench" };
};

} // namespace Zar::Bench

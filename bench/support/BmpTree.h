#pragma once

#include "BmpBytes.h"
#include "IconNames.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace Zar::Bench {

// A bmp/ tree as the packager reads it, in a temporary folder that is removed with the object:
// icons/ with 32 x 24 icons (1-bit and 4-bit in turn, names from IconNames) and screens/ with
// 256 x 64 4-bit screens, each with its list.txt.
class BmpTree {
public:
    static constexpr int kScreens = 4;

    explicit BmpTree(int icons)
    {
        std::filesystem::create_directories(_folder / "bmp" / "icons");
        std::filesystem::create_directories(_folder / "bmp" / "screens");
        std::filesystem::create_directories(_folder / "out");
        auto const names = IconNames(icons);
        for (std::size_t i = 0; i < names.size(); ++i)
            WriteFile(_folder / "bmp" / "icons" / (names[i] + ".bmp"), MakeBmp(32, 24, i % 2 == 0 ? 1 : 4));
        WriteList(_folder / "bmp" / "icons" / "list.txt", names);
        std::vector<std::string> screens;
        for (int i = 1; i <= kScreens; ++i)
            screens.push_back("Screen" + std::to_string(i));
        for (auto const& name : screens)
            WriteFile(_folder / "bmp" / "screens" / (name + ".bmp"), MakeBmp(256, 64, 4));
        WriteList(_folder / "bmp" / "screens" / "list.txt", screens);
    }

    BmpTree(BmpTree const&) = delete;
    BmpTree& operator=(BmpTree const&) = delete;

    // The bmp root and the output folder, each ending in '/', as the packager's build takes them.
    std::string Root() const { return (_folder / "bmp").string() + "/"; }
    std::string Output() const { return (_folder / "out").string() + "/"; }

    // Deletes what a build wrote, so that the next one writes fresh files as a clean build does.
    void RemoveOutputs() const
    {
        std::filesystem::remove_all(_folder / "out");
        std::filesystem::create_directories(_folder / "out");
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
    static void WriteFile(std::filesystem::path const& path, std::vector<uint8_t> const& bytes)
    {
        std::ofstream file(path, std::ios::binary);
        file.write(reinterpret_cast<char const*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    }

    static void WriteList(std::filesystem::path const& path, std::vector<std::string> const& names)
    {
        std::ofstream file(path, std::ios::binary);
        for (auto const& name : names)
            file << name << ".bmp\n";
    }

    Zar::Lt::Core::ScratchFolder const _folder { "packager-bench" };
};

} // namespace Zar::Bench

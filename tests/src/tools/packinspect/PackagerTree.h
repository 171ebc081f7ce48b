#pragma once

// A bmp tree built in a scratch folder and packed by the real packager executable, for the tests
// that take packs apart and compare them: the pack, the summary packager printed and the generated
// sources, all of which a rebuild must reproduce.

#include "BmpTree.h"
#include "FileContents.h"
#include "ShellCommand.h"
#include "TestPacks.h"

#include <filesystem>
#include <string>
#include <vector>

namespace PackInspectTest {

// Every file packager writes beside the pack, and the pack.
inline std::vector<std::string> const& PackagerOutputs()
{
    static std::vector<std::string> const outputs { "oled.pack", "Icons.h", "Icons.py", "commands.py",
        "IconsHelper.cpp", "Screens.h", "Screens.py" };
    return outputs;
}

class PackagerTree {
public:
    PackagerTree()
    {
        _tree.IconList(std::string());
        _tree.ScreenList(std::string());
    }

    // Adds an image file and its list line (by default the file's name).
    void Icon(std::string const& name, Bytes const& bmp) { _tree.AddIcon(name, bmp); }
    void Screen(std::string const& name, Bytes const& bmp) { _tree.AddScreen(name, bmp); }

    // Runs packager in the folder; the summary is what it printed.
    void Build(std::string const& arguments)
    {
        _run = TestSupport::RunShellCommand(
            TestSupport::ShellProgram(PackagerPath()) + " " + arguments + " > summary.txt", Folder());
    }

    std::filesystem::path const& Folder() const { return _tree.Folder(); }
    std::string Pack() const { return (Folder() / "oled.pack").string(); }
    std::string Summary() const { return TestSupport::ReadText(Folder() / "summary.txt"); }
    TestSupport::CommandResult const& Run() const { return _run; }

private:
    TestSupport::BmpTree _tree;
    TestSupport::CommandResult _run;
};

// A 1-bit BMP whose pixel (x, y) is lit where (x + 2y + seed) mod 5 is 0, its padding bits set too.
inline Bytes Bmp1(int width, int height, int seed, TestSupport::BmpWriter::PaletteOrder order)
{
    std::vector<Bytes> rows;
    int const stride = ((width + 31) / 32) * 4;
    for (int y = 0; y < height; ++y) {
        Bytes row(static_cast<std::size_t>(stride), 0);
        for (int x = 0; x < stride * 8; ++x)
            if ((x + 2 * y + seed) % 5 == 0)
                row[static_cast<std::size_t>(x / 8)] |= static_cast<uint8_t>(0x80 >> (x % 8));
        rows.push_back(std::move(row));
    }
    return TestSupport::BmpWriter::Mono(width, std::move(rows), order).Bytes();
}

} // namespace PackInspectTest

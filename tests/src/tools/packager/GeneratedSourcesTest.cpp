// The generated files are compiled and run here, with the project's own compiler and Python, so that
// a change of their text that still matches a string comparison but breaks the firmware or the test
// scripts is caught.

#include "CppEnumerationOutput.h"
#include "FileContents.h"
#include "GeneratedText.h"
#include "HelperEnumerationOutput.h"
#include "PythonEnumerationOutput.h"
#include "ShellCommand.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Core/StringCollection/StringCollection.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using PackagerTests::Generate;
using TestSupport::CommandResult;
using TestSupport::RunShellCommand;
using TestSupport::ShellQuoted;
using TestSupport::WriteFile;
using Zar::Lt::Core::ScratchFolder;
using Zar::Lt::Core::StringCollection;
using Zar::ResourcesLibrary::Tools::CppEnumerationOutput;
using Zar::ResourcesLibrary::Tools::EnumerationOption;
using Zar::ResourcesLibrary::Tools::HelperEnumerationOutput;
using Zar::ResourcesLibrary::Tools::PythonEnumerationOutput;

namespace {

namespace fs = std::filesystem;

std::string Quoted(fs::path const& path) { return ShellQuoted(path.string()); }

// The Python module as the exporter completes it: two lines that print the values and names.
std::string PythonModule(
    EnumerationOption const& option, StringCollection const& names, int offset, std::string const& lower)
{
    return Generate<PythonEnumerationOutput>(option, names, offset) + "value_names = [(" + lower + ".value, "
        + lower + ".name) for " + lower + " in " + option.name + "]\nprint(value_names)\n";
}

EnumerationOption const kIcons { "Icon", 100, true };
EnumerationOption const kScreens { "Screen", 0, true };

// The exporter writes the icons' files at the first screen, when its list holds the icons alone.
StringCollection IconNames()
{
    StringCollection names;
    names.Append({ "Play", "Stop_Selected", " volume-up\r" });
    return names;
}

// At the end the list holds the icons first and the screens after them.
StringCollection ImageNames()
{
    StringCollection names = IconNames();
    names.Append({ "main", "menu" });
    return names;
}

int const kIconsCount = 3;

// The firmware's own header, which the generated helper includes but nobody generates.
std::string const kIconHelperHeader = "#pragma once\n"
                                      "#include <stdint.h>\n"
                                      "namespace Zar { namespace RemoteController { namespace Features {\n"
                                      "struct IconsHelper\n"
                                      "{\n"
                                      "    static const char* GetString(uint32_t value);\n"
                                      "};\n"
                                      "}}}\n";

std::string const kMain = R"(#include "IconHelper.h"
#include "Icons.h"
#include "Screens.h"

#include <cstdio>

using namespace Zar::RemoteButtonsConfiguration;
using Zar::RemoteController::Features::IconsHelper;
using Zar::RemoteController::Features::ScreenIndex;

int main()
{
    std::printf("Play=%d Stop_Selected=%d Volume_up=%d\n", static_cast<int>(Icon::Play),
        static_cast<int>(Icon::Stop_Selected), static_cast<int>(Icon::Volume_up));
    std::printf("Icons First=%d Last=%d Count=%d\n", Icons::First, Icons::Last, Icons::Count);
    std::printf("IconIndex==Icon %d %d\n", IconIndex { 100 } == Icon::Play, IconIndex { 101 } == Icon::Play);
    std::printf("Icon==IconIndex %d %d\n", Icon::Volume_up == IconIndex { 102 }, Icon::Volume_up == IconIndex { 100 });
    std::printf("GetString %s %s %s\n", IconsHelper::GetString(0), IconsHelper::GetString(1), IconsHelper::GetString(2));
    std::printf("Main=%d Menu=%d\n", static_cast<int>(Screen::Main), static_cast<int>(Screen::Menu));
    std::printf("Screens First=%d Last=%d Count=%d\n", Screens::First, Screens::Last, Screens::Count);
    std::printf("ScreenIndex==Screen %d %d\n", ScreenIndex { 1 } == Screen::Menu, Screen::Main == ScreenIndex { 1 });
    return 0;
}
)";

class GeneratedSourcesTest : public testing::Test {
protected:
    void SetUp() override
    {
        StringCollection const icons = IconNames();
        StringCollection const images = ImageNames();
        WriteFile(_folder.Path() / "Icons.h", Generate<CppEnumerationOutput>(kIcons, icons, 0));
        WriteFile(
            _folder.Path() / "Screens.h", Generate<CppEnumerationOutput>(kScreens, images, kIconsCount));
        WriteFile(_folder.Path() / "IconsHelper.cpp", Generate<HelperEnumerationOutput>(kIcons, icons, 0));
        WriteFile(_folder.Path() / "Icons.py", PythonModule(kIcons, icons, 0, "icon"));
        WriteFile(_folder.Path() / "Screens.py", PythonModule(kScreens, images, kIconsCount, "screen"));
    }

    CommandResult RunPython(fs::path const& script) const
    {
        return RunShellCommand(Quoted(PACKAGER_PYTHON3) + " " + Quoted(script));
    }

    ScratchFolder _folder;
};

} // namespace

TEST_F(GeneratedSourcesTest, CppFilesCompileWithoutWarningsAndGiveTheExpectedValues)
{
    fs::path const folder = _folder.Path();
    WriteFile(folder / "IconHelper.h", kIconHelperHeader);
    WriteFile(folder / "main.cpp", kMain);
    fs::path const program = folder / "generated";

    CommandResult const compile = RunShellCommand(Quoted(PACKAGER_CXX_COMPILER)
        + " -std=c++17 -Wall -Wextra -Wpedantic -Werror -I" + Quoted(folder) + " "
        + Quoted(folder / "main.cpp") + " " + Quoted(folder / "IconsHelper.cpp") + " -o " + Quoted(program));
    ASSERT_EQ(compile.exitCode, 0) << compile.output;

    CommandResult const run = RunShellCommand(TestSupport::ShellProgram(program.string()));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output,
        "Play=100 Stop_Selected=101 Volume_up=102\n"
        "Icons First=100 Last=102 Count=3\n"
        "IconIndex==Icon 1 0\n"
        "Icon==IconIndex 1 0\n"
        "GetString Play Stop_Selected Volume_up\n"
        "Main=0 Menu=1\n"
        "Screens First=0 Last=1 Count=2\n"
        "ScreenIndex==Screen 1 0\n");
}

TEST_F(GeneratedSourcesTest, IconsModulePrintsTheFirmwareValues)
{
    CommandResult const run = RunPython(_folder.Path() / "Icons.py");
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_EQ(run.output, "[(100, 'Play'), (101, 'Stop_Selected'), (102, 'Volume_up')]\n");
}

TEST_F(GeneratedSourcesTest, ScreensModuleCountsFromOne)
{
    // With no explicit first value every member is auto(), which Python counts from 1, while the C++
    // screens start at 0; the generated text is kept as it is, so the difference stays.
    CommandResult const run = RunPython(_folder.Path() / "Screens.py");
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_EQ(run.output, "[(1, 'Main'), (2, 'Menu')]\n");
}

TEST_F(GeneratedSourcesTest, ModuleWithoutNamesIsNotValidPython)
{
    fs::path const script = _folder.Path() / "NoScreens.py";
    WriteFile(script, PythonModule(kScreens, StringCollection(), 0, "screen"));
    CommandResult const run = RunPython(script);
    EXPECT_NE(run.exitCode, 0);
    EXPECT_NE(run.output.find("IndentationError"), std::string::npos) << run.output;
}

TEST_F(GeneratedSourcesTest, NegativeFirstValueRunsInPython)
{
    fs::path const script = _folder.Path() / "Negative.py";
    WriteFile(script, PythonModule({ "Icon", -20, true }, ImageNames(), kIconsCount, "icon"));
    CommandResult const run = RunPython(script);
    EXPECT_EQ(run.exitCode, 0) << run.output;
    EXPECT_EQ(run.output, "[(-20, 'Main'), (-19, 'Menu')]\n");
}

#include "CommandRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>

using namespace PackInspectTest;
using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::ReadText;
using TestSupport::WriteFile;
using Zar::ResourcesLibrary::Tools::Inspect::Command;
using Zar::ResourcesLibrary::Tools::Inspect::CommandLine;
using Zar::ResourcesLibrary::Tools::Inspect::CommandTable;

TEST(CommandLineTest, NeedsACommand)
{
    auto const result = Inspect({});
    EXPECT_EQ(result._status, CommandLine::kUsage);
    EXPECT_EQ(result._err, UsageText("packinspect", "a command is needed"));
    EXPECT_EQ(result._out, "");
}

TEST(CommandLineTest, RefusesAnUnknownCommand)
{
    auto const result = Inspect({ "inspect" });
    EXPECT_EQ(result._status, 2);
    EXPECT_EQ(result._err, UsageText("packinspect", "unknown command 'inspect'"));
}

TEST(CommandLineTest, ShowsHelpAndVersion)
{
    for (std::string const option : { "--help", "-h" }) {
        auto const result = Inspect({ option });
        EXPECT_EQ(result._status, 0);
        EXPECT_EQ(result._out, CommandLine::MainHelp());
    }
    EXPECT_THAT(
        CommandLine::MainHelp(), HasSubstr("Exit status: 0 if all is well, 1 if problems were found, 2 if"));
    auto const version = Inspect({ "--version" });
    EXPECT_EQ(version._status, 0);
    EXPECT_THAT(version._out, testing::MatchesRegex("packinspect [0-9]+\\.[0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(CommandLineTest, EveryCommandHasItsHelp)
{
    for (Command const* command : CommandTable::All()) {
        std::string const name(command->_name);
        for (std::string const option : { "--help", "-h" }) {
            auto const result = Inspect({ name, option });
            EXPECT_EQ(result._status, 0) << name;
            EXPECT_EQ(result._out, command->_help()) << name;
            EXPECT_THAT(result._out, StartsWith("Usage: packinspect " + name)) << name;
        }
    }
}

TEST(CommandLineTest, TheMainHelpListsEveryCommandOfTheTable)
{
    std::string const help = CommandLine::MainHelp();
    for (Command const* command : CommandTable::All()) {
        std::string const synopsis = "\n  " + std::string(command->_synopsis) + " ";
        EXPECT_THAT(help, HasSubstr(synopsis)) << command->_name;
        std::string const summary(command->_summary.substr(0, command->_summary.find('\n')));
        EXPECT_THAT(help, HasSubstr(summary + "\n")) << command->_name;
    }
    // A summary's later lines stand under its first.
    EXPECT_THAT(help,
        HasSubstr("  check [ROOT]            pack a bmp tree (default bmp/) as packager would and\n"
                  "                          report every way the pack or its sources would go wrong\n"));
}

// The commands the man page describes: the first word of each tagged paragraph of its COMMANDS
// section.
std::set<std::string> ManPageCommands(std::string const& page)
{
    std::set<std::string> commands;
    auto const start = page.find("\n.SH COMMANDS\n");
    std::istringstream lines(page.substr(start, page.find("\n.SH ", start + 1) - start));
    std::regex const tag(R"(^\.BI? (\w+)\b.*)");
    bool tagged = false;
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (tagged && std::regex_match(line, match, tag))
            commands.insert(match[1]);
        tagged = line == ".TP";
    }
    return commands;
}

TEST(CommandLineTest, TheManPageDescribesEveryCommandOfTheTableAndNoOther)
{
    std::set<std::string> table;
    for (Command const* command : CommandTable::All())
        table.emplace(command->_name);
    std::string const page = ReadText(std::string(PACKAGER_BINARY_DIR) + "/docs/packinspect.1");
    EXPECT_EQ(ManPageCommands(page), table);
    for (auto const& name : table)
        EXPECT_THAT(page, HasSubstr(".B packinspect " + name + "\n")) << "the synopsis lacks " << name;
}

TEST(CommandLineTest, TheReadmeShowsEveryCommandOfTheTable)
{
    std::string const readme = ReadText(std::string(PACKAGER_SOURCE_DIR) + "/README.md");
    for (Command const* command : CommandTable::All())
        EXPECT_THAT(readme, HasSubstr("packinspect " + std::string(command->_name) + " ")) << command->_name;
}

TEST(CommandLineTest, HelpTextsSpellOutThePacksNumbers)
{
    for (Command const* command : CommandTable::All())
        EXPECT_EQ(command->_help().find('{'), std::string::npos) << command->_help();
    EXPECT_THAT(HelpOf("verify"), HasSubstr("whole 4096-byte\nsectors"));
    EXPECT_THAT(HelpOf("verify"), HasSubstr("screen sectors at 247 and\non)"));
    EXPECT_THAT(HelpOf("verify"), HasSubstr("names area within its 3552 bytes"));
    EXPECT_THAT(HelpOf("list"), HasSubstr("free of the 256-sector store"));
    EXPECT_THAT(HelpOf("list"), HasSubstr("(first sector - 2) x 10, screens from 0"));
    EXPECT_THAT(HelpOf("check"), HasSubstr("(default 12)\n"));
    EXPECT_THAT(HelpOf("diff"),
        HasSubstr("      --icon=WxH      icon size in pixels (default 32x24)\n"
                  "      --screen=WxH    screen size in pixels (default 256x64)\n"
                  "  -h, --help"));
}

TEST(CommandLineTest, CommandsRefuseUnknownOptions)
{
    for (Command const* command : CommandTable::All()) {
        std::string const name(command->_name);
        auto const result = Inspect({ name, "--frobnicate" });
        EXPECT_EQ(result._status, 2) << name;
        EXPECT_EQ(result._err, UsageText("packinspect " + name, "unknown option '--frobnicate'"));
    }
}

TEST(CommandLineTest, HelpsDeriveThePackNumbersFromTheFormat)
{
    EXPECT_THAT(HelpOf("verify"), HasSubstr("whole 4096-byte\nsectors"));
    EXPECT_THAT(HelpOf("verify"), HasSubstr("screen sectors at 247 and"));
    EXPECT_THAT(HelpOf("verify"), HasSubstr("names area within its 3552 bytes"));
    EXPECT_THAT(HelpOf("list"), HasSubstr("free of the 256-sector store"));
    EXPECT_THAT(HelpOf("extract"), HasSubstr("frame over the same pixels"));
    EXPECT_THAT(HelpOf("diff"), HasSubstr("2 on trouble"));
}

TEST(CommandLineTest, APackCutInsideItsLastSectorIsRefusedBeforeAnythingIsWritten)
{
    // The worked example's five sectors end with its screen; 96 bytes of it are missing, which a
    // count of sectors rounded up does not show.
    auto bytes = BuildPack(WorkedExample());
    bytes.resize(4 * 4096 + 4000);
    PackFolder const folder(bytes);
    std::string const problem
        = "the file holds 20384 bytes, not whole sectors: the image Screen0 lies past its end\n";

    auto const extract = Inspect({ "extract", folder.Path(), "-o", folder.In("tree") });
    EXPECT_EQ(extract._status, 1);
    EXPECT_EQ(extract._out, "");
    EXPECT_EQ(extract._err, "packinspect extract: " + folder.Path() + ": " + problem);
    EXPECT_FALSE(std::filesystem::exists(folder.In("tree")));

    auto const list = Inspect({ "list", folder.Path() });
    EXPECT_EQ(list._status, 1);
    EXPECT_THAT(list._out, testing::EndsWith("  Screen0\nproblem: " + problem));

    PackFolder const sound(BuildPack(WorkedExample()));
    auto const diff = Inspect({ "diff", sound.Path(), folder.Path(), "--png", folder.In("diff.png") });
    EXPECT_EQ(diff._status, 2);
    EXPECT_EQ(diff._out, "");
    EXPECT_EQ(diff._err, "packinspect diff: " + folder.Path() + ": " + problem);
    EXPECT_FALSE(std::filesystem::exists(folder.In("diff.png")));
}

TEST(CommandLineTest, FileNamesReachTheFileSystemByteForByte)
{
    auto const bytes = BuildPack(WorkedExample());
    auto changed = WorkedExample();
    changed._icons[2][0] ^= 0xF0;
    // "pàck.bin" in UTF-8 and in Latin-1, whose 0xE0 alone is no UTF-8.
    std::vector<std::string> const names { std::string("p\xC3\xA0") + "ck.bin",
        std::string("p\xE0") + "ck.bin" };
    for (auto const& name : names) {
        PackFolder const folder(bytes);
        WriteFile(folder.In(name), BuildPack(changed));
        auto const list = Inspect({ "list", folder.In(name) });
        EXPECT_EQ(list._status, 0) << list._err;
        EXPECT_THAT(list._out, StartsWith(folder.In(name) + "\nversion       1.2.3.4\n"));

        std::string const png = folder.In(name + ".png");
        auto const diff = Inspect({ "diff", folder.Path(), folder.In(name), "--png=" + png });
        EXPECT_EQ(diff._status, 1) << diff._err;
        EXPECT_THAT(diff._out, testing::EndsWith("\nwrote " + png + "\n"));
        EXPECT_TRUE(std::filesystem::exists(png));
    }
}

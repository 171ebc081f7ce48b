#include "CommandLine.h"
#include "CommandTable.h"

#include "ContactSheet.h"
#include "DiffSheet.h"
#include "FileContents.h"
#include "PackFile.h"
#include "PackLayout.h"
#include "ShellCommand.h"
#include "TestPacks.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QImage>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

using namespace PackInspectTest;
using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::CommandResult;
using TestSupport::ReadBytes;
using TestSupport::ReadText;
using TestSupport::RunShellCommand;
using TestSupport::ShellQuoted;
using TestSupport::WriteFile;
using Zar::Lt::Core::ScratchFolder;
using Zar::ResourcesLibrary::ResourcesLibraryException;
using Zar::ResourcesLibrary::Tools::Inspect::Command;
using Zar::ResourcesLibrary::Tools::Inspect::CommandLine;
using Zar::ResourcesLibrary::Tools::Inspect::CommandTable;
using Zar::ResourcesLibrary::Tools::Inspect::ContactSheet;
using Zar::ResourcesLibrary::Tools::Inspect::DiffSheet;
using Zar::ResourcesLibrary::Tools::Inspect::ImageGeometry;
using Zar::ResourcesLibrary::Tools::Inspect::PackFile;
using Zar::ResourcesLibrary::Tools::Inspect::PackLayout;

namespace {

struct Result {
    int _status;
    std::string _out;
    std::string _err;
};

Result Inspect(std::vector<std::string> const& arguments)
{
    std::ostringstream out;
    std::ostringstream err;
    int const status = CommandLine(out, err).Run(arguments);
    return { status, out.str(), err.str() };
}

// The help text of a command of the table.
std::string HelpOf(std::string_view name)
{
    Command const* command = CommandTable::Find(name);
    if (command == nullptr)
        throw std::logic_error("no command " + std::string(name));
    return command->_help();
}

std::string UsageText(std::string const& name, std::string const& message)
{
    return name + ": " + message + "\nTry '" + name + " --help' for more information.\n";
}

// A folder holding a pack built in code.
class PackFolder {
public:
    explicit PackFolder(Bytes const& bytes) { WriteFile(Path(), bytes); }
    std::string Path() const { return (_folder / "oled.pack").string(); }
    std::string In(std::string const& name) const { return (_folder / name).string(); }

private:
    ScratchFolder _folder;
};

// The folder of a packager run on the project's example resources.
class ExampleRun {
public:
    ExampleRun()
    {
        std::filesystem::copy(std::string(PACKAGER_SOURCE_DIR) + "/examples/bmp", _folder / "bmp",
            std::filesystem::copy_options::recursive);
        _packager
            = RunShellCommand(ShellQuoted(PackagerPath()) + " version 1.2.3.4 sector 12", _folder.Path());
    }
    std::filesystem::path const& Folder() const { return _folder.Path(); }
    std::string Pack() const { return (_folder / "oled.pack").string(); }
    CommandResult const& Packager() const { return _packager; }
    CommandResult Inspect(std::string const& arguments) const
    {
        return RunShellCommand(ShellQuoted(PackinspectPath()) + " " + arguments, _folder.Path());
    }

private:
    ScratchFolder _folder;
    CommandResult _packager;
};

// Enumerator name to value, read from a header that packager generated.
std::map<std::string, long> Enumerators(std::string const& header)
{
    std::map<std::string, long> values;
    std::regex const line(R"(^    (\w+)( = (-?\d+))?,$)");
    std::istringstream lines(header);
    long next = 0;
    for (std::string text; std::getline(lines, text);) {
        std::smatch match;
        if (!std::regex_match(text, match, line))
            continue;
        if (match[3].matched)
            next = std::stol(match[3]);
        values[match[1]] = next++;
    }
    return values;
}

// kind to (name to value), read from the table of a listing.
std::map<std::string, std::map<std::string, long>> ListedValues(std::string const& listing)
{
    std::map<std::string, std::map<std::string, long>> values;
    std::regex const row(R"(^(icon|screen) +(-?\d+) +\d+ +\d+  (\S+)$)");
    std::istringstream lines(listing);
    for (std::string text; std::getline(lines, text);) {
        std::smatch match;
        if (std::regex_match(text, match, row))
            values[match[1]][match[3]] = std::stol(match[2]);
    }
    return values;
}

} // namespace

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
                  "                          report every image that would fail\n"));
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

TEST(CommandLineTest, VerifyNeedsExactlyOnePack)
{
    EXPECT_EQ(Inspect({ "verify" })._err, UsageText("packinspect verify", "the pack file is missing"));
    auto const two = Inspect({ "verify", "a", "b" });
    EXPECT_EQ(two._status, 2);
    EXPECT_EQ(two._err, UsageText("packinspect verify", "one pack file at a time"));
}

TEST(CommandLineTest, VerifyOfAMissingFileThrows)
{
    EXPECT_THAT(
        [] {
            Inspect({ "verify", "/nonexistent/oled.pack" });
        },
        testing::ThrowsMessage<ResourcesLibraryException>(
            testing::StrEq("Cannot open /nonexistent/oled.pack")));
}

TEST(CommandLineTest, VerifyPassesASoundPackAndFailsADamagedOne)
{
    auto bytes = BuildPack(WorkedExample());
    PackFolder const sound(bytes);
    auto const good = Inspect({ "verify", sound.Path() });
    EXPECT_EQ(good._status, 0);
    EXPECT_THAT(good._out, StartsWith(sound.Path() + "\nsector  file  stored  computed  result\n"));
    EXPECT_THAT(good._out, testing::EndsWith("verdict: OK, 4 sectors match their CRC\n"));

    bytes[5000] ^= 4;
    PackFolder const damaged(bytes);
    auto const bad = Inspect({ "verify", "--", damaged.Path() });
    EXPECT_EQ(bad._status, 1);
    EXPECT_THAT(bad._out, testing::EndsWith("verdict: BAD, 1 problem\n"));
}

TEST(CommandLineTest, ListTakesTheGeometryFromItsOptions)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    auto const defaults = Inspect({ "list", folder.Path() });
    EXPECT_EQ(defaults._status, 0);
    EXPECT_THAT(defaults._out, StartsWith(folder.Path() + "\nversion       1.2.3.4\n"));
    EXPECT_THAT(defaults._out, HasSubstr("icons         12 (32x24, 384 bytes each, 2 sectors)\n"));

    auto const other = Inspect({ "list", "--icon=16x16", "--screen", "256x64", folder.Path() });
    EXPECT_EQ(other._status, 1);
    EXPECT_THAT(other._out, HasSubstr("icons         12 (16x16, 128 bytes each, 1 sectors)\n"));
    EXPECT_THAT(
        other._out, HasSubstr("problem: the geometry --icon 16x16 --screen 256x64 lays 4 sectors out"));
}

TEST(CommandLineTest, ListAndRenderRefuseBadSizes)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    for (std::string const command : { "list", "render" }) {
        std::string const name = "packinspect " + command;
        auto const withOptions = [&](std::string const& option) {
            std::vector<std::string> arguments { command, option, folder.Path() };
            if (command == "render")
                arguments.insert(arguments.end(), { "-o", folder.In("x.png") });
            return Inspect(arguments);
        };
        EXPECT_EQ(withOptions("--icon=32")._err,
            UsageText(name, "a size is WxH, two numbers from 1 to 65535: '32' is not"));
        EXPECT_EQ(withOptions("--screen=0x64")._err,
            UsageText(name, "a size is WxH, two numbers from 1 to 65535: '0x64' is not"));
        EXPECT_EQ(withOptions("--icon=64x128")._err,
            UsageText(name, "an icon of 64x128 takes 4096 bytes; icons are below 4096 bytes"));
        EXPECT_EQ(withOptions("--screen=32x24")._err,
            UsageText(
                name, "a screen of 32x24 takes 384 bytes; screens take from 4096 bytes to the whole store"));
        auto const huge = withOptions("--screen=2048x2048");
        EXPECT_EQ(huge._status, 2);
        EXPECT_EQ(huge._err,
            UsageText(name,
                "a screen of 2048x2048 takes 2097152 bytes; screens take from 4096 bytes "
                "to the whole store"));
        EXPECT_EQ(Inspect({ command, "--icon" })._err, UsageText(name, "option '--icon' needs a value"));
    }
    EXPECT_FALSE(std::filesystem::exists(folder.In("x.png")));
}

TEST(CommandLineTest, ListOfSomethingElseIsAProblem)
{
    PackFolder const folder(Bytes(8192, 0xFF));
    auto const result = Inspect({ "list", folder.Path() });
    EXPECT_EQ(result._status, 1);
    EXPECT_THAT(result._out, HasSubstr("problem: not a pack"));
}

TEST(CommandLineTest, RenderNeedsAnOutput)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    EXPECT_EQ(Inspect({ "render", folder.Path() })._err,
        UsageText("packinspect render", "the output file is missing: give it with -o FILE.png"));
    EXPECT_EQ(Inspect({ "render", folder.Path(), "--output=" })._status, 2);
    EXPECT_EQ(Inspect({ "render", "-o", "x.png" })._err,
        UsageText("packinspect render", "the pack file is missing"));
}

TEST(CommandLineTest, RenderWritesThePng)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const png = folder.In("sheet.png");
    auto const result = Inspect({ "render", folder.Path(), "-o", png });
    EXPECT_EQ(result._status, 0) << result._err;
    EXPECT_EQ(result._out, "wrote " + png + " (13 images, 1040x584 pixels)\n");
    QImage const image(QString::fromStdString(png));
    EXPECT_EQ(image.size(), QSize(1040, 584));
}

TEST(CommandLineTest, RenderReportsImagesPastTheEnd)
{
    auto bytes = BuildPack(WorkedExample());
    bytes.resize(3 * 4096);
    PackFolder const folder(bytes);
    auto const result = Inspect({ "render", folder.Path(), "-o", folder.In("sheet.png") });
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._err, "packinspect render: the image Screen0 lies past the end of the file\n");
}

TEST(CommandLineTest, RenderRefusesWhatIsNotAPack)
{
    PackFolder const folder(Bytes(4096, 0));
    auto const result = Inspect({ "render", folder.Path(), "-o", folder.In("sheet.png") });
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._err, "packinspect render: " + folder.Path() + " is not a pack\n");
}

TEST(CommandLineTest, RenderReportsAnOutputItCannotWrite)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const png = folder.In("missing-folder/sheet.png");
    auto const result = Inspect({ "render", folder.Path(), "-o", png });
    EXPECT_EQ(result._status, 2);
    EXPECT_EQ(result._err, "packinspect render: cannot write " + png + "\n");
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

TEST(CommandLineTest, ExtractNeedsOnePackAndAFolder)
{
    EXPECT_EQ(Inspect({ "extract", "-o", "out" })._err,
        UsageText("packinspect extract", "the pack file is missing"));
    EXPECT_EQ(Inspect({ "extract", "a", "b", "-o", "out" })._err,
        UsageText("packinspect extract", "one pack file at a time"));
    auto const noFolder = Inspect({ "extract", "oled.pack" });
    EXPECT_EQ(noFolder._status, 2);
    EXPECT_EQ(
        noFolder._err, UsageText("packinspect extract", "the output folder is missing: give it with -o DIR"));
    EXPECT_EQ(Inspect({ "extract", "oled.pack", "--output" })._err,
        UsageText("packinspect extract", "option '--output' needs a value"));
    EXPECT_EQ(Inspect({ "extract", "--icon=0x1", "oled.pack", "-o", "out" })._err,
        UsageText("packinspect extract", "a size is WxH, two numbers from 1 to 65535: '0x1' is not"));
}

TEST(CommandLineTest, ExtractWritesTheTreeAndPrintsTheRebuild)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const out = folder.In("tree");
    auto const result = Inspect({ "extract", folder.Path(), "--output", out });
    EXPECT_EQ(result._status, 0) << result._err;
    EXPECT_EQ(result._out,
        "wrote 12 icons and 1 screens to " + out + "/bmp\nrebuild the pack in " + out
            + " with (also in rebuild.sh):\npackager version 1.2.3.4 sector 12\n");
    EXPECT_EQ(ReadText(folder.In("tree/bmp/screens/list.txt")), "Screen0.bmp\n");
    EXPECT_TRUE(std::filesystem::exists(folder.In("tree/bmp/icons/Icon11.bmp")));
}

TEST(CommandLineTest, ExtractRefusesAFolderThatIsNotEmptyUnlessForced)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const out = folder.In("tree");
    WriteFile(folder.In("tree/notes.txt"), "mine\n");
    auto const refused = Inspect({ "extract", folder.Path(), "-o", out });
    EXPECT_EQ(refused._status, 1);
    EXPECT_EQ(refused._err, "packinspect extract: " + out + " is not empty; give --force to write into it\n");
    EXPECT_FALSE(std::filesystem::exists(folder.In("tree/bmp")));

    auto const forced = Inspect({ "extract", "--force", folder.Path(), "-o", out });
    EXPECT_EQ(forced._status, 0) << forced._err;
    EXPECT_TRUE(std::filesystem::exists(folder.In("tree/bmp/icons/list.txt")));
    EXPECT_EQ(ReadText(folder.In("tree/notes.txt")), "mine\n");
}

TEST(CommandLineTest, ExtractRefusesNamesBeforeWritingAnything)
{
    struct Case {
        std::vector<std::string> _names;
        std::string _message;
    };
    std::vector<std::string> twice { "Play", "Stop", "Play" };
    std::vector<std::string> slash { "Play", "icons/Stop", "Next" };
    std::vector<std::string> blank { "Play", "", "Next" };
    Case const cases[] = { { twice, "two images are named Play: their files would be one" },
        { slash, "the image name 'icons/Stop' cannot be a file name: it holds '/' or a NUL byte" },
        { blank, "an image has no name" } };
    for (auto const& [names, message] : cases) {
        TestSupport::PackContents contents;
        for (uint8_t k = 0; k < 3; ++k)
            contents._icons.push_back(Pattern(384, k));
        contents._names = names;
        PackFolder const folder(BuildPack(contents));
        auto const result = Inspect({ "extract", folder.Path(), "-o", folder.In("tree") });
        EXPECT_EQ(result._status, 1) << message;
        EXPECT_EQ(result._err, "packinspect extract: " + folder.Path() + ": " + message + "\n");
        EXPECT_FALSE(std::filesystem::exists(folder.In("tree"))) << message;
    }
}

TEST(CommandLineTest, ExtractRefusesWrongSizesWithTheMessageOfList)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    auto const extract = Inspect({ "extract", "--icon=16x16", folder.Path(), "-o", folder.In("tree") });
    auto const list = Inspect({ "list", "--icon=16x16", folder.Path() });
    std::string const message
        = "the geometry --icon 16x16 --screen 256x64 lays 4 sectors out, the file holds 5: "
          "the geometry is probably not the pack's";
    EXPECT_EQ(extract._status, 1);
    EXPECT_EQ(extract._err, "packinspect extract: " + folder.Path() + ": " + message + "\n");
    EXPECT_THAT(list._out, HasSubstr("problem: " + message + "\n"));
    EXPECT_FALSE(std::filesystem::exists(folder.In("tree")));
}

TEST(CommandLineTest, ExtractRefusesWhatIsNotAPack)
{
    PackFolder const folder(Bytes(8192, 0));
    auto const result = Inspect({ "extract", folder.Path(), "-o", folder.In("tree") });
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._err,
        "packinspect extract: " + folder.Path()
            + ": not a pack: no header sector with the magic \"ZAR\" and the format word 0.5.1.0\n");
}

TEST(CommandLineTest, ExtractAndDiffRefuseTruncatedAndLyingPacks)
{
    auto const good = BuildPack(WorkedExample());
    auto truncated = good;
    truncated.resize(3 * 4096 + 100);
    auto lying = good;
    lying[16] = 0xFF; // an icon count of 255, far more than the file holds
    lying[17] = 0xFF;
    PackFolder const sound(good);
    for (auto const& bytes : { truncated, lying }) {
        PackFolder const folder(bytes);
        auto const extract = Inspect({ "extract", folder.Path(), "-o", folder.In("tree") });
        EXPECT_EQ(extract._status, 1);
        EXPECT_THAT(extract._err, HasSubstr(": the geometry is probably not the pack's\n"));
        EXPECT_FALSE(std::filesystem::exists(folder.In("tree")));
        auto const diff = Inspect({ "diff", sound.Path(), folder.Path() });
        EXPECT_EQ(diff._status, 2);
        EXPECT_THAT(diff._err, HasSubstr(": the geometry is probably not the pack's\n"));
    }
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

TEST(CommandLineTest, DiffNeedsTwoPacks)
{
    for (std::vector<std::string> const& arguments :
        { std::vector<std::string> { "diff", "a" }, std::vector<std::string> { "diff", "a", "b", "c" } }) {
        auto const result = Inspect(arguments);
        EXPECT_EQ(result._status, 2);
        EXPECT_EQ(result._err,
            UsageText("packinspect diff", "two pack files are needed, the old one and the new one"));
    }
    EXPECT_EQ(Inspect({ "diff", "a", "b", "--png=" })._err,
        UsageText("packinspect diff", "the PNG file name is empty"));
}

TEST(CommandLineTest, DiffExitsLikeCmp)
{
    auto bytes = BuildPack(WorkedExample());
    PackFolder const oldFolder(bytes);
    PackFolder const same(bytes);
    auto const equal = Inspect({ "diff", oldFolder.Path(), same.Path() });
    EXPECT_EQ(equal._status, 0);
    EXPECT_EQ(equal._out, "old " + oldFolder.Path() + "\nnew " + same.Path() + "\nthe packs are equal\n");

    auto contents = WorkedExample();
    contents._version = 0x01020305;
    PackFolder const newer(BuildPack(contents));
    auto const differ = Inspect({ "diff", oldFolder.Path(), newer.Path() });
    EXPECT_EQ(differ._status, 1);
    EXPECT_THAT(differ._out, HasSubstr("header   version 1.2.3.4 -> 1.2.3.5\n"));

    PackFolder const notAPack(Bytes(4096, 0));
    auto const trouble = Inspect({ "diff", oldFolder.Path(), notAPack.Path() });
    EXPECT_EQ(trouble._status, 2);
    EXPECT_EQ(trouble._err, "packinspect diff: " + notAPack.Path() + " is not a pack\n");

    // Both packs are checked, so that the one command names every file that does not fit.
    auto const wrongSize = Inspect({ "diff", "--icon", "16x16", oldFolder.Path(), same.Path() });
    EXPECT_EQ(wrongSize._status, 2);
    std::string const message
        = ": the geometry --icon 16x16 --screen 256x64 lays 4 sectors out, the file holds 5: "
          "the geometry is probably not the pack's\n";
    EXPECT_EQ(wrongSize._err,
        "packinspect diff: " + oldFolder.Path() + message + "packinspect diff: " + same.Path() + message);
}

TEST(CommandLineTest, DiffDrawsTheChangedImages)
{
    auto contents = WorkedExample();
    PackFolder const oldFolder(BuildPack(contents));
    contents._icons[2][0] ^= 0xF0; // the top left pixel of Icon2, from one level to its complement
    PackFolder const newFolder(BuildPack(contents));
    std::string const png = newFolder.In("diff.png");
    auto const result = Inspect({ "diff", oldFolder.Path(), newFolder.Path(), "--png", png });
    EXPECT_EQ(result._status, 1) << result._err;
    EXPECT_THAT(result._out, HasSubstr("changed  icon    Icon2  (sector 12 offset 768)\n"));
    EXPECT_THAT(result._out, testing::EndsWith("wrote " + png + "\n"));
    QImage const image(QString::fromStdString(png));
    ASSERT_FALSE(image.isNull());
    int const top = ContactSheet::kTitleHeight + ContactSheet::kMargin;
    int const panel = 32 * ContactSheet::kScale + ContactSheet::kMargin;
    uint8_t const oldLevel = static_cast<uint8_t>(BuildPack(WorkedExample())[4096 + 768] >> 4);
    auto const pixel = [&](int panelIndex, int x) {
        return image.pixel(
            ContactSheet::kMargin + panelIndex * panel + x * ContactSheet::kScale + 1, top + 1);
    };
    EXPECT_EQ(pixel(0, 0), ContactSheet::Grey(oldLevel));
    EXPECT_EQ(pixel(1, 0), ContactSheet::Grey(static_cast<uint8_t>(oldLevel ^ 0x0F)));
    EXPECT_EQ(pixel(2, 0), DiffSheet::DifferenceColour(oldLevel, static_cast<uint8_t>(oldLevel ^ 0x0F)));
    EXPECT_EQ(pixel(2, 1), DiffSheet::kUnchanged);
}

TEST(CommandLineTest, DiffTakesAnIconThatBecameAScreenAsRemovedAndAdded)
{
    // packager makes an image an icon or a screen by its size: Big grew from one to the other, so its
    // old and new pixels have other dimensions and are not compared, nor drawn one over the other.
    PackContents before;
    before._icons = { Pattern(384, 5), Pattern(384, 1) };
    before._screens = { Pattern(8192, 3) };
    before._names = { "Big", "Other", "Home" };
    PackContents after;
    after._icons = { Pattern(384, 1) };
    after._screens = { Pattern(8192, 9), Pattern(8192, 3) };
    after._names = { "Other", "Big", "Home" };
    PackFolder const oldFolder(BuildPack(before));
    PackFolder const newFolder(BuildPack(after));
    std::string const png = newFolder.In("diff.png");
    auto const result = Inspect({ "diff", oldFolder.Path(), newFolder.Path(), "--png", png });
    EXPECT_EQ(result._err, "");
    EXPECT_EQ(result._status, 1);
    EXPECT_EQ(result._out,
        "old " + oldFolder.Path() + "\nnew " + newFolder.Path()
            + "\nremoved  icon    Big  (was at sector 12 offset 0, value 100)\n"
              "moved    icon    Other  (sector 12 offset 384 -> sector 12 offset 0)\n"
              "moved    screen  Home  (sector 247 offset 0 -> sector 249 offset 0)\n"
              "added    screen  Big  (sector 247 offset 0, value 0)\n"
              "header   icons 2 -> 1\n"
              "header   screens 1 -> 2\n"
              "flash    sectors 12 247 248 249 250 and the header sector: 6 sectors, 24576 bytes\n"
              "wrote "
            + png + "\n");
    // No image changed, so the sheet holds only its title.
    QImage const image(QString::fromStdString(png));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.height(), ContactSheet::kTitleHeight + ContactSheet::kMargin);
}

TEST(CommandLineTest, DiffReportsAPngItCannotWrite)
{
    PackFolder const folder(BuildPack(WorkedExample()));
    std::string const png = folder.In("missing-folder/diff.png");
    auto const result = Inspect({ "diff", folder.Path(), folder.Path(), "--png", png });
    EXPECT_EQ(result._status, 2);
    EXPECT_EQ(result._err, "packinspect diff: cannot write " + png + "\n");
}

TEST(CommandLineTest, CheckRefusesABadSectorAndTwoFolders)
{
    for (char const* sector : { "--sector=abc", "--sector=-1", "--sector=", "--sector=12x" }) {
        auto const result = Inspect({ "check", sector });
        EXPECT_EQ(result._status, 2) << sector;
        EXPECT_THAT(result._err, StartsWith("packinspect check: the sector '")) << sector;
    }
    EXPECT_EQ(Inspect({ "check", "a", "b" })._err, UsageText("packinspect check", "one bmp folder at most"));
}

TEST(CommandLineTest, CheckReportsFailuresInItsExitStatus)
{
    ScratchFolder folder;
    WriteFile(folder / "bmp/icons/Play.bmp", Bmp4(32, 24, AscendingGreys(), Ramp(32, 24, 0)));
    WriteFile(folder / "bmp/icons/list.txt", "Play\n");
    auto const sound = Inspect({ "check", (folder / "bmp").string() });
    EXPECT_EQ(sound._status, 0) << sound._out;
    EXPECT_THAT(sound._out, testing::EndsWith("result: 0 failures, 0 warnings\n"));

    WriteFile(folder / "bmp/icons/list.txt", "Play\nMissing\n");
    auto const failing = Inspect({ "check", "--sector", "20", (folder / "bmp").string() });
    EXPECT_EQ(failing._status, 1);
    EXPECT_THAT(failing._out, HasSubstr("FAIL icon index 3, name Missing"));
    EXPECT_THAT(failing._out, HasSubstr("0.6.0.0, 1 icons at sector 20"));
}

// End to end: the tools as a user runs them, on the project's example resources.

TEST(EndToEndTest, VerifyPassesWhatPackagerWrote)
{
    ExampleRun const run;
    ASSERT_EQ(run.Packager().exitCode, 0) << run.Packager().output;
    auto const result = run.Inspect("verify oled.pack");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, testing::EndsWith("verdict: OK, 8 sectors match their CRC\n"));
    // Every CRC packager printed is one the verifier found stored and recomputed.
    std::smatch crcLine;
    ASSERT_TRUE(std::regex_search(run.Packager().output, crcLine, std::regex("crc:([0-9A-F ]+)")));
    std::istringstream crcs(crcLine[1]);
    for (std::string crc; crcs >> crc;)
        EXPECT_THAT(result.output, HasSubstr(crc + "      " + crc + "  OK\n"));
}

TEST(EndToEndTest, VerifyFailsOnCorruptedCopies)
{
    ExampleRun const run;
    auto const good = ReadBytes(run.Pack());
    struct Damage {
        char const* _what;
        std::size_t _offset;
        char const* _expected;
    };
    // File sectors 1 and 2 hold icons, 3 to 8 screens; the header maps them to 12, 13 and 247 to 252.
    Damage const damages[] = { { "first icon sector", 1 * 4096 + 10, "    12     1" },
        { "icon padding", 2 * 4096 + 4000, "    13     2" },
        { "first screen sector", 3 * 4096, "   247     3" },
        { "last screen sector", 9 * 4096 - 1, "   252     8" },
        { "stored CRC", 24 + 2 * 249, "   249     5" } };
    for (auto const& damage : damages) {
        auto bytes = good;
        bytes[damage._offset] ^= 0x20;
        WriteFile(run.Folder() / "damaged.pack", bytes);
        auto const result = run.Inspect("verify damaged.pack");
        EXPECT_EQ(result.exitCode, 1) << damage._what;
        EXPECT_THAT(result.output,
            testing::ContainsRegex(std::string(damage._expected) + " +[0-9A-F]{4} +[0-9A-F]{4}  BAD"))
            << damage._what;
        EXPECT_THAT(result.output, testing::EndsWith("verdict: BAD, 1 problem\n")) << damage._what;
    }

    auto truncated = good;
    truncated.resize(good.size() - 5000);
    WriteFile(run.Folder() / "truncated.pack", truncated);
    auto const cut = run.Inspect("verify truncated.pack");
    EXPECT_EQ(cut.exitCode, 1);
    EXPECT_THAT(cut.output, HasSubstr("BAD (cut short: 3192 of 4096 bytes)"));
    EXPECT_THAT(cut.output, HasSubstr("BAD (missing from the file)"));

    auto wrongMagic = good;
    wrongMagic[2] = 'Q';
    WriteFile(run.Folder() / "magic.pack", wrongMagic);
    auto const magic = run.Inspect("verify magic.pack");
    EXPECT_EQ(magic.exitCode, 1);
    EXPECT_THAT(magic.output, HasSubstr("problem: wrong magic 0051415A"));
}

TEST(EndToEndTest, AFileThatCannotBeReadExitsWithTwo)
{
    ExampleRun const run;
    auto const result = run.Inspect("verify nothing.pack");
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.output, "packinspect: Cannot open nothing.pack\n");
    EXPECT_EQ(run.Inspect("").exitCode, 2);
}

TEST(EndToEndTest, ListShowsWhatPackagerWrote)
{
    ExampleRun const run;
    auto const listing = run.Inspect("list oled.pack");
    ASSERT_EQ(listing.exitCode, 0) << listing.output;
    auto const listed = ListedValues(listing.output);
    EXPECT_EQ(listed.at("icon"), Enumerators(ReadText(run.Folder() / "Icons.h")));
    EXPECT_EQ(listed.at("screen"), Enumerators(ReadText(run.Folder() / "Screens.h")));
    EXPECT_EQ(listed.at("icon").size(), 12u);
    EXPECT_EQ(listed.at("screen").size(), 3u);

    // packager's summary counts the same sectors and bytes as the listing's store line.
    std::smatch summary;
    ASSERT_TRUE(std::regex_search(run.Packager().output, summary,
        std::regex(R"(^1\.2\.3\.4, 12 icons at sector 12, 3 screens, (\d+) sectors, (\d+) bytes)")));
    EXPECT_THAT(listing.output,
        HasSubstr(
            "store         " + summary[1].str() + " of 256 sectors used (" + summary[2].str() + " bytes)"));
    EXPECT_THAT(listing.output, HasSubstr("version       1.2.3.4\n"));
}

TEST(EndToEndTest, RenderDrawsTheDecodedLevels)
{
    ExampleRun const run;
    auto const result = run.Inspect("render oled.pack -o sheet.png");
    ASSERT_EQ(result.exitCode, 0) << result.output;
    QImage const image(QString::fromStdString((run.Folder() / "sheet.png").string()));
    ASSERT_FALSE(image.isNull());

    auto const bytes = ReadBytes(run.Pack());
    PackFile const pack(bytes);
    auto const sheet = ContactSheet::Lay(
        pack, PackLayout::Compute(pack.Header(), ImageGeometry(32, 24), ImageGeometry(256, 64)));
    ASSERT_EQ(sheet.Cells().size(), 15u);
    for (auto const& cell : sheet.Cells()) {
        auto const& geometry = cell._image._geometry;
        int mismatches = 0;
        for (uint32_t y = 0; y < geometry.Height(); ++y)
            for (uint32_t x = 0; x < geometry.Width(); ++x) {
                uint8_t const byte = bytes[cell._image.FileOffset() + y * geometry.Stride() + x / 2];
                int const grey = 17 * (x % 2 == 0 ? byte >> 4 : byte & 0x0F);
                // Check the middle of each 4 x 4 block.
                QRgb const shown = image.pixel(cell._pixels.left() + static_cast<int>(x) * 4 + 2,
                    cell._pixels.top() + static_cast<int>(y) * 4 + 1);
                mismatches += shown != qRgb(grey, grey, grey);
            }
        EXPECT_EQ(mismatches, 0) << cell._image._name;
    }
}

TEST(EndToEndTest, ExtractThenPackagerRebuildsTheExample)
{
    ExampleRun const run;
    ASSERT_EQ(run.Packager().exitCode, 0) << run.Packager().output;
    auto const extract = run.Inspect("extract oled.pack -o rebuilt");
    ASSERT_EQ(extract.exitCode, 0) << extract.output;
    std::smatch command;
    ASSERT_TRUE(std::regex_search(
        extract.output, command, std::regex("\npackager (version [0-9.]+ sector [0-9]+)\n")));
    auto const rebuild
        = RunShellCommand(ShellQuoted(PackagerPath()) + " " + command[1].str(), run.Folder() / "rebuilt");
    EXPECT_EQ(rebuild.output, run.Packager().output);
    for (char const* file :
        { "oled.pack", "Icons.h", "Icons.py", "commands.py", "IconsHelper.cpp", "Screens.h", "Screens.py" })
        EXPECT_TRUE(ReadBytes(run.Folder() / "rebuilt" / file) == ReadBytes(run.Folder() / file)) << file;

    auto const same = run.Inspect("diff oled.pack rebuilt/oled.pack");
    EXPECT_EQ(same.exitCode, 0) << same.output;
    EXPECT_THAT(same.output, testing::EndsWith("the packs are equal\n"));
}

TEST(EndToEndTest, CheckPassesTheExamples)
{
    ExampleRun const run;
    auto const result = run.Inspect("check");
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output,
        HasSubstr("packing every image that loads prints:\n  0.6.0.0, 12 icons at sector 12, 3 screens"));
    EXPECT_THAT(result.output, testing::EndsWith("result: 0 failures, 0 warnings\n"));
}

TEST(EndToEndTest, CheckLoadsQtImagesInTheBuildTree)
{
    // The Qt image module is found from the build tree's packinspect as from its packager.
    ScratchFolder folder;
    std::filesystem::copy(std::string(PACKAGER_SOURCE_DIR) + "/tests/data/released-outputs/qt-tree/bmp",
        folder / "bmp", std::filesystem::copy_options::recursive);
    auto const result = RunShellCommand(
        "env -u PACKAGER_QT_MODULE_DIR " + ShellQuoted(PackinspectPath()) + " check", folder.Path());
    EXPECT_EQ(result.exitCode, 0) << result.output;
    EXPECT_THAT(result.output, testing::Not(HasSubstr("FAIL"))) << result.output;
    EXPECT_THAT(result.output,
        HasSubstr("packing every image that loads prints:\n  0.6.0.0, 2 icons at sector 12, 1 screens"));
    EXPECT_THAT(result.output, HasSubstr("result: 0 failures, "));
}

TEST(EndToEndTest, CheckLogsFailuresToStandardError)
{
    ExampleRun const run;
    WriteFile(run.Folder() / "bmp/icons/list.txt", "Play\nNowhere\n");
    auto const result
        = RunShellCommand(ShellQuoted(PackinspectPath()) + " check bmp 2>err.txt", run.Folder());
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.output, HasSubstr("FAIL icon index 3, name Nowhere, file bmp/icons/Nowhere.bmp: "));
    EXPECT_THAT(ReadText(run.Folder() / "err.txt"), StartsWith("packinspect [20] '"));
}

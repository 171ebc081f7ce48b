#include "CommandLine.h"

#include "ContactSheet.h"
#include "DiffSheet.h"
#include "PackComparison.h"
#include "PackExtractor.h"
#include "PackFile.h"
#include "PackLayout.h"
#include "PackLister.h"
#include "PackVerifier.h"
#include "StreamLoggerFactory.h"
#include "TreeChecker.h"

#include "LoggingManager.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <QBuffer>
#include <QByteArray>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <ostream>
#include <string_view>
#include <utility>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

namespace {

// Qt would take the file name as text and encode it again; written through a stream, its bytes reach
// the file system as they were given, UTF-8 or not.
bool SavePng(QImage const& image, std::string const& path)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return false;
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(png.constData(), png.size());
    stream.close();
    return static_cast<bool>(stream);
}

OptionParser::Option const kHelpOption { "help", 'h', false };
OptionParser::Option const kIconOption { "icon", 0, true };
OptionParser::Option const kScreenOption { "screen", 0, true };
OptionParser::Option const kOutputOption { "output", 'o', true };
char const* const kDefaultIcon = "32x24";
char const* const kDefaultScreen = "256x64";

// A whole decimal number from 0 up that fits the packager's int.
std::optional<int32_t> ParseSector(std::string const& text)
{
    int32_t sector = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), sector);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || sector < 0)
        return std::nullopt;
    return sector;
}

bool IsEmptyOrMissing(std::filesystem::path const& folder)
{
    std::error_code error;
    return !std::filesystem::exists(folder, error) || std::filesystem::is_empty(folder, error);
}

} // namespace

// One subcommand: its options (--help among them), its help text and what runs it.
struct CommandLine::Command {
    char const* _name;
    std::vector<OptionParser::Option> _options;
    std::string (*_help)();
    int (CommandLine::*_run)(OptionParser const& parser);
};

std::vector<CommandLine::Command> const& CommandLine::Commands()
{
    static std::vector<Command> const commands {
        { "verify", { kHelpOption }, &CommandLine::VerifyHelp, &CommandLine::Verify },
        { "list", { kHelpOption, kIconOption, kScreenOption }, &CommandLine::ListHelp, &CommandLine::List },
        { "render", { kHelpOption, kIconOption, kScreenOption, kOutputOption }, &CommandLine::RenderHelp,
            &CommandLine::Render },
        { "check", { kHelpOption, { "sector", 0, true }, { "verbose", 'v', false } }, &CommandLine::CheckHelp,
            &CommandLine::Check },
        { "extract", { kHelpOption, kIconOption, kScreenOption, kOutputOption, { "force", 0, false } },
            &CommandLine::ExtractHelp, &CommandLine::Extract },
        { "diff", { kHelpOption, kIconOption, kScreenOption, { "png", 0, true } }, &CommandLine::DiffHelp,
            &CommandLine::Diff },
    };
    return commands;
}

CommandLine::CommandLine(std::ostream& out, std::ostream& err)
    : _out(out)
    , _err(err)
{
}

int CommandLine::Run(std::vector<std::string> const& arguments)
{
    if (arguments.empty())
        return UsageError("", "a command is needed");
    std::string const& name = arguments[0];
    if (name == "-h" || name == "--help") {
        _out << MainHelp();
        return kFine;
    }
    if (name == "--version") {
        _out << "packinspect " << PACKINSPECT_VERSION << '\n';
        return kFine;
    }
    for (auto const& command : Commands())
        if (name == command._name)
            return RunCommand(command, std::vector<std::string>(arguments.begin() + 1, arguments.end()));
    return UsageError("", "unknown command '" + name + "'");
}

int CommandLine::RunCommand(Command const& command, std::vector<std::string> const& arguments)
{
    OptionParser parser(command._options);
    if (!parser.Parse(arguments))
        return UsageError(command._name, parser.Error());
    if (parser.Has("help")) {
        _out << command._help();
        return kFine;
    }
    return (this->*command._run)(parser);
}

int CommandLine::Verify(OptionParser const& parser)
{
    auto const path = SinglePack("verify", parser);
    if (!path)
        return kUsage;
    auto const report = PackVerifier::Check(PackFile::Load(*path));
    _out << *path << '\n';
    PackVerifier::Print(report, _out);
    return report.ProblemCount() == 0 ? kFine : kProblemsFound;
}

int CommandLine::List(OptionParser const& parser)
{
    auto const pack = PackArgumentsOf("list", parser);
    if (!pack)
        return kUsage;
    _out << pack->_path << '\n';
    return PackLister::List(PackFile::Load(pack->_path), pack->_icon, pack->_screen, _out) == 0
        ? kFine
        : kProblemsFound;
}

int CommandLine::Render(OptionParser const& parser)
{
    auto const arguments = PackArgumentsOf("render", parser);
    if (!arguments)
        return kUsage;
    auto const output = parser.Value("output");
    if (!output || output->empty())
        return UsageError("render", "the output file is missing: give it with -o FILE.png");

    std::string const& path = arguments->_path;
    PackFile const pack = PackFile::Load(path);
    if (!pack.IsPack()) {
        _err << "packinspect render: " << path << " is not a pack\n";
        return kProblemsFound;
    }
    PackHeader const& header = pack.Header();
    auto const sheet
        = ContactSheet::Lay(pack, PackLayout::Compute(header, arguments->_icon, arguments->_screen));
    std::string const title = path + "  version " + PackLister::VersionText(header._version) + ", "
        + std::to_string(header._iconCount) + " icons at sector " + std::to_string(header._firstSector) + ", "
        + std::to_string(header._screenCount) + " screens";
    if (!SavePng(sheet.Render(pack, title), *output)) {
        _err << "packinspect render: cannot write " << *output << '\n';
        return kUsage;
    }
    auto const missing = sheet.MissingImages();
    for (auto const& name : missing)
        _err << "packinspect render: the image " << name << " lies past the end of the file\n";
    _out << "wrote " << *output << " (" << sheet.Cells().size() << " images, " << sheet.Size().width() << "x"
         << sheet.Size().height() << " pixels)\n";
    return missing.empty() ? kFine : kProblemsFound;
}

int CommandLine::Check(OptionParser const& parser)
{
    if (parser.Operands().size() > 1)
        return UsageError("check", "one bmp folder at most");
    std::string const root = parser.Operands().empty() ? "bmp/" : parser.Operands()[0];
    std::string const sectorText = parser.Value("sector").value_or(std::to_string(kDefaultSector));
    auto const sector = ParseSector(sectorText);
    if (!sector)
        return UsageError("check", "the sector '" + sectorText + "' is not a number from 0 up");

    // The registry is process-wide, so its logger writes to the process's standard error.
    zar::logging::LoggingManager::SetFactory(std::make_unique<StreamLoggerFactory>(std::cerr));
    TreeChecker checker(
        root, *sector, zar::logging::LoggingManager::GetLoggerPtr("packinspect"), parser.Has("verbose"));
    checker.Run();
    checker.Print(_out);
    return checker.FailureCount() == 0 ? kFine : kProblemsFound;
}

int CommandLine::Extract(OptionParser const& parser)
{
    auto const arguments = PackArgumentsOf("extract", parser);
    if (!arguments)
        return kUsage;
    auto const output = parser.Value("output");
    if (!output || output->empty())
        return UsageError("extract", "the output folder is missing: give it with -o DIR");

    PackFile const pack = PackFile::Load(arguments->_path);
    PackExtractor const extractor(pack,
        pack.IsPack() ? PackLayout::Compute(pack.Header(), arguments->_icon, arguments->_screen)
                      : PackLayout());
    if (auto const refusal = extractor.Refusal()) {
        _err << "packinspect extract: " << arguments->_path << ": " << *refusal << '\n';
        return kProblemsFound;
    }
    if (!parser.Has("force") && !IsEmptyOrMissing(*output)) {
        _err << "packinspect extract: " << *output << " is not empty; give --force to write into it\n";
        return kProblemsFound;
    }
    extractor.Write(*output);
    auto const& header = pack.Header();
    _out << "wrote " << header._iconCount << " icons and " << header._screenCount << " screens to "
         << (std::filesystem::path(*output) / "bmp").string() << "\nrebuild the pack in " << *output
         << " with (also in " << PackExtractor::kScriptName << "):\n"
         << extractor.RebuildCommand() << '\n';
    return kFine;
}

int CommandLine::Diff(OptionParser const& parser)
{
    if (parser.Operands().size() != 2)
        return UsageError("diff", "two pack files are needed, the old one and the new one");
    ImageGeometry icon(1, 1);
    ImageGeometry screen(1, 1);
    if (!ParseGeometries("diff", parser, icon, screen))
        return kUsage;
    auto const png = parser.Value("png");
    if (png && png->empty())
        return UsageError("diff", "the PNG file name is empty");

    std::string const& oldPath = parser.Operands()[0];
    std::string const& newPath = parser.Operands()[1];
    PackFile const oldPack = PackFile::Load(oldPath);
    PackFile const newPack = PackFile::Load(newPath);
    auto const oldLayout = DiffLayout(oldPath, oldPack, icon, screen);
    auto const newLayout = DiffLayout(newPath, newPack, icon, screen);
    if (!oldLayout || !newLayout)
        return kUsage;
    auto const comparison = PackComparison::Compare(oldPack, *oldLayout, newPack, *newLayout);
    _out << "old " << oldPath << "\nnew " << newPath << '\n';
    comparison.Print(_out);
    if (png) {
        std::string const title = "old " + oldPath + "  |  new " + newPath + "  |  difference";
        if (!SavePng(DiffSheet::Render(comparison, oldPack, newPack, title), *png)) {
            _err << "packinspect diff: cannot write " << *png << '\n';
            return kUsage;
        }
        _out << "wrote " << *png << '\n';
    }
    return comparison.IsEqual() ? kFine : kProblemsFound;
}

std::optional<PackLayout> CommandLine::DiffLayout(
    std::string const& path, PackFile const& pack, ImageGeometry const& icon, ImageGeometry const& screen)
{
    if (!pack.IsPack()) {
        _err << "packinspect diff: " << path << " is not a pack\n";
        return std::nullopt;
    }
    auto layout = PackLayout::Compute(pack.Header(), icon, screen);
    if (auto const problem = PackLister::GeometryProblem(pack, layout, icon, screen)) {
        _err << "packinspect diff: " << path << ": " << *problem << '\n';
        return std::nullopt;
    }
    return layout;
}

bool CommandLine::ParseGeometries(
    std::string const& command, OptionParser const& parser, ImageGeometry& icon, ImageGeometry& screen)
{
    std::string const iconText = parser.Value("icon").value_or(kDefaultIcon);
    std::string const screenText = parser.Value("screen").value_or(kDefaultScreen);
    auto const parsedIcon = ImageGeometry::Parse(iconText);
    auto const parsedScreen = ImageGeometry::Parse(screenText);
    if (!parsedIcon || !parsedScreen) {
        UsageError(command,
            "a size is WxH, two numbers from 1 to 65535: '" + (parsedIcon ? screenText : iconText)
                + "' is not");
        return false;
    }
    if (parsedIcon->Size() >= PackFormat::kScreenThreshold) {
        UsageError(command,
            "an icon of " + iconText + " takes " + std::to_string(parsedIcon->Size())
                + " bytes; icons are below " + std::to_string(PackFormat::kScreenThreshold) + " bytes");
        return false;
    }
    if (parsedScreen->Size() < PackFormat::kScreenThreshold
        || parsedScreen->Size() > PackFormat::kMaxFileSize) {
        UsageError(command,
            "a screen of " + screenText + " takes " + std::to_string(parsedScreen->Size())
                + " bytes; screens take from " + std::to_string(PackFormat::kScreenThreshold)
                + " bytes to the whole store");
        return false;
    }
    icon = *parsedIcon;
    screen = *parsedScreen;
    return true;
}

std::optional<CommandLine::PackArguments> CommandLine::PackArgumentsOf(
    std::string const& command, OptionParser const& parser)
{
    auto const path = SinglePack(command, parser);
    PackArguments arguments { path.value_or(""), ImageGeometry(1, 1), ImageGeometry(1, 1) };
    if (!path || !ParseGeometries(command, parser, arguments._icon, arguments._screen))
        return std::nullopt;
    return arguments;
}

std::optional<std::string> CommandLine::SinglePack(std::string const& command, OptionParser const& parser)
{
    if (parser.Operands().size() != 1) {
        UsageError(
            command, parser.Operands().empty() ? "the pack file is missing" : "one pack file at a time");
        return std::nullopt;
    }
    return parser.Operands()[0];
}

int CommandLine::UsageError(std::string const& command, std::string const& message)
{
    std::string const name = command.empty() ? "packinspect" : "packinspect " + command;
    _err << name << ": " << message << "\nTry '" << name << " --help' for more information.\n";
    return kUsage;
}

std::string CommandLine::MainHelp()
{
    return "Usage: packinspect COMMAND [OPTION]... [ARGUMENT]...\n"
           "Inspect the resource packs that packager writes, and the bmp trees it reads.\n"
           "\n"
           "Commands:\n"
           "  verify PACK             check the header, the sectors and every CRC of a pack\n"
           "  list PACK               show the header and a table of every image of a pack\n"
           "  render PACK -o FILE     draw every image of a pack into one PNG contact sheet\n"
           "  check [ROOT]            pack a bmp tree (default bmp/) as packager would and\n"
           "                          report every image that would fail\n"
           "  extract PACK -o DIR     write the bmp tree that packager rebuilds PACK from\n"
           "  diff OLD NEW            show the images, header fields and sectors that differ\n"
           "\n"
           "Options:\n"
           "  -h, --help     show this help and exit\n"
           "      --version  show the version and exit\n"
           "\n"
           "'packinspect COMMAND --help' shows the options of a command.\n"
           "\n"
           "Exit status: 0 if all is well, 1 if problems were found, 2 if the command line\n"
           "is wrong or a file cannot be read (diff: 0 if the packs are equal, 1 if they\n"
           "differ, 2 on trouble).\n";
}

std::string CommandLine::VerifyHelp()
{
    return HelpText(
        "Usage: packinspect verify PACK\n"
        "Check that PACK is a sound pack: the magic and the format word, whole {sector size}-byte\n"
        "sectors, the icon and screen counts against the names area, every CRC entry the\n"
        "format maps (icon sectors at the first sector and on, screen sectors at {first screen sector} and\n"
        "on) against a CRC-16 recomputed from the file, icon sectors below {first screen sector} and the\n"
        "names area within its {names capacity} bytes. Prints one line per sector (target sector,\n"
        "file sector, CRC stored, CRC computed, OK or BAD), the problems and a verdict.\n"
        "\n"
        "  -h, --help  show this help and exit\n"
        "\n"
        "Exit status: 0 if the pack is sound, 1 if problems were found, 2 if the command\n"
        "line is wrong or PACK cannot be read.\n");
}

std::string CommandLine::ListHelp()
{
    return HelpText(
        "Usage: packinspect list [OPTION]... PACK\n"
        "Show the version, first sector and counts of PACK, the sectors and bytes used and\n"
        "free of the {store sectors}-sector store, the use of the names area, and one line per image:\n"
        "kind, enumerator value (icons from (first sector - 2) x {icons per sector}, screens from 0),\n"
        "target sector, offset in that sector and name.\n"
        "\n"
        "The pack does not record image sizes: icons are laid out from --icon, every icon\n"
        "the same size, and screens from --screen.\n"
        "\n"
        "{size options}"
        "  -h, --help          show this help and exit\n"
        "\n"
        "Exit status: 0 if the listing is sound, 1 if PACK is not a pack or the sizes do\n"
        "not fit its sectors, 2 if the command line is wrong or PACK cannot be read.\n");
}

std::string CommandLine::RenderHelp()
{
    return HelpText("Usage: packinspect render [OPTION]... PACK -o FILE.png\n"
                    "Decode every icon and screen of PACK (4 bits per pixel, the left pixel in the\n"
                    "high nibble, rows padded to 4 bytes) and draw them into one PNG contact sheet:\n"
                    "each image four times its size in the display's grey levels (0 black to 15\n"
                    "white), its name and value under it.\n"
                    "\n"
                    "  -o, --output=FILE   the PNG to write (required)\n"
                    "{size options}"
                    "  -h, --help          show this help and exit\n"
                    "\n"
                    "Text is drawn with Qt on its \"minimal\" platform with fonts enabled unless\n"
                    "QT_QPA_PLATFORM says otherwise, so no display is needed.\n"
                    "\n"
                    "Exit status: 0 if every image was drawn, 1 if PACK is not a pack or images lie\n"
                    "past its end, 2 if the command line is wrong or a file cannot be read or written.\n");
}

std::string CommandLine::CheckHelp()
{
    return HelpText("Usage: packinspect check [OPTION]... [ROOT]\n"
                    "Pack the bmp tree ROOT (default bmp/: ROOT/icons/list.txt and\n"
                    "ROOT/screens/list.txt) with packager's own loading and packing code into a\n"
                    "scratch folder, and report every image that would fail, with its index (as\n"
                    "packager numbers it: 2 for the first line of a list), name, file and reason.\n"
                    "Also warns where a 4-bit BMP's palette is neither the ascending nor the\n"
                    "descending 16-level grey ramp, where the names area or the sector space would\n"
                    "overflow, and where two list lines name the same image. Caught exceptions are\n"
                    "logged to standard error.\n"
                    "\n"
                    "      --sector=N  first icon sector, as given to packager (default {default sector})\n"
                    "  -v, --verbose   log the call stack of every caught exception as well\n"
                    "  -h, --help      show this help and exit\n"
                    "\n"
                    "Exit status: 0 if no image fails, 1 if any fails, 2 if the command line is wrong.\n");
}

std::string CommandLine::ExtractHelp()
{
    return HelpText("Usage: packinspect extract [OPTION]... PACK -o DIR\n"
                    "Write the bmp tree that packager rebuilds PACK from: DIR/bmp/icons/ and\n"
                    "DIR/bmp/screens/, each with a list.txt in pack order and one 4-bit BMP per image\n"
                    "named after it (an ordinary uncompressed BMP with the 16-level grey ramp, black\n"
                    "first, that image programs open), and DIR/rebuild.sh. Prints the command that\n"
                    "rebuilds PACK byte for byte, and the same generated sources, when run in DIR:\n"
                    "\n"
                    "  packager version 1.2.3.4 sector 14\n"
                    "\n"
                    "Icons in a pack already carry their frame: packing them again draws the same\n"
                    "frame over the same pixels, so the rebuilt pack is the same. Every image comes\n"
                    "back as a 4-bit BMP, whatever it was drawn in; the pack and the sources do not\n"
                    "depend on that. Not recoverable from a pack: a first sector given to packager\n"
                    "above 65535 (the pack keeps its low 16 bits, the sources the whole number) and\n"
                    "the image sizes, which come from --icon and --screen as for list.\n"
                    "\n"
                    "Refused before anything is written (exit 1): what is not a pack, sizes that do\n"
                    "not fit its sectors, a file cut short of an image's last byte, a name that\n"
                    "cannot be a file name and a list line that gives it back, two images of one\n"
                    "name, images of a width of 8 k + 1 pixels (packager reads such 4-bit BMP rows\n"
                    "4 bytes short), and a DIR that is not empty.\n"
                    "\n"
                    "  -o, --output=DIR    the folder to write (required)\n"
                    "      --force         write into DIR even if it is not empty\n"
                    "{size options}"
                    "  -h, --help          show this help and exit\n"
                    "\n"
                    "Exit status: 0 if the tree was written, 1 if PACK was refused, 2 if the command\n"
                    "line is wrong or a file cannot be read or written.\n");
}

std::string CommandLine::DiffHelp()
{
    return HelpText("Usage: packinspect diff [OPTION]... OLD NEW\n"
                    "Compare two packs by image name. Prints one line per image added, removed,\n"
                    "changed (its pixels differ) or moved (the same pixels at another sector or\n"
                    "offset), then the header fields that changed (version, first sector, counts),\n"
                    "then the target sectors of NEW whose contents differ from OLD's at the same\n"
                    "sector, which are the ones to flash again, and their total in bytes (the header\n"
                    "sector counted when it differs). Prints \"the packs are equal\" when the files\n"
                    "are the same. Both packs are laid out from --icon and --screen. An image that\n"
                    "became a screen or an icon is another image: it is removed and added.\n"
                    "\n"
                    "      --png=FILE      also draw every changed image old | new | difference, four\n"
                    "                      times its size and labelled, into a PNG\n"
                    "{size options}"
                    "  -h, --help          show this help and exit\n"
                    "\n"
                    "Exit status: 0 if the packs are equal, 1 if they differ, 2 on trouble (the\n"
                    "command line is wrong, a file cannot be read or written, a file is not a pack or\n"
                    "the sizes do not fit its sectors), as cmp and diff do.\n");
}

// The help texts name the pack's numbers and the size options by placeholder, so that each reads as
// the text it prints while the numbers come from the format's one definition.
std::string CommandLine::HelpText(std::string text)
{
    std::pair<std::string_view, std::string> const fillIns[] = {
        { "{sector size}", std::to_string(PackFormat::kSectorSize) },
        { "{store sectors}", std::to_string(PackFormat::kStoreSectors) },
        { "{first screen sector}", std::to_string(PackFormat::kFirstScreenSector) },
        { "{names capacity}", std::to_string(PackFormat::kNamesCapacity) },
        { "{icons per sector}", std::to_string(PackFormat::kIconsPerMappedSector) },
        { "{default sector}", std::to_string(kDefaultSector) },
        { "{size options}",
            "      --icon=WxH      icon size in pixels (default " + std::string(kDefaultIcon) + ")\n"
                + "      --screen=WxH    screen size in pixels (default " + std::string(kDefaultScreen)
                + ")\n" },
    };
    for (auto const& [placeholder, value] : fillIns) {
        for (auto at = text.find(placeholder); at != std::string::npos;
             at = text.find(placeholder, at + value.size()))
            text.replace(at, placeholder.size(), value);
    }
    return text;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#include "CommandLine.h"

#include "ContactSheet.h"
#include "PackFile.h"
#include "PackLayout.h"
#include "PackLister.h"
#include "PackVerifier.h"
#include "StreamLoggerFactory.h"
#include "TreeChecker.h"

#include "LoggingManager.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <charconv>
#include <iostream>
#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

namespace {

OptionParser::Option const HelpOption { "help", 'h', false };
OptionParser::Option const IconOption { "icon", 0, true };
OptionParser::Option const ScreenOption { "screen", 0, true };
char const* const DefaultIcon = "32x24";
char const* const DefaultScreen = "256x64";

std::string VersionLine(Zar::Lt::Core::Version32 version)
{
    return std::to_string(version.Major()) + "." + std::to_string(version.Minor()) + "."
        + std::to_string(version.Patch()) + "." + std::to_string(version.Build());
}

// A whole decimal number from 0 up that fits the packager's int.
std::optional<int32_t> ParseSector(std::string const& text)
{
    int32_t sector = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), sector);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || sector < 0)
        return std::nullopt;
    return sector;
}

} // namespace

CommandLine::CommandLine(std::ostream& out, std::ostream& err)
    : _out(out)
    , _err(err)
{
}

int CommandLine::Run(std::vector<std::string> const& arguments)
{
    if (arguments.empty())
        return UsageError("", "a command is needed");
    std::string const& command = arguments[0];
    std::vector<std::string> const rest(arguments.begin() + 1, arguments.end());
    if (command == "-h" || command == "--help") {
        _out << MainHelp();
        return kFine;
    }
    if (command == "--version") {
        _out << "packinspect " << PACKINSPECT_VERSION << '\n';
        return kFine;
    }
    if (command == "verify")
        return Verify(rest);
    if (command == "list")
        return List(rest);
    if (command == "render")
        return Render(rest);
    if (command == "check")
        return Check(rest);
    return UsageError("", "unknown command '" + command + "'");
}

int CommandLine::Verify(std::vector<std::string> const& arguments)
{
    OptionParser parser({ HelpOption });
    if (!ParseOptions("verify", parser, arguments))
        return kUsage;
    if (parser.Has("help")) {
        _out << VerifyHelp();
        return kFine;
    }
    auto const path = SinglePack("verify", parser);
    if (!path)
        return kUsage;
    auto const report = PackVerifier::Check(PackFile::Load(*path));
    _out << *path << '\n';
    PackVerifier::Print(report, _out);
    return report.ProblemCount() == 0 ? kFine : kProblemsFound;
}

int CommandLine::List(std::vector<std::string> const& arguments)
{
    OptionParser parser({ HelpOption, IconOption, ScreenOption });
    if (!ParseOptions("list", parser, arguments))
        return kUsage;
    if (parser.Has("help")) {
        _out << ListHelp();
        return kFine;
    }
    ImageGeometry icon(1, 1);
    ImageGeometry screen(1, 1);
    auto const path = SinglePack("list", parser);
    if (!path || !ParseGeometries("list", parser, icon, screen))
        return kUsage;
    _out << *path << '\n';
    return PackLister::List(PackFile::Load(*path), icon, screen, _out) == 0 ? kFine : kProblemsFound;
}

int CommandLine::Render(std::vector<std::string> const& arguments)
{
    OptionParser parser({ HelpOption, IconOption, ScreenOption, { "output", 'o', true } });
    if (!ParseOptions("render", parser, arguments))
        return kUsage;
    if (parser.Has("help")) {
        _out << RenderHelp();
        return kFine;
    }
    ImageGeometry icon(1, 1);
    ImageGeometry screen(1, 1);
    auto const path = SinglePack("render", parser);
    if (!path || !ParseGeometries("render", parser, icon, screen))
        return kUsage;
    auto const output = parser.Value("output");
    if (!output || output->empty())
        return UsageError("render", "the output file is missing: give it with -o FILE.png");

    PackFile const pack = PackFile::Load(*path);
    if (!pack.HasHeader() || !pack.Header().HasMagic() || !pack.Header().HasKnownFormat()) {
        _err << "packinspect render: " << *path << " is not a pack\n";
        return kProblemsFound;
    }
    PackHeader const& header = pack.Header();
    auto const sheet = ContactSheet::Lay(pack, PackLayout::Compute(header, icon, screen));
    std::string const title = *path + "  version " + VersionLine(header._version) + ", "
        + std::to_string(header._iconCount) + " icons at sector " + std::to_string(header._firstSector) + ", "
        + std::to_string(header._screenCount) + " screens";
    if (!sheet.Render(pack, title).save(QString::fromStdString(*output), "PNG")) {
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

int CommandLine::Check(std::vector<std::string> const& arguments)
{
    OptionParser parser({ HelpOption, { "sector", 0, true }, { "verbose", 'v', false } });
    if (!ParseOptions("check", parser, arguments))
        return kUsage;
    if (parser.Has("help")) {
        _out << CheckHelp();
        return kFine;
    }
    if (parser.Operands().size() > 1)
        return UsageError("check", "one bmp folder at most");
    std::string const root = parser.Operands().empty() ? "bmp/" : parser.Operands()[0];
    std::string const sectorText = parser.Value("sector").value_or("12");
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

bool CommandLine::ParseOptions(
    std::string const& command, OptionParser& parser, std::vector<std::string> const& arguments)
{
    if (parser.Parse(arguments))
        return true;
    UsageError(command, parser.Error());
    return false;
}

bool CommandLine::ParseGeometries(
    std::string const& command, OptionParser const& parser, ImageGeometry& icon, ImageGeometry& screen)
{
    std::string const iconText = parser.Value("icon").value_or(DefaultIcon);
    std::string const screenText = parser.Value("screen").value_or(DefaultScreen);
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

char const* CommandLine::MainHelp()
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
           "\n"
           "Options:\n"
           "  -h, --help     show this help and exit\n"
           "      --version  show the version and exit\n"
           "\n"
           "'packinspect COMMAND --help' shows the options of a command.\n"
           "\n"
           "Exit status: 0 if all is well, 1 if problems were found, 2 if the command line\n"
           "is wrong or a file cannot be read.\n";
}

char const* CommandLine::VerifyHelp()
{
    return "Usage: packinspect verify PACK\n"
           "Check that PACK is a sound pack: the magic and the format word, whole 4096-byte\n"
           "sectors, the icon and screen counts against the names area, every CRC entry the\n"
           "format maps (icon sectors at the first sector and on, screen sectors at 247 and\n"
           "on) against a CRC-16 recomputed from the file, icon sectors below 247 and the\n"
           "names area within its 3552 bytes. Prints one line per sector (target sector,\n"
           "file sector, CRC stored, CRC computed, OK or BAD), the problems and a verdict.\n"
           "\n"
           "  -h, --help  show this help and exit\n"
           "\n"
           "Exit status: 0 if the pack is sound, 1 if problems were found, 2 if the command\n"
           "line is wrong or PACK cannot be read.\n";
}

char const* CommandLine::ListHelp()
{
    return "Usage: packinspect list [OPTION]... PACK\n"
           "Show the version, first sector and counts of PACK, the sectors and bytes used and\n"
           "free of the 256-sector store, the use of the names area, and one line per image:\n"
           "kind, enumerator value (icons from (first sector - 2) x 10, screens from 0),\n"
           "target sector, offset in that sector and name.\n"
           "\n"
           "The pack does not record image sizes: icons are laid out from --icon, every icon\n"
           "the same size, and screens from --screen.\n"
           "\n"
           "      --icon=WxH    icon size in pixels (default 32x24)\n"
           "      --screen=WxH  screen size in pixels (default 256x64)\n"
           "  -h, --help        show this help and exit\n"
           "\n"
           "Exit status: 0 if the listing is sound, 1 if PACK is not a pack or the sizes do\n"
           "not fit its sectors, 2 if the command line is wrong or PACK cannot be read.\n";
}

char const* CommandLine::RenderHelp()
{
    return "Usage: packinspect render [OPTION]... PACK -o FILE.png\n"
           "Decode every icon and screen of PACK (4 bits per pixel, the left pixel in the\n"
           "high nibble, rows padded to 4 bytes) and draw them into one PNG contact sheet:\n"
           "each image four times its size in the display's grey levels (0 black to 15\n"
           "white), its name and value under it.\n"
           "\n"
           "  -o, --output=FILE   the PNG to write (required)\n"
           "      --icon=WxH      icon size in pixels (default 32x24)\n"
           "      --screen=WxH    screen size in pixels (default 256x64)\n"
           "  -h, --help          show this help and exit\n"
           "\n"
           "Text is drawn with Qt on its \"minimal\" platform with fonts enabled unless\n"
           "QT_QPA_PLATFORM says otherwise, so no display is needed.\n"
           "\n"
           "Exit status: 0 if every image was drawn, 1 if PACK is not a pack or images lie\n"
           "past its end, 2 if the command line is wrong or a file cannot be read or written.\n";
}

char const* CommandLine::CheckHelp()
{
    return "Usage: packinspect check [OPTION]... [ROOT]\n"
           "Pack the bmp tree ROOT (default bmp/: ROOT/icons/list.txt and\n"
           "ROOT/screens/list.txt) with packager's own loading and packing code into a\n"
           "scratch folder, and report every image that would fail, with its index (as\n"
           "packager numbers it: 2 for the first line of a list), name, file and reason.\n"
           "Also warns where a 4-bit BMP's palette is neither the ascending nor the\n"
           "descending 16-level grey ramp, where the names area or the sector space would\n"
           "overflow, and where two list lines name the same image. Caught exceptions are\n"
           "logged to standard error.\n"
           "\n"
           "      --sector=N  first icon sector, as given to packager (default 12)\n"
           "  -v, --verbose   log the call stack of every caught exception as well\n"
           "  -h, --help      show this help and exit\n"
           "\n"
           "Exit status: 0 if no image fails, 1 if any fails, 2 if the command line is wrong.\n";
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

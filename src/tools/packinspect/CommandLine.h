#pragma once

#include "ImageGeometry.h"
#include "OptionParser.h"
#include "PackFile.h"
#include "PackLayout.h"

#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The packinspect command line: picks the subcommand, parses its options and runs it.
class CommandLine {
public:
    // The process's exit status: all is well, problems were found, the command line was wrong or a
    // file could not be read. Plain values, as main returns them.
    enum ExitStatus : int { kFine = 0, kProblemsFound = 1, kUsage = 2 };
    // The first icon sector that packager takes when it is given none.
    static constexpr int32_t kDefaultSector = Zar::ResourcesLibrary::Pack::PackFormat::kDefaultFirstSector;

    CommandLine(std::ostream& out, std::ostream& err);

    // arguments: everything after the program's name.
    int Run(std::vector<std::string> const& arguments);

    static std::string MainHelp();
    static std::string VerifyHelp();
    static std::string ListHelp();
    static std::string RenderHelp();
    static std::string CheckHelp();
    static std::string ExtractHelp();
    static std::string DiffHelp();

private:
    struct Command;
    static std::vector<Command> const& Commands();
    int RunCommand(Command const& command, std::vector<std::string> const& arguments);

    int Verify(OptionParser const& parser);
    int List(OptionParser const& parser);
    int Render(OptionParser const& parser);
    int Check(OptionParser const& parser);
    int Extract(OptionParser const& parser);
    int Diff(OptionParser const& parser);

    // The one pack file of a command and the image sizes it is laid out with.
    struct PackArguments {
        std::string _path;
        ImageGeometry _icon;
        ImageGeometry _screen;
    };
    // On a usage error writes it and gives nothing.
    std::optional<PackArguments> PackArgumentsOf(std::string const& command, OptionParser const& parser);
    bool ParseGeometries(
        std::string const& command, OptionParser const& parser, ImageGeometry& icon, ImageGeometry& screen);
    std::optional<std::string> SinglePack(std::string const& command, OptionParser const& parser);
    // The pack's layout for diff; on trouble writes it and gives nothing.
    std::optional<PackLayout> DiffLayout(std::string const& path, PackFile const& pack,
        ImageGeometry const& icon, ImageGeometry const& screen);
    int UsageError(std::string const& command, std::string const& message);
    static std::string HelpText(std::string text);

    std::ostream& _out;
    std::ostream& _err;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

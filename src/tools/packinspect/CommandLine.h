#pragma once

#include "ImageGeometry.h"
#include "OptionParser.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The packinspect command line: picks the subcommand, parses its options and runs it. Exit codes:
// 0 all is well, 1 problems were found, 2 the command line was wrong or a file could not be read.
class CommandLine {
public:
    static constexpr int kFine = 0;
    static constexpr int kProblemsFound = 1;
    static constexpr int kUsage = 2;

    CommandLine(std::ostream& out, std::ostream& err);

    // arguments: everything after the program's name.
    int Run(std::vector<std::string> const& arguments);

    static char const* MainHelp();
    static char const* VerifyHelp();
    static char const* ListHelp();
    static char const* RenderHelp();
    static char const* CheckHelp();

private:
    int Verify(std::vector<std::string> const& arguments);
    int List(std::vector<std::string> const& arguments);
    int Render(std::vector<std::string> const& arguments);
    int Check(std::vector<std::string> const& arguments);

    // Parses the options; on a usage error writes it and returns false.
    bool ParseOptions(
        std::string const& command, OptionParser& parser, std::vector<std::string> const& arguments);
    bool ParseGeometries(
        std::string const& command, OptionParser const& parser, ImageGeometry& icon, ImageGeometry& screen);
    std::optional<std::string> SinglePack(std::string const& command, OptionParser const& parser);
    int UsageError(std::string const& command, std::string const& message);

    std::ostream& _out;
    std::ostream& _err;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#pragma once

#include "Command.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The packinspect command line: picks the command from the command table, parses its options and
// runs it.
class CommandLine {
public:
    using enum ExitStatus;

    CommandLine(std::ostream& out, std::ostream& err);

    // arguments: everything after the program's name.
    int Run(std::vector<std::string> const& arguments);

    // The main help, its command list printed from the command table.
    static std::string MainHelp();
    // Writes "NAME: message" and the line that points to NAME's help; gives kUsage.
    static int UsageError(std::ostream& err, std::string const& name, std::string const& message);

private:
    int RunCommand(Command const& command, std::vector<std::string> const& arguments);

    std::ostream& _out;
    std::ostream& _err;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

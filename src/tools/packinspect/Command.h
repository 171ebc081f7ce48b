#pragma once

#include "OptionParser.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The process's exit status: all is well, problems were found, the command line was wrong or a file
// could not be read. Plain values, as main returns them.
enum ExitStatus : int { kFine = 0, kProblemsFound = 1, kUsage = 2 };

class Invocation;

// The options that several commands take, each spelled once.
struct CommonOptions {
    static OptionParser::Option const kOutput;
    static OptionParser::Option const kForce;
    static OptionParser::Option const kSector;
    static OptionParser::Option const kStrict;
    static OptionParser::Option const kGamma;
    static OptionParser::Option const kGreyTable;

    // The --sector value, or packager's default first sector when it is not given; a usage error and
    // nothing when it is not a whole number from 0 up.
    static std::optional<int32_t> Sector(Invocation& invocation);
};

// One packinspect command, as its row of the command table gives it: the name it is called by, the
// synopsis and one-line summary of the main help, its options (--help is every command's and is not
// listed), its help text and the function that runs it.
struct Command {
    std::string_view _name;
    std::string_view _synopsis;
    // Lines after the first are continued under the first in the main help.
    std::string_view _summary;
    std::vector<OptionParser::Option> _options;
    std::string (*_help)();
    int (*_run)(Invocation& invocation);

    // The help text with the pack's numbers and the size options filled in for their placeholders
    // ("{sector size}", "{size options}", ...), so that a text reads as it prints while each number
    // comes from its one definition.
    static std::string HelpText(std::string text);
};

// One run of a command: its parsed command line and where it writes. Problems and usage errors go
// out through it alone, prefixed with the command's name.
class Invocation {
public:
    Invocation(Command const& command, OptionParser const& options, std::ostream& out, std::ostream& err);

    Command const& Which() const { return _command; }
    OptionParser const& Options() const { return _options; }
    std::vector<std::string> const& Operands() const { return _options.Operands(); }
    std::ostream& Out() { return _out; }

    // "packinspect NAME: message" and the line that points to the command's help; gives kUsage.
    int UsageError(std::string const& message);
    // The option's value when it was given and is not empty; otherwise writes the usage error
    // missing and gives nothing.
    std::optional<std::string> RequiredValue(OptionParser::Option const& option, std::string const& missing);
    // "packinspect NAME: message"; gives status.
    int Problem(std::string const& message, ExitStatus status = kProblemsFound);

private:
    Command const& _command;
    OptionParser const& _options;
    std::ostream& _out;
    std::ostream& _err;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#include "CommandLine.h"

#include "CommandTable.h"

#include <ostream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const kHelpOption { "help", 'h', false };

// The main help's command list: each synopsis in a column of its own, a summary's later lines under
// its first.
std::string CommandList()
{
    constexpr std::size_t kSummaryColumn = 26;
    std::string list;
    for (Command const* command : CommandTable::All()) {
        std::string line = "  " + std::string(command->_synopsis);
        line.resize(std::max(kSummaryColumn, line.size() + 2), ' ');
        std::string_view summary = command->_summary;
        for (auto end = summary.find('\n'); end != std::string_view::npos; end = summary.find('\n')) {
            list += line + std::string(summary.substr(0, end)) + '\n';
            line = std::string(kSummaryColumn, ' ');
            summary.remove_prefix(end + 1);
        }
        list += line + std::string(summary) + '\n';
    }
    return list;
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
        return UsageError(_err, "packinspect", "a command is needed");
    std::string const& name = arguments[0];
    if (name == "-h" || name == "--help") {
        _out << MainHelp();
        return kFine;
    }
    if (name == "--version") {
        _out << "packinspect " << PACKINSPECT_VERSION << '\n';
        return kFine;
    }
    if (Command const* command = CommandTable::Find(name))
        return RunCommand(*command, std::vector<std::string>(arguments.begin() + 1, arguments.end()));
    return UsageError(_err, "packinspect", "unknown command '" + name + "'");
}

int CommandLine::RunCommand(Command const& command, std::vector<std::string> const& arguments)
{
    std::vector<OptionParser::Option> options { kHelpOption };
    options.insert(options.end(), command._options.begin(), command._options.end());
    OptionParser parser(options);
    Invocation invocation(command, parser, _out, _err);
    if (!parser.Parse(arguments))
        return invocation.UsageError(parser.Error());
    if (parser.Has(kHelpOption._long)) {
        _out << command._help();
        return kFine;
    }
    return command._run(invocation);
}

int CommandLine::UsageError(std::ostream& err, std::string const& name, std::string const& message)
{
    err << name << ": " << message << "\nTry '" << name << " --help' for more information.\n";
    return kUsage;
}

std::string CommandLine::MainHelp()
{
    return "Usage: packinspect COMMAND [OPTION]... [ARGUMENT]...\n"
           "Inspect the resource packs that packager writes, and the bmp trees it reads.\n"
           "\n"
           "Commands:\n"
        + CommandList()
        + "\n"
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

} // namespace Zar::ResourcesLibrary::Tools::Inspect

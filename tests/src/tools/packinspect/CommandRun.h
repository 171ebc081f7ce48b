#pragma once

// What the packinspect command tests share: running the command line in-process or the built tools
// in a folder, packs written to scratch folders, and readers of what the tools print.

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

#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace PackInspectTest {

using TestSupport::CommandResult;
using TestSupport::ReadBytes;
using TestSupport::ReadText;
using TestSupport::RunShellCommand;
using TestSupport::ShellProgram;
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

struct Result {
    int _status;
    std::string _out;
    std::string _err;
};

inline Result Inspect(std::vector<std::string> const& arguments)
{
    std::ostringstream out;
    std::ostringstream err;
    int const status = CommandLine(out, err).Run(arguments);
    return { status, out.str(), err.str() };
}

// The help text of a command of the table.
inline std::string HelpOf(std::string_view name)
{
    Command const* command = CommandTable::Find(name);
    if (command == nullptr)
        throw std::logic_error("no command " + std::string(name));
    return command->_help();
}

inline std::string UsageText(std::string const& name, std::string const& message)
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
            = RunShellCommand(ShellProgram(PackagerPath()) + " version 1.2.3.4 sector 12", _folder.Path());
    }
    std::filesystem::path const& Folder() const { return _folder.Path(); }
    std::string Pack() const { return (_folder / "oled.pack").string(); }
    CommandResult const& Packager() const { return _packager; }
    CommandResult Inspect(std::string const& arguments) const
    {
        return RunShellCommand(ShellProgram(PackinspectPath()) + " " + arguments, _folder.Path());
    }

private:
    ScratchFolder _folder;
    CommandResult _packager;
};

// Enumerator name to value, read from a header that packager generated.
inline std::map<std::string, long> Enumerators(std::string const& header)
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
inline std::map<std::string, std::map<std::string, long>> ListedValues(std::string const& listing)
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

} // namespace PackInspectTest

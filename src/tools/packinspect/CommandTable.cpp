#include "CommandTable.h"

#include <algorithm>
#include <array>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Each command's own file defines its row.
Command const& ImportCommand();
Command const& CheckCommand();
Command const& BuildCommand();
Command const& VerifyCommand();
Command const& ListCommand();
Command const& RenderCommand();
Command const& ExtractCommand();
Command const& DiffCommand();
Command const& ImportCommand();

std::span<Command const* const> CommandTable::All()
{
    static auto const commands = std::to_array<Command const*>({
        &ImportCommand(),
        &CheckCommand(),
        &BuildCommand(),
        &VerifyCommand(),
        &ListCommand(),
        &RenderCommand(),
        &ExtractCommand(),
        &DiffCommand(),
        &ImportCommand(),
    });
    return commands;
}

Command const* CommandTable::Find(std::string_view name)
{
    auto const commands = All();
    auto const found = std::find_if(
        commands.begin(), commands.end(), [name](Command const* command) { return command->_name == name; });
    return found == commands.end() ? nullptr : *found;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

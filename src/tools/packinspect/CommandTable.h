#pragma once

#include "Command.h"

#include <span>
#include <string_view>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Every packinspect command, in the order the main help lists them. The main help, the tests' lists
// of commands and the man page's command list are read from here.
class CommandTable {
public:
    static std::span<Command const* const> All();
    // The command of that name, or null.
    static Command const* Find(std::string_view name);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

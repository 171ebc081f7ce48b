// The packinspect tool: verifies, lists, renders, extracts and compares the resource packs that
// packager writes, and checks bmp trees before they are packed. Its commands are listed in
// CommandTable.cpp.

#include "CommandLine.h"

#include <exception>
#include <iostream>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    using Zar::ResourcesLibrary::Tools::Inspect::CommandLine;
    std::vector<std::string> const arguments(argv + 1, argv + argc);
    try {
        return CommandLine(std::cout, std::cerr).Run(arguments);
    } catch (std::exception const& e) {
        // Files that cannot be read end up here; everything the commands find is reported by them.
        std::cerr << "packinspect: " << e.what() << '\n';
        return CommandLine::kUsage;
    }
}

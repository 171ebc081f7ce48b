// The packinspect tool: verifies, lists and renders resource packs, and checks bmp trees before they
// are packed.

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

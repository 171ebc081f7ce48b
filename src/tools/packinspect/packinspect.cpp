// The packinspect tool, packager's companion: imports designers' images as the bitmaps packager packs
// as drawn, checks bmp trees and builds packs that fail loudly, and verifies, lists, renders,
// extracts and compares the packs packager writes. Its commands are listed in CommandTable.cpp.

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

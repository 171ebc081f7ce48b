// The packager tool: packs the icons and screens listed under bmp/ into oled.pack and writes the
// source files that name them.

#include "PackExporter.h"

#include "Zar/Lt/Core/Version32.h"
#include "Zar/Lt/Logging/ExceptionLogger.h"
#include "Zar/Lt/Logging/LoggingManager.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <strings.h>

using Zar::Lt::Core::Version32;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::InputSequence;
using Zar::ResourcesLibrary::Tools::PackExporter;

int ShowHelp()
{
    std::cout << "packager version 0.5.0.5\n"
                 "    to include all bmp specified in list.txt in icons & screens folders\n"
                 "    version format is Major.minor.patch.build on byte (less than 256)\n"
                 "sector <integer>  to specify the first icon sector\n"
              << std::flush;
    return 0;
}

int ShowSyntax()
{
    ShowHelp();
    return 1;
}

void Build(Version32 const& version, std::string const& root, std::string const& outputFolder, int sector,
    FileFormat format)
{
    PackExporter exporter(version, sector);
    exporter.Open(outputFolder + "oled.pack");

    // The exporter refuses icons once a screen has been packed, so the icons go first.
    std::string const iconsFolder = root + "icons/";
    InputSequence icons(format, iconsFolder, "%04", true);
    icons.AddList(iconsFolder + "list.txt");
    exporter.Process(icons);

    // Screens are optional: a missing list or a bad screen file is skipped by the sequence.
    std::string const screensFolder = root + "screens/";
    InputSequence screens(format, screensFolder, "%04", false);
    screens.AddList(screensFolder + "list.txt");
    exporter.Process(screens);

    exporter.Close();
}

int main(int argc, char** argv)
{
    std::string const outputFolder;
    std::string const root = "bmp/";
    auto* const logger = Zar::Lt::Logging::LoggingManager::GetLoggerPtr("main");

    unsigned major = 0;
    unsigned minor = 6;
    unsigned patch = 0;
    unsigned build = 0;
    int sector = static_cast<int>(Zar::ResourcesLibrary::Pack::PackFormat::kDefaultFirstSector);

    for (int i = 1; i < argc;) {
        char const* option = argv[i];
        if (option[0] == '-')
            ++option;
        bool const isLast = i + 1 >= argc;
        if (strcasecmp(option, "version") == 0) {
            if (isLast)
                return ShowSyntax();
            patch = 0;
            build = 0;
            if (std::sscanf(argv[i + 1], "%u.%u.%u.%u", &major, &minor, &patch, &build) < 2)
                return ShowSyntax();
            // Only the build field is range-checked; the others are cut to 8 bits when packed.
            if (build > 255)
                return ShowSyntax();
            i += 2;
        } else if (strcasecmp(option, "sector") == 0) {
            if (isLast)
                return ShowSyntax();
            // Read as 64 bits on every machine, as long is on x86-64: a number beyond int keeps its low
            // 32 bits instead of saturating where long is 32 bits, so the pack is the same everywhere.
            sector = static_cast<int>(std::strtoll(argv[i + 1], nullptr, 10));
            i += 2;
        } else {
            ++i;
        }
    }

    Version32 const version((major << 24) | ((minor & 0xFF) << 16) | ((patch & 0xFF) << 8) | build);
    try {
        Build(version, root, outputFolder, sector, FileFormat::None);
    } catch (...) {
        // A failed build is reported only to an installed logger; the exit status stays 0 so that
        // the build scripts calling the tool carry on.
        if (logger)
            Zar::Lt::Logging::ExceptionLogger::LogStack(
                *logger, std::current_exception(), "src/tools/packager/packager", 121);
    }
    return 0;
}

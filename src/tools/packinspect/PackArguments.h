#pragma once

#include "ImageGeometry.h"
#include "OptionParser.h"

#include <optional>
#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

class Invocation;

// What the pack commands share: the one pack file they are given and the image sizes it is laid out
// with, from --icon and --screen.
struct PackArguments {
    static OptionParser::Option const kIconOption;
    static OptionParser::Option const kScreenOption;
    static char const* const kDefaultIcon;
    static char const* const kDefaultScreen;

    std::string _path;
    ImageGeometry _icon { 1, 1 };
    ImageGeometry _screen { 1, 1 };

    // The one pack operand and the two sizes; on a usage error writes it and gives nothing.
    static std::optional<PackArguments> Of(Invocation& invocation);
    // The one pack operand; on a usage error writes it and gives nothing.
    static std::optional<std::string> SinglePack(Invocation& invocation);
    // The sizes of --icon and --screen, which must suit icons and screens; false after a usage error.
    static bool ParseGeometries(Invocation& invocation, ImageGeometry& icon, ImageGeometry& screen);
    // The lines of the two size options in a command's help.
    static std::string SizeOptionsHelp();
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

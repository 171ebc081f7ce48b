#pragma once

#include "Zar/ResourcesLibrary/Image/codec/qt/QtImageCodec.h"

#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

// Finds and opens the module that holds the Qt image loader's Qt code (kFileName), the first time a
// file in a Qt format is loaded. It is looked for, in this order: beside the running executable
// (the build tree, and a tool copied together with its module); in <executable's folder>/
// kRelativeFolder (an installed tree, wherever its prefix was moved); in kInstalledFolder (the
// prefix the tool was configured for). When the environment variable kFolderVariable is set (and
// not empty), its folder is the only one searched: a tool can then be pointed at one module, or
// kept away from the one installed on the machine.
class QtModule {
public:
    static constexpr char kFileName[] = "zar_qt_input.so";
    static constexpr char kFolderVariable[] = "PACKAGER_QT_MODULE_DIR";

    // The codec of the module, opened on first use and kept for the rest of the process. Throws a
    // ResourcesLibraryException naming every path tried and why each failed when none opens.
    static ZarQtImageCodec const& Codec();

    // The paths tried, in order, for an executable in the given folder; only the module in
    // moduleFolder when that is given (the value of kFolderVariable) and not empty.
    static std::vector<std::string> CandidatePaths(
        std::string const& executableFolder, char const* moduleFolder = nullptr);

    // Replaces the paths tried from now on (empty: back to those of the running executable) and
    // forgets the codec opened before, so that the next Codec() looks again. For tests, whose
    // executables do not lie beside the module.
    static void SetSearchPaths(std::vector<std::string> paths);
};

} // namespace Zar::ResourcesLibrary::Image

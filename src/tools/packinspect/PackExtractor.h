#pragma once

#include "ImageGeometry.h"
#include "PackFile.h"
#include "PackLayout.h"

#include <filesystem>
#include <optional>
#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Turns a pack back into the bmp tree that packager builds it from: bmp/icons/ and bmp/screens/, each
// with a list.txt in pack order and one 4-bit BMP per image named after it, plus rebuild.sh, which
// runs packager with the pack's own version and first sector. Packing that tree again gives the same
// pack and the same generated sources: the icons already carry their frame, and the frame drawn again
// covers the same pixels with the same level.
class PackExtractor {
public:
    // The layout must be the pack's, computed from its header.
    PackExtractor(PackFile const& pack, PackLayout layout);

    // Why the pack cannot be turned into a tree that rebuilds it, or nothing when it can. Checked
    // before anything is written.
    std::optional<std::string> Refusal() const;

    // Writes the tree into folder, which is made if need be; requires no Refusal(). Throws
    // ResourcesLibraryException when a file cannot be written.
    void Write(std::filesystem::path const& folder) const;

    // "packager version 1.2.3.4 sector 14".
    std::string RebuildCommand() const;
    // "version 1.2.3.4 sector 14".
    std::string RebuildArguments() const;

    // Why an image name cannot become a list line and a file name that give the same name back, or
    // nothing when it can.
    static std::optional<std::string> NameProblem(std::string const& name);

    static constexpr char const* kScriptName = "rebuild.sh";

    // Lets everyone who may read the file run it, as ./rebuild.sh is run. Throws
    // ResourcesLibraryException when the file system refuses, as for a file that cannot be written.
    static void MakeExecutable(std::filesystem::path const& file);

private:
    std::optional<std::string> ImagesRefusal() const;
    void WriteFolder(std::filesystem::path const& folder, PackLayout::Kind kind) const;
    void WriteScript(std::filesystem::path const& folder) const;

    PackFile const& _pack;
    PackLayout _layout;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

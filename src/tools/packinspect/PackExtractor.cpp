#include "PackExtractor.h"

#include "BmpFile.h"

#include "PackExporter.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <fstream>
#include <set>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

using Zar::ResourcesLibrary::Image::InputSequence;

constexpr std::string_view kExtension = ".bmp";

std::string FolderOf(PackLayout::Kind kind) { return kind == PackLayout::Kind::Icon ? "icons" : "screens"; }

void WriteText(std::filesystem::path const& path, std::string const& text)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream << text;
    stream.close();
    if (!stream)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Cannot write " + path.string());
}

void MakeFolder(std::filesystem::path const& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Cannot make the folder " + folder.string() + ": " + error.message());
}

} // namespace

PackExtractor::PackExtractor(PackFile const& pack, PackLayout layout)
    : _pack(pack)
    , _layout(std::move(layout))
{
}

std::optional<std::string> PackExtractor::NameProblem(std::string const& name)
{
    if (name.empty())
        return "an image has no name";
    std::string const quoted = "the image name '" + name + "'";
    if (name.find('/') != std::string::npos || name.find('\0') != std::string::npos)
        return quoted + " cannot be a file name: it holds '/' or a NUL byte";
    if (name.find('\n') != std::string::npos)
        return quoted + " cannot be a line of list.txt: it holds a line feed";
    std::string_view const whiteSpace = InputSequence::kWhiteSpace;
    if (whiteSpace.find(name.front()) != std::string_view::npos
        || whiteSpace.find(name.back()) != std::string_view::npos)
        return quoted + " starts or ends with white space, which a line of list.txt loses";
    if (name.find_first_of(PackExporter::kForbiddenNameCharacters) != std::string::npos)
        return quoted + " holds one of " + PackExporter::kForbiddenNameCharacters
            + ", which packager refuses";
    // The list line is the file name, and packager reads list lines up to this length.
    if (name.size() + kExtension.size() > InputSequence::kMaxLineLength)
        return quoted + " is too long for a line of list.txt";
    return std::nullopt;
}

std::optional<std::string> PackExtractor::Refusal() const
{
    if (!_pack.IsPack())
        return PackFile::NotAPackProblem();
    if (auto const problem = _layout.GeometryProblem(_pack))
        return problem;
    return ImagesRefusal();
}

std::optional<std::string> PackExtractor::ImagesRefusal() const
{
    std::set<std::string> names;
    for (auto const& image : _layout.Images()) {
        if (auto const problem = NameProblem(image._name))
            return problem;
        if (!names.insert(image._name).second)
            return "two images are named " + image._name + ": their files would be one";
        if (!BmpFile::IsReadBackWhole(image._geometry))
            return "images " + image._geometry.ToString() + " wide cannot be written as 4-bit BMPs that "
                + "packager reads back whole: it reads their rows 4 bytes short";
    }
    return std::nullopt;
}

void PackExtractor::Write(std::filesystem::path const& folder) const
{
    ZAR_PRECONDITION(!Refusal());
    WriteFolder(folder, PackLayout::Kind::Icon);
    WriteFolder(folder, PackLayout::Kind::Screen);
    WriteScript(folder);
}

void PackExtractor::WriteFolder(std::filesystem::path const& folder, PackLayout::Kind kind) const
{
    std::filesystem::path const images = folder / "bmp" / FolderOf(kind);
    MakeFolder(images);
    std::string list;
    for (auto const& image : _layout.Images()) {
        if (image._kind != kind)
            continue;
        std::string const file = image._name + std::string(kExtension);
        BmpFile::Save((images / file).string(),
            BmpFile::Gray4(image._geometry, _pack.Slice(image.FileOffset(), image._geometry.Size())));
        list += file + '\n';
    }
    WriteText(images / "list.txt", list);
}

void PackExtractor::WriteScript(std::filesystem::path const& folder) const
{
    std::filesystem::path const script = folder / kScriptName;
    WriteText(script,
        "#!/bin/sh\n# Rebuilds the pack that this bmp tree was extracted from, and its sources, with the\n"
        "# packager on the PATH or the one that PACKAGER names.\n"
        "cd \"$(dirname \"$0\")\" && exec \"${PACKAGER:-packager}\" "
            + RebuildArguments() + '\n');
    MakeExecutable(script);
}

void PackExtractor::MakeExecutable(std::filesystem::path const& file)
{
    std::error_code error;
    std::filesystem::permissions(file,
        std::filesystem::perms::owner_exec | std::filesystem::perms::group_exec
            | std::filesystem::perms::others_exec,
        std::filesystem::perm_options::add, error);
    if (error)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "Cannot make " + file.string() + " executable: " + error.message());
}

std::string PackExtractor::RebuildCommand() const { return "packager " + RebuildArguments(); }

std::string PackExtractor::RebuildArguments() const
{
    auto const& header = _pack.Header();
    return "version " + header._version.Text() + " sector " + std::to_string(header._firstSector);
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

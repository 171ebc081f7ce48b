#pragma once

#include "FileContents.h"

#include "Zar/Lt/Core/ScratchFolder.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TestSupport {

// A bmp/ tree as packager reads it: icons/ and screens/, each with its list.txt. The tree lives in
// a scratch folder removed with the object, or in a folder the caller owns. Which images it holds
// is the caller's choice; this class only knows where everything goes.
//
//   BmpTree tree;
//   tree.AddIcon("Play", BmpWriter::Gray4(...).Bytes()); // icons/Play.bmp and its list line
//   Build(..., tree.Root(), ...);
class BmpTree {
public:
    explicit BmpTree(std::string_view prefix = Zar::Lt::Core::ScratchFolder::kDefaultPrefix)
        : _scratch(std::in_place, prefix)
        , _folder(_scratch->Path())
    {
    }

    // A tree in folder/bmp; the folder outlives the object and is not removed with it.
    static BmpTree In(std::filesystem::path folder) { return BmpTree(std::move(folder), InFolder {}); }

    BmpTree(BmpTree const&) = delete;
    BmpTree& operator=(BmpTree const&) = delete;

    // The folder that holds bmp/.
    std::filesystem::path const& Folder() const { return _folder; }
    // The bmp folder ending in '/', as the packager's build and packinspect check take it.
    std::string Root() const { return (_folder / "bmp").string() + "/"; }
    std::string File(std::string const& relative) const { return Root() + relative; }

    // Writes a file under bmp/ as it is, making the folders above it.
    void Raw(std::string const& relative, std::vector<uint8_t> const& bytes) const
    {
        WriteFile(_folder / "bmp" / relative, bytes);
    }
    void Raw(std::string const& relative, std::string const& text) const
    {
        WriteFile(_folder / "bmp" / relative, text);
    }

    void IconList(std::string const& text) const { Raw("icons/list.txt", text); }
    void ScreenList(std::string const& text) const { Raw("screens/list.txt", text); }

    // Writes name.bmp and appends "name.bmp" as a line to the folder's list.
    void AddIcon(std::string const& name, std::vector<uint8_t> const& bmp) const { Add("icons", name, bmp); }
    void AddScreen(std::string const& name, std::vector<uint8_t> const& bmp) const
    {
        Add("screens", name, bmp);
    }

private:
    struct InFolder { };

    BmpTree(std::filesystem::path folder, InFolder)
        : _folder(std::move(folder))
    {
    }

    void Add(std::string const& kind, std::string const& name, std::vector<uint8_t> const& bmp) const
    {
        Raw(kind + "/" + name + ".bmp", bmp);
        std::filesystem::path const list = _folder / "bmp" / kind / "list.txt";
        std::string const lines = std::filesystem::exists(list) ? ReadText(list) : std::string();
        WriteFile(list, lines + name + ".bmp\n");
    }

    std::optional<Zar::Lt::Core::ScratchFolder> _scratch;
    std::filesystem::path _folder;
};

} // namespace TestSupport

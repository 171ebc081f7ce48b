#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// A folder's list.txt as packager reads it, changed only by appending names or by making a listed
// item name its imported file; everything else in it is kept byte for byte.
class ImageList {
public:
    // A missing file is an empty list, which the first import creates.
    static ImageList Read(std::string const& path);
    explicit ImageList(std::string text);

    // The list line of the item whose bare name (what packager calls it) is name.
    std::optional<std::size_t> LineOf(std::string const& name) const;
    // Appends name, or, when it is listed already, makes its line read name so that it names the
    // imported NAME.bmp, in the same place.
    void Put(std::string const& name);
    std::string Text() const;

private:
    // The text's lines without their line feeds; the last is empty when the text ends with one.
    std::vector<std::string> _lines;
    // The line of each bare name, the first where a name is listed twice.
    std::map<std::string, std::size_t> _lineOfName;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

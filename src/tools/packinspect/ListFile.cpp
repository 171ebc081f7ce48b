#include "ListFile.h"

#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include <fstream>
#include <string_view>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Image::InputSequence;

namespace {

// What packager keeps of one line: up to a NUL byte, at most its line length, without the white
// space at either end.
std::string ItemOf(std::string_view line)
{
    line = line.substr(0, line.find('\0'));
    line = line.substr(0, InputSequence::kMaxLineLength);
    auto const first = line.find_first_not_of(InputSequence::kWhiteSpace);
    if (first == std::string_view::npos)
        return {};
    return std::string(line.substr(first, line.find_last_not_of(InputSequence::kWhiteSpace) + 1 - first));
}

} // namespace

ListFile ListFile::Read(std::string const& path)
{
    ListFile list;
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        return list;
    list._exists = true;
    // Read a line at a time, keeping no more of a line than packager does, so that a list of any
    // size (or a device that never ends a line) costs a bounded amount of memory.
    std::string line;
    bool first = true;
    int number = 1;
    auto const endLine = [&] {
        if (first)
            list._byteOrderMark = line.starts_with(kByteOrderMark);
        first = false;
        if (std::string item = ItemOf(line); !item.empty())
            list._itemLines.push_back({ number, std::move(item) });
        line.clear();
        ++number;
    };
    bool pending = false;
    for (char c; stream.get(c);) {
        pending = true;
        if (c == '\n') {
            endLine();
            pending = false;
        } else if (line.size() <= InputSequence::kMaxLineLength) {
            line += c;
        }
    }
    if (pending)
        endLine();
    return list;
}

std::vector<int> ListFile::LinesOf(std::vector<std::string> const& items) const
{
    std::vector<int> lines(items.size(), 0);
    if (items.size() != _itemLines.size())
        return lines;
    for (std::size_t k = 0; k < items.size(); ++k)
        if (items[k] != _itemLines[k]._item)
            return std::vector<int>(items.size(), 0);
    for (std::size_t k = 0; k < items.size(); ++k)
        lines[k] = _itemLines[k]._number;
    return lines;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

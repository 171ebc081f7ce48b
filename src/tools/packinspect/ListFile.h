#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// A list.txt as an editor shows it: its lines numbered from 1, and for each item packager takes from
// it the line it stands on. Packager's own reading (InputSequence::AddList) decides what the items
// are; this class only finds them again, so that a message can point at the line to change.
class ListFile {
public:
    // The UTF-8 byte-order mark some editors put at the start of a text file. Packager takes it as
    // part of the first name.
    static constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

    static ListFile Read(std::string const& path);

    bool Exists() const { return _exists; }
    bool StartsWithByteOrderMark() const { return _byteOrderMark; }

    // The editor line of each item, in order, when the items found are the ones given (packager's);
    // otherwise all 0, and messages do without line numbers.
    std::vector<int> LinesOf(std::vector<std::string> const& items) const;

    struct Line {
        int _number;
        std::string _item;
    };
    // The lines that hold an item, with the item as packager reads it.
    std::vector<Line> const& ItemLines() const { return _itemLines; }

private:
    bool _exists = false;
    bool _byteOrderMark = false;
    std::vector<Line> _itemLines;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

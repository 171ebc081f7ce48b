#include "ImageList.h"

#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include <fstream>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Image::InputSequence;

namespace {

// A line as packager takes it: white space at both ends does not count.
std::string Trimmed(std::string const& line)
{
    auto const first = line.find_first_not_of(InputSequence::kWhiteSpace);
    if (first == std::string::npos)
        return {};
    auto const last = line.find_last_not_of(InputSequence::kWhiteSpace);
    return line.substr(first, last - first + 1);
}

} // namespace

ImageList ImageList::Read(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    if (stream)
        text << stream.rdbuf();
    return ImageList(text.str());
}

ImageList::ImageList(std::string text)
    : _text(std::move(text))
{
}

std::vector<std::string> ImageList::Lines() const
{
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < _text.size()) {
        auto const end = _text.find('\n', start);
        std::size_t const stop = end == std::string::npos ? _text.size() : end;
        lines.push_back(_text.substr(start, stop - start));
        start = stop + 1;
    }
    return lines;
}

std::optional<std::size_t> ImageList::LineOf(std::string const& name) const
{
    auto const lines = Lines();
    for (std::size_t index = 0; index < lines.size(); ++index) {
        std::string const item = Trimmed(lines[index]);
        if (!item.empty() && InputSequence::BareName(item) == name)
            return index;
    }
    return std::nullopt;
}

void ImageList::Put(std::string const& name)
{
    auto const line = LineOf(name);
    if (!line) {
        if (!_text.empty() && _text.back() != '\n')
            _text += '\n';
        _text += name + '\n';
        return;
    }
    auto lines = Lines();
    if (Trimmed(lines[*line]) == name)
        return;
    lines[*line] = name;
    bool const endsWithNewline = !_text.empty() && _text.back() == '\n';
    _text.clear();
    for (std::size_t index = 0; index < lines.size(); ++index) {
        _text += lines[index];
        if (index + 1 < lines.size() || endsWithNewline)
            _text += '\n';
    }
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

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
{
    std::size_t start = 0;
    while (true) {
        auto const end = text.find('\n', start);
        _lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
        if (end == std::string::npos)
            break;
        start = end + 1;
    }
    for (std::size_t index = 0; index < _lines.size(); ++index) {
        std::string const item = Trimmed(_lines[index]);
        if (!item.empty())
            _lineOfName.emplace(InputSequence::BareName(item), index);
    }
}

std::string ImageList::Text() const
{
    std::string text;
    for (std::size_t index = 0; index < _lines.size(); ++index) {
        if (index > 0)
            text += '\n';
        text += _lines[index];
    }
    return text;
}

std::optional<std::size_t> ImageList::LineOf(std::string const& name) const
{
    auto const found = _lineOfName.find(name);
    if (found == _lineOfName.end())
        return std::nullopt;
    return found->second;
}

void ImageList::Put(std::string const& name)
{
    if (auto const line = LineOf(name)) {
        if (Trimmed(_lines[*line]) != name)
            _lines[*line] = name;
        return;
    }
    // The text's last line is what follows its last line feed: empty when it ends with one.
    if (_lines.back().empty())
        _lines.back() = name;
    else
        _lines.push_back(name);
    _lineOfName.emplace(name, _lines.size() - 1);
    _lines.emplace_back();
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

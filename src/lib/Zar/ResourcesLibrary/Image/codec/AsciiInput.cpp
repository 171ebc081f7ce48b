#include "Zar/ResourcesLibrary/Image/codec/AsciiInput.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/InputFile.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

using Zar::ResourcesLibrary::ResourcesLibraryException;
using namespace Zar::ResourcesLibrary::Image;

namespace {

// How a text image is laid out in memory: every row is taken to be exactly one pitch long.
struct TextLayout {
    uint16_t width = 0;
    size_t pitch = 0;
    uint16_t height = 0;
};

// The control characters right after the first line feed (blank lines, stray carriage returns)
// belong to every row's pitch. The count stops at the end of the data.
size_t CountControlCharacters(uint8_t const* begin, uint8_t const* end)
{
    return static_cast<size_t>(
        std::find_if(begin, end, [](uint8_t c) { return std::iscntrl(c) == 0; }) - begin);
}

// Finds the layout from the first line feed that lies inside the data. Data without one has no
// layout. A line feed beyond the given size is never looked for: reading past the size the caller
// vouches for is not safe, so text cut before its first line feed is simply not an image.
bool FindLayout(void const* data, size_t size, TextLayout& layout)
{
    if (data == nullptr || size == 0)
        return false;
    auto const* bytes = static_cast<uint8_t const*>(data);
    auto const* end = bytes + size;
    auto const* lineFeed = static_cast<uint8_t const*>(std::memchr(bytes, '\n', size));
    if (lineFeed == nullptr)
        return false;
    // Width and height are 16-bit quantities of the text format; wider or taller texts wrap.
    layout.width = static_cast<uint16_t>(lineFeed - bytes);
    layout.pitch = size_t { layout.width } + 1 + CountControlCharacters(lineFeed + 1, end);
    layout.height = static_cast<uint16_t>(size / layout.pitch);
    return true;
}

ImageInfo MakeInfo(TextLayout const& layout)
{
    ImageInfo info(ImageFormat::Gray4);
    info._width = layout.width;
    info._height = layout.height;
    info._stride = ImageInfo::StrideOf(layout.width, ImageFormat::Gray4);
    // Set on purpose although text rows run top-down: text images carry the same flag as the
    // bottom-up BMP images they stand in for.
    info._bottomUp = 1;
    return info;
}

} // namespace

AsciiInput::AsciiInput(FileFormat fileFormat, ImageFormat imageFormat, std::string pattern,
    std::string folder, char set, char clear)
    : Input(fileFormat, imageFormat, std::move(pattern), std::move(folder))
    , _setChar(set)
    , _clearChar(clear)
{
}

size_t AsciiInput::GetHeaderSize() const { return 16384; }

ImageInfo AsciiInput::ReadHeaderFromData(void const* data, size_t size)
{
    TextLayout layout;
    if (!FindLayout(data, size, layout))
        return ImageInfo::Empty;
    return MakeInfo(layout);
}

MutableImage AsciiInput::FromData(void const* data, size_t size)
{
    TextLayout layout;
    if (!FindLayout(data, size, layout) || layout.width == 0 || layout.height == 0)
        return MutableImage::Empty;

    ImageInfo const info = MakeInfo(layout);
    std::vector<uint8_t> pixels(size_t { info.Stride() } * layout.height, 0);
    auto const* text = static_cast<char const*>(data);
    for (size_t row = 0; row < layout.height; ++row) {
        char const* source = text + row * layout.pitch;
        uint8_t* target = pixels.data() + row * info.Stride();
        // Pixels go in pairs, the first in the high nibble; an odd last pixel has no partner and
        // stays clear.
        for (size_t pair = 0; pair < layout.width / 2u; ++pair) {
            uint8_t value = 0;
            if (source[2 * pair] != _clearChar)
                value |= 0xF0;
            if (source[2 * pair + 1] != _clearChar)
                value |= 0x0F;
            target[pair] = value;
        }
    }
    return MutableImage(info, std::move(pixels));
}

MutableImage AsciiInput::Load(char const* filePath)
{
    std::string const path = filePath != nullptr ? filePath : "";
    std::unique_ptr<std::istream> const stream = InputFile::Open(path.c_str());
    std::vector<uint8_t> text;
    if (stream && stream->good()) {
        // A size the file system reports but the file does not deliver (a directory, say) is read
        // as far as it goes and never allocated up front.
        if (std::optional<uint64_t> const size = InputFile::RemainingBytes(*stream))
            text = InputFile::ReadAvailable(*stream, *size);
    }
    if (text.empty() || !stream || stream->bad())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Ascii::Load cannot read " + path);
    return FromData(text.data(), text.size());
}

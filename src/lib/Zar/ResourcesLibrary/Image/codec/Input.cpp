#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/ResourcesLibrary/Image/FileFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/InputFile.h"
#include "Zar/ResourcesLibrary/Image/codec/AsciiInput.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"
#include "Zar/ResourcesLibrary/Image/codec/DetectInput.h"
#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"
#include "Zar/ResourcesLibrary/Image/codec/RawInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <limits>
#include <utility>

namespace Zar::ResourcesLibrary::Image {

namespace {

// Bytes read from a stream at most per step while the size a file declares is not yet proven.
constexpr size_t kReadStep = size_t { 1 } << 20;

// Appends text to a NUL-terminated buffer of a fixed size, cutting what does not fit.
class BoundedWriter {
public:
    BoundedWriter(char* buffer, size_t size)
        : _buffer(buffer)
        , _size(size)
    {
        if (_size != 0)
            _buffer[0] = '\0';
    }

    void Append(char const* text, size_t length)
    {
        if (_size == 0)
            return;
        size_t const room = _size - 1 - _used;
        size_t const count = std::min(room, length);
        std::memcpy(_buffer + _used, text, count);
        _used += count;
        _buffer[_used] = '\0';
    }

private:
    char* _buffer;
    size_t _size;
    size_t _used = 0;
};

// One printf conversion of a pattern, split into its parts so that it can be checked before use.
struct Conversion {
    std::string flags;
    std::string width;
    bool hasPrecision = false; // a '.' was given, with or without digits
    std::string precision; // the digits after the '.'
    char type = '\0'; // the conversion character; '\0' when the pattern ends inside the conversion
    size_t length = 0; // characters of the pattern taken, the '%' included
};

// Width and precision larger than the path buffer change nothing in a result cut to that buffer,
// so they are clamped; this also keeps snprintf from padding gigabytes that are thrown away.
std::string ClampedNumber(std::string const& digits)
{
    constexpr size_t limit = Input::kPathBufferSize;
    size_t value = 0;
    for (char digit : digits)
        value = std::min(limit, value * 10 + static_cast<size_t>(digit - '0'));
    return std::to_string(value);
}

Conversion ParseConversion(std::string const& pattern, size_t percent)
{
    Conversion conversion;
    size_t i = percent + 1;
    auto take = [&](std::string& into, auto accepts) {
        while (i < pattern.size() && accepts(pattern[i]))
            into += pattern[i++];
    };
    auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    take(conversion.flags, [](char c) { return std::strchr("-+ #0", c) != nullptr && c != '\0'; });
    take(conversion.width, isDigit);
    if (i < pattern.size() && pattern[i] == '.') {
        conversion.hasPrecision = true;
        ++i;
        take(conversion.precision, isDigit);
    }
    std::string lengthModifier;
    take(lengthModifier, [](char c) { return std::strchr("hljzt", c) != nullptr && c != '\0'; });
    if (i < pattern.size())
        conversion.type = pattern[i++];
    conversion.length = i - percent;
    return conversion;
}

bool IsIntegerConversion(char type) { return type != '\0' && std::strchr("diouxX", type) != nullptr; }

// Formats the index through snprintf with a conversion rebuilt from checked parts only, so the
// format handed to the C library never holds anything that reads an argument that is not there.
// Length modifiers are dropped: the index is an int, and it is passed as one. The format is built
// by appending left to right, which also keeps clear of GCC 12's false -Wrestrict reports at -O3 on
// std::string inserts at the front and one-character assignments.
std::string FormatConversion(Conversion const& conversion, int index)
{
    std::string format = "%";
    format += conversion.flags;
    if (!conversion.width.empty())
        format += ClampedNumber(conversion.width);
    if (conversion.hasPrecision) {
        format += '.';
        if (!conversion.precision.empty())
            format += ClampedNumber(conversion.precision);
    }
    format += conversion.type;
    char text[2 * Input::kPathBufferSize + 64];
    bool const isSigned = conversion.type == 'd' || conversion.type == 'i';
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    int const written = isSigned
        ? std::snprintf(text, sizeof(text), format.c_str(), index)
        : std::snprintf(text, sizeof(text), format.c_str(), static_cast<unsigned>(index));
#pragma GCC diagnostic pop
    return written < 0 ? std::string() : std::string(text);
}

} // namespace

Input::Input(FileFormat fileFormat, ImageFormat imageFormat, std::string pattern, std::string folder)
    : _fileFormat(fileFormat)
    , _imageFormat(imageFormat)
    , _pattern(std::move(pattern))
    , _folder(std::move(folder))
{
}

Input::~Input() = default;

bool Input::IsEmpty() const { return false; }

size_t Input::GetHeaderSize() const { return 32; }

ImageInfo Input::ReadHeaderFromData(void const* /*data*/, size_t /*size*/)
{
    throw Zar::Lt::Exceptions::NotSupported(ZAR_SOURCE_INFO(), "Input::ReadHeaderFromData not supported");
}

ImageInfo Input::ReadHeader(std::istream& stream)
{
    std::vector<uint8_t> header(GetHeaderSize(), 0);
    size_t const count = Read(stream, header.data(), header.size());
    return ReadHeaderFromData(header.data(), count);
}

ImageInfo Input::LoadHeader(char const* filePath)
{
    std::unique_ptr<std::istream> const stream = InputFile::Open(filePath);
    if (!stream)
        return ImageInfo::Empty;
    return ReadHeader(*stream);
}

size_t Input::Read(std::istream& /*stream*/, void* /*data*/, size_t /*size*/)
{
    throw Zar::Lt::Exceptions::NotSupported(ZAR_SOURCE_INFO(), "Input::Read not supported");
}

MutableImage Input::FromData(void const* /*data*/, size_t /*size*/)
{
    throw Zar::Lt::Exceptions::NotSupported(ZAR_SOURCE_INFO(), "Input::FromData not supported");
}

MutableImage Input::Load(char const* filePath)
{
    ZAR_CHECK(PreCondition, filePath && filePath[0], "Input::Load nullptr in filePath", ZAR_SOURCE_INFO());
    std::unique_ptr<std::istream> const stream = InputFile::Open(filePath);
    if (!stream)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), std::string("Input::Load cannot open ") + filePath);
    ImageInfo const info = ReadHeader(*stream);
    if (info.Width() <= 0 || info.Height() <= 0)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), std::string("Input::Load cannot read header ") + filePath);
    auto const height = static_cast<uint64_t>(info.Height());
    uint64_t bodySize = uint64_t { info.Stride() } * height;
    if (bodySize == 0)
        bodySize = uint64_t { info.GetBytes(info.Width()) } * height;
    std::vector<uint8_t> const body = ReadAvailable(*stream, bodySize);
    return FromData(body.empty() ? nullptr : body.data(), body.size());
}

MutableImage Input::Read(int index)
{
    char path[kPathBufferSize];
    FormatIndex(path, sizeof(path), PatternOrDefault(_pattern), index);
    return Load(static_cast<char const*>(path));
}

MutableImage Input::Read(int index, std::string const& name)
{
    if (name.empty())
        return Read(index);
    return Load(GetFilePath(index, name));
}

ImageInfo Input::ReadHeaderFromData(std::vector<uint8_t> const& data)
{
    return ReadHeaderFromData(data.data(), data.size());
}

MutableImage Input::Load(std::string const& filePath) { return Load(filePath.c_str()); }

std::string Input::GetFilePath(int index, std::string const& name) const
{
    std::string const pattern = PatternOrDefault(_pattern);
    char buffer[kPathBufferSize] = {};
    if (pattern.find('/') != std::string::npos) {
        FormatIndex(buffer, sizeof(buffer), pattern, index);
    } else {
        // The formatted pattern goes right behind the folder. The room left is what remains of
        // the buffer, so a long folder cuts the number instead of running past the buffer.
        std::strncpy(buffer, _folder.c_str(), sizeof(buffer) - 1);
        size_t const used = std::strlen(buffer);
        FormatIndex(buffer + used, sizeof(buffer) - used, pattern, index);
    }
    if (!name.empty()) {
        if (char* slash = std::strrchr(buffer, '/')) {
            size_t const offset = static_cast<size_t>(slash + 1 - buffer);
            std::strncpy(slash + 1, name.c_str(), sizeof(buffer) - 1 - offset);
            buffer[sizeof(buffer) - 1] = '\0';
        }
    }
    if (std::strchr(buffer, '.') == nullptr) {
        char const* extension = GetExtension(_fileFormat);
        std::strncat(buffer, extension ? extension : ".bmp", sizeof(buffer) - 1 - std::strlen(buffer));
    }
    return buffer;
}

size_t Input::RawRead(std::istream& stream, void* data, size_t size)
{
    auto* bytes = static_cast<char*>(data);
    size_t total = 0;
    while (total < size && !stream.fail()) {
        auto const remaining = static_cast<std::streamsize>(
            std::min<size_t>(size - total, static_cast<size_t>(std::numeric_limits<std::streamsize>::max())));
        std::streamsize got = stream.readsome(bytes + total, remaining);
        if (got == 0) {
            stream.read(bytes + total, remaining);
            got = stream.gcount();
        }
        if (got > 0)
            total += static_cast<size_t>(got);
    }
    return total;
}

std::vector<uint8_t> Input::ReadAvailable(std::istream& stream, uint64_t size)
{
    std::vector<uint8_t> data;
    while (data.size() < size) {
        size_t const step = static_cast<size_t>(std::min<uint64_t>(size - data.size(), kReadStep));
        size_t const before = data.size();
        data.resize(before + step);
        size_t const got = Read(stream, data.data() + before, step);
        data.resize(before + std::min(got, step));
        if (got < step)
            break;
    }
    return data;
}

char const* Input::GetExtension(FileFormat format) { return FileFormatHelper::GetExtension(format); }

void Input::FormatIndex(char* buffer, size_t size, std::string const& pattern, int index)
{
    BoundedWriter writer(buffer, size);
    bool indexWritten = false;
    size_t i = 0;
    while (i < pattern.size()) {
        size_t const percent = pattern.find('%', i);
        if (percent == std::string::npos) {
            writer.Append(pattern.data() + i, pattern.size() - i);
            break;
        }
        writer.Append(pattern.data() + i, percent - i);
        if (percent + 1 < pattern.size() && pattern[percent + 1] == '%') {
            writer.Append("%", 1);
            i = percent + 2;
            continue;
        }
        Conversion const conversion = ParseConversion(pattern, percent);
        if (!indexWritten && IsIntegerConversion(conversion.type)) {
            std::string const number = FormatConversion(conversion, index);
            writer.Append(number.data(), number.size());
            indexWritten = true;
            i = percent + conversion.length;
        } else {
            // Anything else (text, pointer or count conversions, a second number, a conversion cut
            // off by the end of the pattern) would read an argument that does not exist: it is
            // kept as plain text instead.
            writer.Append("%", 1);
            i = percent + 1;
        }
    }
}

std::string Input::PatternOrDefault(std::string const& pattern)
{
    if (pattern.find('%') == std::string::npos)
        return "%04d";
    return pattern;
}

std::string_view Input::UsableExtension(std::string_view path) noexcept
{
    size_t const dot = path.rfind('.');
    if (dot == std::string_view::npos)
        return {};
    std::string_view const tail = path.substr(dot);
    if (tail.size() < 2 || tail[1] == '.' || tail.find('/') != std::string_view::npos)
        return {};
    return tail;
}

std::unique_ptr<Input> Input::Create(
    FileFormat format, ImageFormat imageFormat, std::string&& folder, std::string&& name)
{
    if (!folder.empty() && folder.back() != '/')
        folder += '/';
    if (name.empty())
        name = "%04u";
    if (name.find('.') == std::string::npos)
        name += GetExtension(format);
    std::string pattern = folder + name;

    switch (format) {
    case FileFormat::None:
        return std::make_unique<DetectInput>(
            FileFormat::None, ImageFormat::Unknown, std::string(), std::move(pattern));
    case FileFormat::Raw:
    case FileFormat::Yuv:
        // The raw loader deliberately records no file format, whichever of the two was asked.
        return std::make_unique<RawInput>(
            FileFormat::None, ImageFormat::Unknown, std::move(pattern), std::string());
    case FileFormat::Bmp:
        return std::make_unique<BmpInput>(
            FileFormat::Bmp, ImageFormat::Unknown, std::move(pattern), std::string());
    case FileFormat::Jpeg:
    case FileFormat::Png:
    case FileFormat::Pgm:
    case FileFormat::Ppm:
    case FileFormat::Qt:
        return std::make_unique<QtInput>(format, imageFormat, std::move(pattern), std::string());
    case FileFormat::Ascii:
        return std::make_unique<AsciiInput>(
            FileFormat::Ascii, ImageFormat::Unknown, std::move(pattern), std::string(), 'X', ' ');
    default:
        return nullptr;
    }
}

std::unique_ptr<Input> Input::Create(char const* path)
{
    FileFormat const format = FileFormatHelper::GetFromExtension(path != nullptr ? path : "");
    return Create(format, ImageFormat::Unknown, std::string(), "%04u");
}

} // namespace Zar::ResourcesLibrary::Image

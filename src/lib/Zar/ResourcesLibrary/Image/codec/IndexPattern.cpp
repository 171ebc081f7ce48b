#include "Zar/ResourcesLibrary/Image/codec/IndexPattern.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace Zar::ResourcesLibrary::Image {

namespace {

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
    constexpr size_t limit = IndexPattern::kPathBufferSize;
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
    char text[2 * IndexPattern::kPathBufferSize + 64];
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

void IndexPattern::Format(char* buffer, size_t size, std::string const& pattern, int index)
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

std::string IndexPattern::OrDefault(std::string const& pattern)
{
    if (pattern.find('%') == std::string::npos)
        return "%04d";
    return pattern;
}

std::string IndexPattern::FilePath(
    std::string const& folder, std::string const& pattern, int index, std::string const& name)
{
    std::string const usedPattern = OrDefault(pattern);
    char buffer[kPathBufferSize] = {};
    if (usedPattern.find('/') != std::string::npos) {
        Format(buffer, sizeof(buffer), usedPattern, index);
    } else {
        std::strncpy(buffer, folder.c_str(), sizeof(buffer) - 1);
        size_t const used = std::strlen(buffer);
        Format(buffer + used, sizeof(buffer) - used, usedPattern, index);
    }
    if (!name.empty()) {
        if (char* slash = std::strrchr(buffer, '/')) {
            size_t const offset = static_cast<size_t>(slash + 1 - buffer);
            std::strncpy(slash + 1, name.c_str(), sizeof(buffer) - 1 - offset);
            buffer[sizeof(buffer) - 1] = '\0';
        }
    }
    return buffer;
}

std::string IndexPattern::WithExtension(std::string path, char const* extension)
{
    path += extension ? extension : ".bmp";
    if (path.size() > kPathBufferSize - 1)
        path.resize(kPathBufferSize - 1);
    return path;
}

} // namespace Zar::ResourcesLibrary::Image

#include "Zar/ResourcesLibrary/Image/FileFormatHelper.h"

#include <cstddef>
#include <cstring>
#include <iterator>

namespace Zar::ResourcesLibrary::Image {

// "Mono" files carry the extension ".gray" and the Qt kind ".auto": the pairs are not a mistake.
char const* const FileFormatHelper::_extensions[17] = {
    "",
    ".raw",
    ".yuv",
    ".planar.yuv",
    ".gray",
    ".bmp",
    ".jpg",
    ".png",
    ".pbm",
    ".pgm",
    ".ppm",
    ".txt",
    ".hpp",
    ".c",
    ".auto",
    ".bar",
    ".rec",
};

char const* const FileFormatHelper::_names[17] = {
    "None",
    "Raw",
    "Yuv",
    "PlanarYuv",
    "Mono",
    "Bmp",
    "Jpeg",
    "Png",
    "Pbm",
    "Pgm",
    "Ppm",
    "Ascii",
    "Hpp",
    "C",
    "Qt",
    "Bars",
    "BarsWithText",
};

namespace {

// Case folding in the C locale, whatever locale the process runs in.
char AsciiLower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// True when the tail equals the extension or is a prefix of it, ignoring case. Accepting a prefix
// is what lets a short tail such as ".b" name the first extension that starts with it.
bool TailMatches(std::string_view tail, char const* extension) noexcept
{
    if (tail.size() > std::strlen(extension))
        return false;
    for (std::size_t i = 0; i < tail.size(); ++i) {
        if (AsciiLower(tail[i]) != AsciiLower(extension[i]))
            return false;
    }
    return true;
}

} // namespace

char const* FileFormatHelper::GetExtension(FileFormat format) noexcept
{
    auto const index = static_cast<int>(format);
    return index >= 0 && index < static_cast<int>(std::size(_extensions)) ? _extensions[index]
                                                                          : _extensions[0];
}

char const* FileFormatHelper::GetString(unsigned int format) noexcept
{
    return format < std::size(_names) ? _names[format] : _names[0];
}

char const* FileFormatHelper::GetSuffix(FileFormat format) noexcept
{
    switch (format) {
    case FileFormat::Raw:
        return ".%d.%d.%s.ub";
    case FileFormat::Yuv:
    case FileFormat::PlanarYuv:
        return ".%d.%d.%s";
    default:
        return "";
    }
}

FileFormat FileFormatHelper::GetFromExtension(std::string_view path) noexcept
{
    auto const dot = path.rfind('.');
    if (dot == std::string_view::npos)
        return FileFormat::None;
    auto const tail = path.substr(dot);
    // A lone trailing dot names nothing, and a slash after the dot means the dot was in a folder name.
    if (tail.size() == 1 || tail.find('/') != std::string_view::npos)
        return FileFormat::None;
    for (std::size_t value = 1; value < std::size(_extensions); ++value) {
        if (TailMatches(tail, _extensions[value]))
            return static_cast<FileFormat>(value);
    }
    return FileFormat::None;
}

} // namespace Zar::ResourcesLibrary::Image

#pragma once

#include <cstddef>
#include <string>

namespace Zar::ResourcesLibrary::Image {

// A file name pattern holding one printf integer conversion for an image's index ("%04u.bmp").
// Patterns come from list files and command lines, so they are never handed to printf as they are:
// only a checked integer conversion is formatted, into a buffer of a fixed size.
class IndexPattern {
public:
    // Every path built from a pattern lives in a buffer of this size, terminator included.
    static constexpr size_t kPathBufferSize = 512;

    // Writes the pattern with its integer conversion replaced by the index into buffer (size bytes,
    // always NUL-terminated when size > 0, cut where it does not fit). Only the first integer
    // conversion is formatted; any other conversion is copied as plain text.
    static void Format(char* buffer, size_t size, std::string const& pattern, int index);

    // The pattern itself, or "%04d" when it holds no '%' to put the index in.
    static std::string OrDefault(std::string const& pattern);

    // The path of the image with this index: the pattern (OrDefault) formatted on its own when it
    // holds a '/', else right behind the folder; then, when a name is given, the name in place of
    // what follows the last '/'. Cut to what the path buffer holds: a long folder cuts the number,
    // never runs past the buffer.
    static std::string FilePath(
        std::string const& folder, std::string const& pattern, int index, std::string const& name);

    // The path with the extension behind it (".bmp" when extension is null), cut to what the path
    // buffer holds.
    static std::string WithExtension(std::string path, char const* extension);
};

} // namespace Zar::ResourcesLibrary::Image

#pragma once

#include "Zar/ResourcesLibrary/Image/FileFormat.h"

#include <string_view>

namespace Zar::ResourcesLibrary::Image {

// Names and file extensions of the image file kinds. A value outside the tables falls back to entry 0
// ("None", no extension) instead of failing.
class FileFormatHelper {
public:
    static char const* GetExtension(FileFormat format) noexcept;
    static char const* GetString(unsigned int format) noexcept;
    // A printf pattern for numbered output files of the raw and YUV kinds; empty for the others.
    static char const* GetSuffix(FileFormat format) noexcept;
    // The file kind of a path, judged by its last extension alone.
    static FileFormat GetFromExtension(std::string_view path) noexcept;

private:
    static char const* const _extensions[17];
    static char const* const _names[17];
};

} // namespace Zar::ResourcesLibrary::Image

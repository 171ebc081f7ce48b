#include "Zar/ResourcesLibrary/Image/codec/Raw.h"

#include "Zar/ResourcesLibrary/Image/InputFile.h"

#include <algorithm>
#include <cstdint>
#include <optional>

using Zar::ResourcesLibrary::Image::InputFile;

size_t Raw::Open(std::ifstream& stream, char const* filePath, size_t maxSize)
{
    stream.open(filePath != nullptr ? filePath : "");
    if (!stream.good())
        return 0;
    // A file whose size cannot be told leaves the stream failed, and the caller treats it as one
    // that could not be opened.
    std::optional<uint64_t> const size = InputFile::RemainingBytes(stream);
    if (!size) {
        stream.setstate(std::ios::failbit);
        return 0;
    }
    return static_cast<size_t>(std::min<uint64_t>(*size, maxSize));
}

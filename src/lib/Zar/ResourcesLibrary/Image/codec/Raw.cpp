#include "Zar/ResourcesLibrary/Image/codec/Raw.h"

#include <algorithm>

size_t Raw::Open(std::ifstream& stream, char const* filePath, size_t maxSize)
{
    stream.open(filePath != nullptr ? filePath : "");
    if (!stream.good())
        return 0;
    stream.seekg(0, std::ios::end);
    std::streamoff const end = stream.tellg();
    stream.seekg(0, std::ios::beg);
    // A file whose size cannot be told leaves the stream failed, and the caller treats it as one
    // that could not be opened.
    if (end <= 0 || !stream.good())
        return 0;
    return std::min(static_cast<size_t>(end), maxSize);
}

#pragma once

#include <cstddef>
#include <fstream>

// File access for headerless frame dumps.
class Raw {
public:
    // Opens filePath for reading and returns how many bytes of it the caller may read: the file's
    // size, but never more than maxSize, the most the caller will take. The stream is left at the
    // start of the file. A file that cannot be opened leaves the stream failed and gives 0.
    static size_t Open(std::ifstream& stream, char const* filePath, size_t maxSize);
};

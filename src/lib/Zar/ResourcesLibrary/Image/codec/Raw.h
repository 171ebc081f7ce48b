#pragma once

#include <cstddef>
#include <fstream>

// File access for headerless frame dumps.
class Raw
{
public:
    // Opens filePath for reading and returns its size in bytes (0 when it cannot be opened). The
    // last argument is the size the caller expects; it is advisory and does not change what is read.
    static size_t Open(std::ifstream& stream, char const* filePath, size_t expectedSize);
};

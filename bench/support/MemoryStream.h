#pragma once

#include <cstdint>
#include <istream>
#include <streambuf>
#include <vector>

namespace Zar::Bench {

// A read-only stream over bytes held in memory, so that a loader's decoding is measured without
// the file system. Making one costs no copy of the bytes, so a benchmark can make a fresh stream
// for every decode, as the loader opens a fresh file for every image.
class MemoryStream : private std::streambuf, public std::istream {
public:
    explicit MemoryStream(std::vector<uint8_t> const& bytes)
        : std::istream(static_cast<std::streambuf*>(this))
    {
        // The buffer is only ever read: std::streambuf merely lacks a const get area.
        auto* begin = reinterpret_cast<char*>(const_cast<uint8_t*>(bytes.data()));
        setg(begin, begin, begin + bytes.size());
    }
};

} // namespace Zar::Bench

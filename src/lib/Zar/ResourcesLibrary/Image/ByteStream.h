#pragma once

#include <cstdint>
#include <istream>
#include <streambuf>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

// A read-only input stream over bytes it owns. A file read in one go is decoded through it, so the
// loaders keep working on a stream while every position query, seek or availability check is
// answered from memory instead of becoming a system call.
class ByteStream : private std::streambuf, public std::istream {
public:
    explicit ByteStream(std::vector<uint8_t> bytes);

    ByteStream(ByteStream const&) = delete;
    ByteStream& operator=(ByteStream const&) = delete;

protected:
    std::streambuf::pos_type seekoff(std::streambuf::off_type offset, std::ios_base::seekdir direction,
        std::ios_base::openmode which) override;
    std::streambuf::pos_type seekpos(
        std::streambuf::pos_type position, std::ios_base::openmode which) override;

private:
    std::vector<uint8_t> _bytes;
};

} // namespace Zar::ResourcesLibrary::Image

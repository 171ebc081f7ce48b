#include "Zar/ResourcesLibrary/Image/ByteStream.h"

#include <utility>

namespace Zar::ResourcesLibrary::Image {

ByteStream::ByteStream(std::vector<uint8_t> bytes)
    : std::istream(static_cast<std::streambuf*>(this))
    , _bytes(std::move(bytes))
{
    // Only ever read: std::streambuf merely has no get area of const characters.
    auto* begin = reinterpret_cast<char*>(_bytes.data());
    setg(begin, begin, begin + _bytes.size());
}

std::streambuf::pos_type ByteStream::seekoff(
    std::streambuf::off_type offset, std::ios_base::seekdir direction, std::ios_base::openmode which)
{
    if ((which & std::ios_base::in) == 0)
        return std::streambuf::pos_type(std::streambuf::off_type(-1));
    std::streambuf::off_type base = 0;
    if (direction == std::ios_base::cur)
        base = gptr() - eback();
    else if (direction == std::ios_base::end)
        base = egptr() - eback();
    std::streambuf::off_type const size = egptr() - eback();
    // Checked before adding, so that no offset can overflow the sum.
    if (offset < -base || offset > size - base)
        return std::streambuf::pos_type(std::streambuf::off_type(-1));
    setg(eback(), eback() + base + offset, egptr());
    return std::streambuf::pos_type(base + offset);
}

std::streambuf::pos_type ByteStream::seekpos(std::streambuf::pos_type position, std::ios_base::openmode which)
{
    return seekoff(std::streambuf::off_type(position), std::ios_base::beg, which);
}

} // namespace Zar::ResourcesLibrary::Image

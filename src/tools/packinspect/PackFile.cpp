#include "PackFile.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

PackFile PackFile::Load(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Cannot open " + path);
    // One byte more than a pack may hold tells a too-large file without reading all of it.
    std::vector<uint8_t> bytes(PackFormat::kMaxFileSize + 1);
    stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (stream.bad())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Cannot read " + path);
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    bool const tooLarge = bytes.size() > PackFormat::kMaxFileSize;
    if (tooLarge)
        bytes.resize(PackFormat::kMaxFileSize);
    return PackFile(std::move(bytes), tooLarge);
}

PackFile::PackFile(std::vector<uint8_t> bytes, bool tooLarge)
    : _bytes(std::move(bytes))
    , _tooLarge(tooLarge)
{
    if (_bytes.size() >= PackFormat::kSectorSize)
        _header = PackHeader::Parse(_bytes);
}

bool PackFile::IsPack() const { return HasHeader() && _header->HasMagic() && _header->HasKnownFormat(); }

PackHeader const& PackFile::Header() const
{
    ZAR_PRECONDITION(_header.has_value());
    return *_header;
}

std::size_t PackFile::SectorCount() const { return PackFormat::SectorsFor(_bytes.size()); }

std::span<uint8_t const> PackFile::Sector(std::size_t index) const
{
    return Slice(static_cast<uint64_t>(index) * PackFormat::kSectorSize, PackFormat::kSectorSize);
}

std::span<uint8_t const> PackFile::Slice(uint64_t offset, uint64_t length) const
{
    if (offset >= _bytes.size())
        return {};
    std::size_t const start = static_cast<std::size_t>(offset);
    std::size_t const count = static_cast<std::size_t>(std::min<uint64_t>(length, _bytes.size() - start));
    return std::span<uint8_t const>(_bytes).subspan(start, count);
}

std::string PackFile::NotAPackProblem()
{
    return "not a pack: no header sector with the magic \"ZAR\" and the format word "
        + Zar::Lt::Core::Version32(PackFormat::kFormatWord).Text();
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

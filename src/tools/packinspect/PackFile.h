#pragma once

#include "Zar/ResourcesLibrary/Pack/PackHeader.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// The bytes of a pack file, read whole but never more than a pack can hold, and its header when the
// file is long enough to have one.
class PackFile {
public:
    // Throws ResourcesLibraryException "Cannot open " + path when the file cannot be read.
    static PackFile Load(std::string const& path);

    // tooLarge tells that the bytes are the start of a longer file.
    explicit PackFile(std::vector<uint8_t> bytes, bool tooLarge = false);

    std::span<uint8_t const> Bytes() const { return _bytes; }
    std::size_t Size() const { return _bytes.size(); }
    bool IsTooLarge() const { return _tooLarge; }
    bool HasHeader() const { return _header.has_value(); }
    // A header with the magic and the format word this tool reads.
    bool IsPack() const;
    // Requires HasHeader().
    Pack::PackHeader const& Header() const;
    // The problem of a file without a pack's header, as list reports it and extract refuses it.
    static std::string NotAPackProblem();

    // File sectors, a partial last sector included; sector 0 is the header.
    std::size_t SectorCount() const;
    // The bytes of one file sector; the last one may be short.
    std::span<uint8_t const> Sector(std::size_t index) const;
    // The bytes from offset on, at most length of them; shorter when the file ends first.
    std::span<uint8_t const> Slice(uint64_t offset, uint64_t length) const;

private:
    std::vector<uint8_t> _bytes;
    bool _tooLarge;
    std::optional<Pack::PackHeader> _header;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

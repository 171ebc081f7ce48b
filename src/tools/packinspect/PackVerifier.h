#pragma once

#include "PackFile.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Checks a pack against its own header: the magic and format word, whole sectors, the counts against
// the names area, every CRC entry the format maps against a CRC-16 recomputed from the file, the
// sector space and the names area's capacity.
//
// The pack stores no image sizes, so the file sectors are matched to target sectors the way the
// packager lays them out: the last two sectors per screen are the screens' (247 and on), the sectors
// before them are the icons' (first sector and on). A file shorter than its header says keeps the
// icon sectors the header maps and loses screens first, as a truncation does.
class PackVerifier {
public:
    struct SectorCheck {
        uint64_t _target = 0;
        // The file sector, 0 when the sector is missing from the file.
        std::size_t _fileSector = 0;
        std::optional<uint16_t> _stored;
        std::optional<uint16_t> _computed;
        std::string _note;

        bool IsGood() const { return _stored && _computed && *_stored == *_computed && _note.empty(); }
    };

    struct Report {
        std::vector<SectorCheck> _sectors;
        std::vector<std::string> _problems;

        // Bad sectors and other problems together; 0 for a sound pack.
        std::size_t ProblemCount() const;
    };

    static Report Check(PackFile const& pack);
    // One line per sector, one per problem, and the verdict.
    static void Print(Report const& report, std::ostream& out);

private:
    static bool CheckHeader(PackFile const& pack, Report& report);
    static void CheckNames(Pack::PackHeader const& header, Report& report);
    static void CheckSectors(PackFile const& pack, Report& report);
    static void CheckUnmappedEntries(Pack::PackHeader const& header, Report& report);
    static SectorCheck CheckSector(PackFile const& pack, std::size_t fileSector, uint64_t target);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#include "PackVerifier.h"

#include "Zar/Lt/Core/Crc16.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <set>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

namespace {

std::string Hex(uint64_t value, int width)
{
    std::ostringstream text;
    text << std::uppercase << std::hex << std::setw(width) << std::setfill('0') << value;
    return text.str();
}

std::string Optional16(std::optional<uint16_t> const& value) { return value ? Hex(*value, 4) : "----"; }

} // namespace

std::size_t PackVerifier::Report::ProblemCount() const
{
    auto const bad
        = std::count_if(_sectors.begin(), _sectors.end(), [](SectorCheck const& s) { return !s.IsGood(); });
    return static_cast<std::size_t>(bad) + _problems.size();
}

PackVerifier::Report PackVerifier::Check(PackFile const& pack)
{
    Report report;
    if (!CheckHeader(pack, report))
        return report;
    CheckNames(pack.Header(), report);
    CheckSectors(pack, report);
    CheckUnmappedEntries(pack.Header(), report);
    return report;
}

bool PackVerifier::CheckHeader(PackFile const& pack, Report& report)
{
    if (pack.IsTooLarge())
        report._problems.push_back("the file is larger than a pack can be ("
            + std::to_string(PackFormat::kMaxFileSize) + " bytes: the header sector and the "
            + std::to_string(PackFormat::kStoreSectors) + "-sector store)");
    if (!pack.HasHeader()) {
        report._problems.push_back("the file holds " + std::to_string(pack.Size()) + " bytes, less than the "
            + std::to_string(PackFormat::kSectorSize) + "-byte header sector");
        return false;
    }
    PackHeader const& header = pack.Header();
    if (!header.HasMagic()) {
        report._problems.push_back("wrong magic "
            + Hex(PackFormat::ReadU32(pack.Bytes(), PackFormat::kMagicOffset), 8)
            + ": a pack starts with the bytes 5A 41 52 00 (\"ZAR\" and a zero byte)");
        return false;
    }
    if (!header.HasKnownFormat()) {
        report._problems.push_back("unknown format word " + Hex(header._format, 8) + ", expected "
            + Hex(PackFormat::kFormatWord, 8));
        return false;
    }
    if (pack.Size() % PackFormat::kSectorSize != 0)
        report._problems.push_back("the file size " + std::to_string(pack.Size())
            + " is not a whole number of " + std::to_string(PackFormat::kSectorSize) + "-byte sectors");
    if (header._firstSector > PackFormat::kSectorNumberMask)
        report._problems.push_back(
            "the first sector field " + std::to_string(header._firstSector) + " does not fit in 16 bits");
    return true;
}

void PackVerifier::CheckNames(PackHeader const& header, Report& report)
{
    for (auto const& problem : header._nameProblems)
        report._problems.push_back(problem);
    uint64_t const images = static_cast<uint64_t>(header._iconCount) + header._screenCount;
    if (header._namesCount != images)
        report._problems.push_back("the names area holds " + std::to_string(header._namesCount)
            + " names for " + std::to_string(header._iconCount) + " icons and "
            + std::to_string(header._screenCount) + " screens");
}

void PackVerifier::CheckSectors(PackFile const& pack, Report& report)
{
    PackHeader const& header = pack.Header();
    uint64_t const dataSectors = pack.SectorCount() - 1;
    uint64_t const mappedIcons = PackFormat::MappedIconSectors(header._iconCount);
    uint64_t const mappedScreens = PackFormat::MappedScreenSectors(header._screenCount);
    bool const whole = dataSectors >= mappedIcons + mappedScreens;
    uint64_t const iconSectors = whole ? dataSectors - mappedScreens : std::min(mappedIcons, dataSectors);
    uint64_t const screenSectors = dataSectors - iconSectors;

    if (!whole)
        report._problems.push_back("the header maps " + std::to_string(mappedIcons) + " icon and "
            + std::to_string(mappedScreens) + " screen sectors, the file holds "
            + std::to_string(dataSectors));
    else if (iconSectors != mappedIcons)
        report._problems.push_back("the file holds " + std::to_string(iconSectors)
            + " icon sectors, the header maps " + std::to_string(mappedIcons) + " ((icons + 9) / 10)");

    auto const iconTarget
        = [&](uint64_t i) { return uint64_t { PackFormat::IconSector(header._firstSector, i) }; };
    auto const screenTarget = [](uint64_t j) { return PackFormat::ScreenSector(j); };

    for (uint64_t i = 0; i < iconSectors; ++i)
        report._sectors.push_back(CheckSector(pack, static_cast<std::size_t>(1 + i), iconTarget(i)));
    for (uint64_t j = 0; j < screenSectors; ++j)
        report._sectors.push_back(
            CheckSector(pack, static_cast<std::size_t>(1 + iconSectors + j), screenTarget(j)));

    // The table cannot describe more than the store, which also bounds these loops when counts lie.
    for (uint64_t i = iconSectors; i < mappedIcons && i < PackFormat::kStoreSectors; ++i)
        report._sectors.push_back({ iconTarget(i), 0, std::nullopt, std::nullopt, "missing from the file" });
    for (uint64_t j = screenSectors; j < mappedScreens && j < PackFormat::kStoreSectors; ++j)
        report._sectors.push_back(
            { screenTarget(j), 0, std::nullopt, std::nullopt, "missing from the file" });

    std::set<uint64_t> seen;
    for (auto const& sector : report._sectors)
        if (!seen.insert(sector._target).second)
            report._problems.push_back(
                "two sectors map to the same CRC entry " + std::to_string(sector._target));
    auto const firstIcons = report._sectors.begin();
    bool const iconsReachScreens
        = std::any_of(firstIcons, firstIcons + static_cast<std::ptrdiff_t>(iconSectors),
            [](SectorCheck const& s) { return s._target >= PackFormat::kFirstScreenSector; });
    if (iconsReachScreens)
        report._problems.push_back("the icon sectors " + std::to_string(iconTarget(0)) + " to "
            + std::to_string(iconTarget(iconSectors - 1)) + " do not all stay below "
            + std::to_string(PackFormat::kFirstScreenSector) + ", where the screens begin");
}

PackVerifier::SectorCheck PackVerifier::CheckSector(
    PackFile const& pack, std::size_t fileSector, uint64_t target)
{
    SectorCheck check { target, fileSector, std::nullopt, std::nullopt, "" };
    if (target < PackFormat::kStoreSectors)
        check._stored = pack.Header().CrcEntry(target);
    else
        check._note = "past the " + std::to_string(PackFormat::kStoreSectors) + "-sector store";
    auto const bytes = pack.Sector(fileSector);
    if (bytes.size() == PackFormat::kSectorSize)
        check._computed = Zar::Lt::Core::Crc16().Value(bytes.data(), static_cast<unsigned>(bytes.size()));
    else
        check._note = "cut short: " + std::to_string(bytes.size()) + " of "
            + std::to_string(PackFormat::kSectorSize) + " bytes";
    return check;
}

void PackVerifier::CheckUnmappedEntries(PackHeader const& header, Report& report)
{
    std::set<uint64_t> mapped;
    for (auto const& sector : report._sectors)
        mapped.insert(sector._target);
    for (std::size_t s = 0; s < header._crcTable.size(); ++s)
        if (header._crcTable[s] != 0 && !mapped.contains(s))
            report._problems.push_back("CRC entry " + std::to_string(s) + " holds "
                + Hex(header._crcTable[s], 4) + " but no sector of the file maps to it");
}

void PackVerifier::Print(Report const& report, std::ostream& out)
{
    if (!report._sectors.empty())
        out << "sector  file  stored  computed  result\n";
    for (auto const& sector : report._sectors) {
        out << std::setw(6) << sector._target << "  " << std::setw(4)
            << (sector._fileSector ? std::to_string(sector._fileSector) : "-") << "  " << std::setw(6)
            << Optional16(sector._stored) << "  " << std::setw(8) << Optional16(sector._computed) << "  "
            << (sector.IsGood() ? "OK" : "BAD");
        if (!sector._note.empty())
            out << " (" << sector._note << ")";
        out << '\n';
    }
    for (auto const& problem : report._problems)
        out << "problem: " << problem << '\n';
    std::size_t const problems = report.ProblemCount();
    if (problems == 0)
        out << "verdict: OK, " << report._sectors.size() << " sectors match their CRC\n";
    else
        out << "verdict: BAD, " << problems << (problems == 1 ? " problem\n" : " problems\n");
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

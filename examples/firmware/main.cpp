// firmware-demo: reads oled.pack the way the remote controller's firmware does before it draws from
// it, and names its icons through the generated sources.
//
//   firmware-demo oled.pack
//
// It checks the header's magic and format word, the counts against the generated enumerations, every
// sector against the header's CRC table and every icon name against IconsHelper, then prints one line
// per icon: its enumerator, its name and the sector it lies in. Exit status 0 when all of it holds,
// 1 on any mismatch.
//
// The layout below is the firmware's own copy of the pack format: a device build cannot include the
// tool's sources, so this file is written from the format alone, as firmware would be.

#include "IconHelper.h"
#include "Icons.h"
#include "Screens.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

using namespace Zar::RemoteButtonsConfiguration;
using Zar::RemoteController::Features::IconsHelper;

namespace {

constexpr std::size_t kSectorSize = 4096;
constexpr unsigned char kMagic[4] = { 'Z', 'A', 'R', 0 };
constexpr uint32_t kFormatWord = 0x00050100;
constexpr std::size_t kFormatOffset = 4;
constexpr std::size_t kFirstSectorOffset = 12;
constexpr std::size_t kIconCountOffset = 16;
constexpr std::size_t kScreenCountOffset = 20;
constexpr std::size_t kCrcTableOffset = 24;
constexpr uint32_t kCrcTableEntries = 256;
constexpr std::size_t kNamesCountOffset = 540;
constexpr std::size_t kNamesOffset = 544;
constexpr uint32_t kFirstScreenSector = 247;
// Icons of 32 x 24 go ten to a sector, screens of 256 x 64 take two sectors each.
constexpr uint32_t kIconsPerSector = 10;
constexpr uint32_t kSectorsPerScreen = 2;

uint32_t ReadU32(std::vector<unsigned char> const& pack, std::size_t offset)
{
    return uint32_t { pack[offset] } | uint32_t { pack[offset + 1] } << 8
        | uint32_t { pack[offset + 2] } << 16 | uint32_t { pack[offset + 3] } << 24;
}

uint16_t ReadU16(std::vector<unsigned char> const& pack, std::size_t offset)
{
    return static_cast<uint16_t>(pack[offset] | pack[offset + 1] << 8);
}

// CRC-16 with the polynomial 0x8005, bits taken low first, starting from 0.
uint16_t Crc16(unsigned char const* bytes, std::size_t count)
{
    uint16_t crc = 0;
    for (std::size_t i = 0; i < count; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? static_cast<uint16_t>((crc >> 1) ^ 0xA001) : static_cast<uint16_t>(crc >> 1);
    }
    return crc;
}

class PackCheck {
public:
    explicit PackCheck(std::vector<unsigned char> pack)
        : _pack(std::move(pack))
    {
    }

    bool Run()
    {
        if (!CheckHeader())
            return false;
        CheckSectors();
        CheckIcons();
        return _mismatches == 0;
    }

private:
    bool CheckHeader()
    {
        if (_pack.size() < kSectorSize || _pack.size() % kSectorSize != 0)
            return Fail("the pack is " + std::to_string(_pack.size()) + " bytes, not whole sectors");
        if (std::memcmp(_pack.data(), kMagic, sizeof kMagic) != 0)
            return Fail("the pack does not start with ZAR");
        if (ReadU32(_pack, kFormatOffset) != kFormatWord)
            return Fail("the pack's format word is not 0x00050100");
        _firstSector = ReadU32(_pack, kFirstSectorOffset);
        _icons = ReadU32(_pack, kIconCountOffset);
        _screens = ReadU32(_pack, kScreenCountOffset);
        if (_icons != Icons::Count || _screens != Screens::Count)
            return Fail("the pack holds " + std::to_string(_icons) + " icons and " + std::to_string(_screens)
                + " screens, the generated sources " + std::to_string(Icons::Count) + " and "
                + std::to_string(Screens::Count));
        std::size_t const sectors = 1 + IconSectors() + _screens * kSectorsPerScreen;
        if (_pack.size() != sectors * kSectorSize)
            return Fail("the pack has " + std::to_string(_pack.size() / kSectorSize) + " sectors, not "
                + std::to_string(sectors));
        return true;
    }

    uint32_t IconSectors() const { return (_icons + kIconsPerSector - 1) / kIconsPerSector; }

    // Sector 0 of the file is the header; the icon sectors go to the store from the first sector on,
    // the screen sectors from sector 247 on.
    uint32_t TargetSector(uint32_t fileSector) const
    {
        uint32_t const index = fileSector - 1;
        return index < IconSectors() ? _firstSector + index : kFirstScreenSector + (index - IconSectors());
    }

    void CheckSectors()
    {
        uint32_t const sectors = static_cast<uint32_t>(_pack.size() / kSectorSize);
        for (uint32_t sector = 1; sector < sectors; ++sector) {
            uint32_t const target = TargetSector(sector);
            if (target >= kCrcTableEntries) {
                Fail("sector " + std::to_string(target) + " lies outside the CRC table");
                continue;
            }
            uint16_t const expected = ReadU16(_pack, kCrcTableOffset + 2 * target);
            uint16_t const actual = Crc16(&_pack[sector * kSectorSize], kSectorSize);
            if (actual != expected)
                Fail("sector " + std::to_string(target) + " has CRC " + std::to_string(actual)
                    + ", the header " + std::to_string(expected));
        }
        std::printf("%u sectors match the header's CRC table\n", sectors - 1);
    }

    // The names follow one another from offset 544, each a length byte and its bytes, icons first.
    void CheckIcons()
    {
        std::size_t offset = kNamesOffset;
        uint32_t const names = ReadU32(_pack, kNamesCountOffset);
        for (uint32_t index = 0; index < _icons && index < names && offset < kSectorSize; ++index) {
            std::size_t const length = _pack[offset];
            std::string const packName(reinterpret_cast<char const*>(&_pack[offset + 1]),
                std::min(length, kSectorSize - offset - 1));
            offset += 1 + length;
            std::string const name = IconsHelper::GetString(index);
            if (name != packName)
                Fail("icon " + std::to_string(index) + " is " + packName + " in the pack, " + name
                    + " in IconsHelper");
            std::printf("Icon %u %s sector %u\n", Icons::First + index, name.c_str(),
                _firstSector + index / kIconsPerSector);
        }
    }

    bool Fail(std::string const& why)
    {
        std::fprintf(stderr, "firmware-demo: mismatch: %s\n", why.c_str());
        ++_mismatches;
        return false;
    }

    std::vector<unsigned char> _pack;
    uint32_t _firstSector = 0;
    uint32_t _icons = 0;
    uint32_t _screens = 0;
    int _mismatches = 0;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: firmware-demo oled.pack\n");
        return 2;
    }
    std::ifstream file(argv[1], std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "firmware-demo: cannot open %s\n", argv[1]);
        return 2;
    }
    std::vector<unsigned char> pack((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    if (!PackCheck(std::move(pack)).Run())
        return 1;
    std::printf("%s: the pack and the generated sources agree\n", argv[1]);
    return 0;
}

// End to end: the fuzzer's bytes become a small bmp/ tree (icons and screens with their list files,
// well-formed and damaged BMP files, text images, missing files, names with forbidden characters,
// junk list lines) in a scratch folder, and the whole Build runs on it. Build may fail only by
// exception; afterwards the pack must hold what holds for any input:
//   - the header sector is reserved: the file holds at least 4096 bytes;
//   - a written header has the magic, the format word, the version and first sector given, and
//     counts that match the names stored in its names area, and the file is a whole number of
//     4096-byte sectors;
//   - a header that was not written (Build threw while closing the last sector or laying out the
//     header) is still all 0xFF. That happens when icons of mixed sizes make one run past the end
//     of its sector, which the exporter then refuses to close ("PreCondition tail > 0"): the
//     sectors after it are not padded, and the file need not be whole sectors;
//   - when every image that loads has the display's geometry (32 x 24 icons of 384 bytes, 256 x 64
//     screens of 8192 bytes) and a UTF-8 name, the layout the header describes is exact and every
//     recorded CRC matches its sector. Other inputs lie outside the pack's layout contract, so only
//     the checks above apply: the header assumes ten icons to a sector and two sectors to a screen,
//     and a screen that fails after closing the icon sector (because the icons' generated files
//     cannot be written for a name that is not UTF-8) leaves that sector short of ten icons.

#include "BmpTree.h"
#include "BmpWriter.h"
#include "FuzzCheck.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Core/Version32.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"

#include <utf8.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

using TestSupport::BmpTree;
using Zar::Lt::Core::Version32;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::InputSequence;
using Zar::ResourcesLibrary::Image::MutableImage;

// The build driver of the packager tool, compiled into this target from the tool's own source.
void Build(Version32 const& version, std::string const& root, std::string const& outputFolder, int sector,
    FileFormat format);

namespace {

namespace fs = std::filesystem;

// The pack's layout is written out here with its own numbers on purpose, not taken from the product's
// PackFormat, so that a wrong constant there is caught by these checks instead of shared by them.
constexpr size_t kSectorSize = 4096;
constexpr size_t kIconSize = 384;
constexpr size_t kScreenSize = 8192;
constexpr int kFirstScreenSector = 247;
constexpr size_t kNamesCapacity = 3552;

using Bytes = std::vector<uint8_t>;

// CRC-16/ARC computed bit by bit, independently of the table-driven one under test.
uint16_t Crc16(uint8_t const* data, size_t size)
{
    uint16_t crc = 0;
    for (size_t i = 0; i < size; ++i) {
        crc ^= data[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) ? static_cast<uint16_t>((crc >> 1) ^ 0xA001) : static_cast<uint16_t>(crc >> 1);
    }
    return crc;
}

uint32_t Le32(Bytes const& bytes, size_t offset)
{
    return uint32_t { bytes[offset] } | uint32_t { bytes[offset + 1] } << 8
        | uint32_t { bytes[offset + 2] } << 16 | uint32_t { bytes[offset + 3] } << 24;
}

uint16_t Le16(Bytes const& bytes, size_t offset)
{
    return static_cast<uint16_t>(bytes[offset] | bytes[offset + 1] << 8);
}

// An uncompressed BMP of 1 or 4 bits per pixel, pixels taken round-robin from the fuzzer's seed.
Bytes MakeBmp(int32_t width, int32_t height, uint16_t bits, bool whiteFirst, Bytes const& seed)
{
    using TestSupport::BmpWriter;
    auto const order = whiteFirst ? BmpWriter::WhiteFirst : BmpWriter::BlackFirst;
    BmpWriter bmp = bits == 1 ? BmpWriter::Mono(width, {}, order) : BmpWriter::Gray4(width, {}, order);
    size_t next = 0;
    bmp.FillRows(
        height, [&seed, &next] { return seed.empty() ? uint8_t { 0 } : seed[next++ % seed.size()]; });
    return bmp.Bytes();
}

enum class Content { Icon, Screen, AnySize, DamagedIcon, RawBytes, TextImage, Missing, Count };

struct Entry {
    std::string listLine;
    std::string fileName;
    Bytes bytes;
    bool missing = false;
};

// Reads the fuzzer's bytes front to back; past the end every value reads as 0. The order of the
// fields is the input format that fuzz/make-seed-corpus writes its seeds in.
class ByteReader {
public:
    ByteReader(uint8_t const* data, size_t size)
        : _data(data)
        , _size(size)
    {
    }

    uint8_t Byte() { return _position < _size ? _data[_position++] : 0; }
    bool Bool() { return (Byte() & 1) != 0; }
    uint16_t U16() { return static_cast<uint16_t>(Byte() | Byte() << 8); }
    uint32_t U32() { return uint32_t { U16() } | uint32_t { U16() } << 16; }

    // A value from min to max; ranges of up to 256 values take one byte, larger ones two.
    int InRange(int min, int max)
    {
        auto const span = static_cast<unsigned>(max - min) + 1;
        unsigned const raw = span <= 256 ? Byte() : U16();
        return min + static_cast<int>(raw % span);
    }

    // A length of two bytes (cut to maxSize) followed by that many bytes, as far as they go.
    Bytes Blob(size_t maxSize)
    {
        size_t const wanted = U16() % (maxSize + 1);
        size_t const length = std::min(wanted, _size - _position);
        Bytes blob(_data + _position, _data + _position + length);
        _position += length;
        return blob;
    }

    std::string Text(size_t maxSize)
    {
        Bytes const blob = Blob(maxSize);
        return std::string(blob.begin(), blob.end());
    }

private:
    uint8_t const* _data;
    size_t _size;
    size_t _position = 0;
};

constexpr size_t kMaxSeedSize = 48;
constexpr size_t kMaxFileSize = 16384;

Bytes MakeContent(ByteReader& reader, Content content)
{
    bool const mono = reader.Bool();
    bool const whiteFirst = reader.Bool();
    bool const topDown = reader.Bool();
    uint16_t const bits = mono ? 1 : 4;
    switch (content) {
    case Content::Icon:
        return MakeBmp(32, topDown ? -24 : 24, bits, whiteFirst, reader.Blob(kMaxSeedSize));
    case Content::Screen:
        return MakeBmp(256, topDown ? -64 : 64, 4, whiteFirst, reader.Blob(kMaxSeedSize));
    case Content::AnySize: {
        int32_t const width = reader.InRange(1, 300);
        int32_t const height = reader.InRange(1, 80);
        return MakeBmp(width, topDown ? -height : height, bits, whiteFirst, reader.Blob(kMaxSeedSize));
    }
    case Content::DamagedIcon: {
        Bytes file = MakeBmp(32, topDown ? -24 : 24, bits, whiteFirst, reader.Blob(kMaxSeedSize));
        int const changes = reader.InRange(1, 4);
        for (int i = 0; i < changes; ++i) {
            auto const offset = static_cast<size_t>(reader.InRange(0, 14 + 40 + 8));
            file[offset] = reader.Byte();
        }
        if (reader.Bool())
            file.resize(std::min<size_t>(reader.U16(), file.size()));
        return file;
    }
    case Content::RawBytes:
    case Content::TextImage:
        return reader.Blob(kMaxFileSize);
    default:
        return {};
    }
}

// A file name from the fuzzer's text, kept to characters a folder entry can hold. The forbidden
// characters of image names stay in: the exporter must refuse them, not the file system.
std::string FileStem(ByteReader& reader)
{
    std::string stem = reader.Text(200);
    stem.erase(std::remove_if(stem.begin(), stem.end(),
                   [](char c) { return c == '/' || c == '\0' || c == '\n' || c == '\r'; }),
        stem.end());
    if (stem.empty() || stem == "." || stem == ".." || stem.find_first_not_of(" \t") == std::string::npos)
        stem = "image";
    return stem;
}

Entry MakeEntry(ByteReader& reader)
{
    auto const content = static_cast<Content>(reader.InRange(0, static_cast<int>(Content::Count) - 1));
    Entry entry;
    std::string const stem = FileStem(reader);
    static constexpr std::array<char const*, 4> kBmpSuffixes = { "", ".bmp", ".BMP", ".b" };
    auto const suffixChoice = static_cast<size_t>(reader.InRange(0, kBmpSuffixes.size() - 1));
    std::string const suffix = content == Content::TextImage ? ".txt" : kBmpSuffixes[suffixChoice];
    entry.fileName = stem + suffix;
    // A list line without a usable extension is loaded as a BMP file of that name plus ".bmp".
    if (suffix.empty() && stem.find('.') == std::string::npos)
        entry.fileName += ".bmp";
    bool const leadingBlanks = reader.Bool();
    bool const trailingReturn = reader.Bool();
    entry.listLine = (leadingBlanks ? "  " : "") + stem + suffix + (trailingReturn ? " \r" : "");
    entry.bytes = MakeContent(reader, content);
    entry.missing = content == Content::Missing;
    return entry;
}

Bytes ReadFile(fs::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

// Writes one image folder of the tree with its list file; a few junk lines of any bytes may be
// mixed in.
void WriteFolder(ByteReader& reader, BmpTree const& tree, std::string const& folder, int maxImages)
{
    std::string list;
    int const images = reader.InRange(0, maxImages);
    for (int i = 0; i < images; ++i) {
        Entry const entry = MakeEntry(reader);
        if (!entry.missing)
            tree.Raw(folder + "/" + entry.fileName, entry.bytes);
        list += entry.listLine + "\n";
        if (reader.InRange(0, 7) == 0)
            list += reader.Text(300) + "\n";
    }
    if (reader.Bool() && !list.empty())
        list.pop_back();
    tree.Raw(folder + "/list.txt", list);
}

// Loads a folder's list exactly as Build will (same sequence, same loaders) and tells whether
// every image that loads has one of the two sizes of the layout contract and a UTF-8 name.
bool LoadsWithinContract(fs::path const& folder)
{
    InputSequence sequence(FileFormat::None, folder.string() + "/", "%04", true);
    bool within = true;
    try {
        sequence.AddList(folder.string() + "/list.txt");
        sequence.LoadAll(
            [&within](int, std::string_view const& name, MutableImage& image) {
                within = within && (image.GetSize() == kIconSize || image.GetSize() == kScreenSize)
                    && utf8::is_valid(name.begin(), name.end());
                return true;
            },
            1);
    } catch (std::exception const&) {
        // A missing list or failed items pack nothing; they do not change the layout.
    }
    return within;
}

struct Names {
    uint32_t count = 0;
    uint32_t used = 0;
};

Names CheckNamesArea(Bytes const& pack)
{
    Names names { Le32(pack, 540), Le32(pack, 536) };
    ZAR_FUZZ_CHECK(names.used <= kNamesCapacity);
    size_t position = 0;
    for (uint32_t i = 0; i < names.count; ++i) {
        ZAR_FUZZ_CHECK(position < names.used);
        position += 1 + pack[544 + position];
    }
    ZAR_FUZZ_CHECK(position == names.used);
    for (size_t i = 544 + names.used; i < kSectorSize; ++i)
        ZAR_FUZZ_CHECK(pack[i] == 0);
    return names;
}

uint16_t SectorCrc(Bytes const& pack, size_t fileSector)
{
    return Crc16(pack.data() + fileSector * kSectorSize, kSectorSize);
}

void CheckExactLayout(Bytes const& pack, uint32_t firstSector, uint32_t icons, uint32_t screens)
{
    uint32_t const iconSectors = (icons + 9) / 10;
    ZAR_FUZZ_CHECK(pack.size() == kSectorSize * (1 + iconSectors + 2 * screens));
    std::array<uint16_t, 256> expected {};
    for (uint32_t i = 0; i < iconSectors; ++i)
        expected[(firstSector + i) & 0xFF] = SectorCrc(pack, 1 + i);
    for (uint32_t j = 0; j < 2 * screens && kFirstScreenSector + j < 256; ++j)
        expected[kFirstScreenSector + j] = SectorCrc(pack, 1 + iconSectors + j);
    for (size_t s = 0; s < expected.size(); ++s)
        ZAR_FUZZ_CHECK(Le16(pack, 24 + 2 * s) == expected[s]);
}

void CheckPack(Bytes const& pack, Version32 const& version, int sector, bool built, bool withinContract)
{
    ZAR_FUZZ_CHECK(pack.size() >= kSectorSize);
    if (std::memcmp(pack.data(), "ZAR\0", 4) != 0) {
        // The header is written last; a Build that stopped before it leaves it reserved.
        ZAR_FUZZ_CHECK(!built);
        ZAR_FUZZ_CHECK(
            std::all_of(pack.begin(), pack.begin() + kSectorSize, [](uint8_t b) { return b == 0xFF; }));
        return;
    }
    ZAR_FUZZ_CHECK(pack.size() % kSectorSize == 0);
    ZAR_FUZZ_CHECK(Le32(pack, 4) == 0x00050100);
    ZAR_FUZZ_CHECK(Le32(pack, 8) == version.Value());
    ZAR_FUZZ_CHECK(Le32(pack, 12) == (static_cast<uint32_t>(sector) & 0xFFFF));
    uint32_t const icons = Le32(pack, 16);
    uint32_t const screens = Le32(pack, 20);
    Names const names = CheckNamesArea(pack);
    ZAR_FUZZ_CHECK(names.count == icons + screens);
    if (withinContract)
        CheckExactLayout(pack, Le32(pack, 12), icons, screens);
}

class Silence {
public:
    // Build prints its summary and CRC lines; the fuzzer's own output goes to standard error.
    Silence()
    {
        int const null = open("/dev/null", O_WRONLY);
        if (null >= 0) {
            dup2(null, STDOUT_FILENO);
            close(null);
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    static Silence const silence;
    static Zar::Lt::Core::ScratchFolder const scratch("zar-fuzz");
    fs::path const root = scratch.Path() / "bmp";
    fs::path const output = scratch.Path() / "out";
    fs::remove_all(root);
    fs::remove_all(output);
    fs::create_directories(output);

    ByteReader reader(data, size);
    // First sectors that keep every icon sector below the screens' fixed 247, as the tool requires.
    int const sector = reader.InRange(0, 200);
    Version32 const version(reader.U32());
    BmpTree const tree = BmpTree::In(scratch.Path());
    WriteFolder(reader, tree, "icons", 24);
    if (reader.Bool())
        WriteFolder(reader, tree, "screens", 4);

    bool const withinContract = LoadsWithinContract(root / "icons") && LoadsWithinContract(root / "screens");
    bool built = true;
    try {
        Build(version, root.string() + "/", output.string() + "/", sector, FileFormat::None);
    } catch (std::exception const&) {
        built = false;
    }
    CheckPack(ReadFile(output / "oled.pack"), version, sector, built, withinContract);
    return 0;
}

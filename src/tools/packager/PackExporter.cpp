#include "PackExporter.h"

#include "CppEnumerationOutput.h"
#include "HelperEnumerationOutput.h"
#include "PythonCommandsOutput.h"
#include "PythonEnumerationOutput.h"

#include "Zar/Lt/Core/Path.h"
#include "Zar/Lt/Core/StringCollection/RawPStringArray.h"
#include "Zar/Lt/Core/StringExtension/Case.h"
#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ClonePaint4Bpp.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <array>
#include <cstring>
#include <iomanip>
#include <iostream>

namespace Zar::ResourcesLibrary::Tools {

namespace {

using Zar::ResourcesLibrary::Image::ClonePaint4Bpp;
using Zar::ResourcesLibrary::Image::Color4Bpp;
using Zar::ResourcesLibrary::Image::MutableImage;

// The places recorded in the exporter's own failures are fixed, so that logs stay comparable
// between builds of the tool.
constexpr char kSourceFile[] = "src/tools/packager/PackExporter";
constexpr uint32_t kCEnumerationLine = 111;
constexpr uint32_t kPythonEnumerationLine = 122;
constexpr uint32_t kCommandsLine = 134;
constexpr uint32_t kHelperLine = 145;
constexpr uint32_t kErrorsLine = 193;
constexpr uint32_t kNameLine = 264;
// The function texts too, so that they do not depend on the compiler's spelling of a signature.
constexpr char kCloseFunction[] = "void Zar::ResourcesLibrary::Tools::PackExporter::Close()";
constexpr char kCloseSectorFunction[] = "void Zar::ResourcesLibrary::Tools::PackExporter::CloseSector()";
constexpr char kWriteHeaderFunction[] = "void Zar::ResourcesLibrary::Tools::PackExporter::WriteHeader()";
constexpr char kProcessIconFunction[] = "void Zar::ResourcesLibrary::Tools::PackExporter::ProcessIcon("
                                        "int, const string_view&, Zar::ResourcesLibrary::Image::MutableImage&)";

// Names become identifiers in the generated C++ and Python sources.
constexpr char kForbiddenNameCharacters[] = "-\".,'";
constexpr std::string_view kSelected = "_Selected";

constexpr uint8_t kPadding = 0xFF;
constexpr uint32_t kMagic = 0x0052415A;        // "ZAR" and a zero byte, read little-endian.
constexpr uint32_t kFormatWord = 0x00050100;   // 0.5.1.0 as a version.
constexpr int kCrcTableEntries = 256;
constexpr int kIconsPerSectorInSummary = 10;
constexpr int kSectorsPerScreen = 2;

// Header field offsets.
constexpr std::size_t kMagicOffset = 0;
constexpr std::size_t kFormatOffset = 4;
constexpr std::size_t kVersionOffset = 8;
constexpr std::size_t kFirstSectorOffset = 12;
constexpr std::size_t kIconsCountOffset = 16;
constexpr std::size_t kScreensCountOffset = 20;
constexpr std::size_t kCrcTableOffset = 24;
constexpr std::size_t kNamesOffset = 536;

using Header = std::array<uint8_t, PackExporter::kSectorSize>;
using NamesArea = Zar::Lt::Core::RawPStringArray<PackExporter::kNamesCapacity>;
static_assert(kNamesOffset + sizeof(NamesArea) == PackExporter::kSectorSize);

void PutUint16(Header& header, std::size_t offset, uint16_t value)
{
    header[offset] = static_cast<uint8_t>(value);
    header[offset + 1] = static_cast<uint8_t>(value >> 8);
}

void PutUint32(Header& header, std::size_t offset, uint32_t value)
{
    for (std::size_t i = 0; i < 4; ++i)
        header[offset + i] = static_cast<uint8_t>(value >> (8 * i));
}

void PutCrcEntry(Header& header, uint32_t sector, uint16_t crc)
{
    // The target store has 256 sectors; a sector number beyond it has no entry to hold its CRC.
    if (sector < kCrcTableEntries)
        PutUint16(header, kCrcTableOffset + 2 * sector, crc);
}

// A first sector below 2 or near the limits of int must give a wrapped number, never an overflow.
int32_t WrappingAdd(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
}

int32_t WrappingMultiply(int32_t a, int32_t b)
{
    return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

} // namespace

PackExporter::PackExporter(Zar::Lt::Core::Version32 const& version, int32_t firstSector)
    : _version(version)
    , _firstSector(firstSector)
    , _sectorIndex(1)
    , _offset(0)
    , _iconsCount(0)
    , _screensCount(0)
    , _frameColor(Color4Bpp::Level3)
{
}

PackExporter::~PackExporter()
{
    try {
        Close();
    } catch (...) {
        // A destructor must not throw; a caller that wants the failures calls Close() itself.
    }
}

void PackExporter::Open(std::string const& path)
{
    auto const slash = path.rfind('/');
    _outputFolder = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    // A pack that cannot be created is not reported here: the writes then fail quietly and the
    // build ends without a pack, which is how the tool has always behaved.
    _packFile.open(path, std::ios::out | std::ios::trunc);
    WritePadding(kSectorSize - _offset);
}

void PackExporter::Close()
{
    if (!_packFile.is_open())
        return;
    CloseSector();
    WriteHeader();
    _packFile.close();
    WriteScreensEnumerationFile();
    PrintCrcLine();
    std::string const errors = _errors.str();
    if (!errors.empty())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO_OF(kCloseFunction, kSourceFile, kErrorsLine), errors);
}

void PackExporter::IncrementOffset(int size)
{
    _offset += size;
    // Closing when one more item of the same size would not fit keeps icons whole within a sector.
    if (_offset + size >= kSectorSize)
        CloseSector();
}

void PackExporter::CloseSector()
{
    if (_offset == 0)
        return;
    int const tail = kSectorSize - _offset;
    ZAR_CHECK(PreCondition, tail > 0, "", ZAR_SOURCE_INFO_OF(kCloseSectorFunction, ZAR_SOURCE_FILE, __LINE__));
    WritePadding(tail);
    _crcTable.push_back(_crc.Value(kPadding, static_cast<unsigned>(tail)));
    _crc.Reset();
    _offset = 0;
    ++_sectorIndex;
}

void PackExporter::WriteHeader()
{
    _packFile.seekp(0);

    Header header {};
    uint32_t const firstSector = static_cast<uint32_t>(_firstSector) & 0xFFFF;
    PutUint32(header, kMagicOffset, kMagic);
    PutUint32(header, kFormatOffset, kFormatWord);
    PutUint32(header, kVersionOffset, _version.Value());
    PutUint32(header, kFirstSectorOffset, firstSector);
    PutUint32(header, kIconsCountOffset, static_cast<uint32_t>(_iconsCount));
    PutUint32(header, kScreensCountOffset, static_cast<uint32_t>(_screensCount));

    PrintSummary();

    // The table is laid out as if every icon sector held ten icons and every screen two sectors.
    int32_t const iconSectors = (_iconsCount + 9) / kIconsPerSectorInSummary;
    int32_t const screenSectors = kSectorsPerScreen * _screensCount;
    int64_t const sectorCount = int64_t { iconSectors } + screenSectors;
    ZAR_CHECK(PostCondition, static_cast<size_t>(sectorCount) <= _crcTable.size(), "",
        ZAR_SOURCE_INFO_OF(kWriteHeaderFunction, kSourceFile, 64));

    for (int32_t i = 0; i < iconSectors; ++i)
        PutCrcEntry(header, static_cast<uint32_t>(WrappingAdd(_firstSector, i)) & 0xFFFF, _crcTable[i]);
    for (int32_t j = 0; j < screenSectors; ++j)
        PutCrcEntry(header, static_cast<uint32_t>(kFirstScreenSector + j), _crcTable[iconSectors + j]);

    NamesArea names;
    names.Append(_imageNames);
    std::memcpy(header.data() + kNamesOffset, &names, sizeof names);

    _packFile.write(reinterpret_cast<char const*>(header.data()), static_cast<std::streamsize>(header.size()));
}

void PackExporter::Process(Zar::ResourcesLibrary::Image::InputSequence& sequence)
{
    sequence.LoadAll(
        [this](int index, std::string_view const& name, MutableImage& image) {
            return ProcessImage(index, name, image);
        },
        1);
}

bool PackExporter::ProcessImage(int index, string_view const& name, MutableImage& image)
{
    try {
        if (name.find_first_of(kForbiddenNameCharacters) != string_view::npos)
            throw ResourcesLibraryException(ZAR_SOURCE_INFO_AT(kSourceFile, kNameLine),
                std::string("name cannot contain ") + kForbiddenNameCharacters);
        if (image.GetSize() < static_cast<uint32_t>(kSectorSize))
            ProcessIcon(index, name, image);
        else
            ProcessScreen(index, name, image);
    } catch (std::exception const& e) {
        // One bad image must not hide the others: its failure is reported when the pack is closed.
        _errors << index << ' ' << name << ' ' << e.what() << std::endl;
    }
    return true;
}

void PackExporter::ProcessIcon(int, string_view const& name, MutableImage& image)
{
    ZAR_CHECK(PostCondition, !_screensCount, "Cannot add icons after screens",
        ZAR_SOURCE_INFO_OF(kProcessIconFunction, ZAR_SOURCE_FILE, __LINE__));
    // Sizes and zero-fills an image that has no pixels yet; refuses an image without rows.
    image.GetLine(0);

    ClonePaint4Bpp painter(image, _frameColor);
    uint8_t const* pixels = nullptr;
    // Selected variants carry their own decoration and are packed as drawn.
    if (IsSelectedName(name)) {
        pixels = image.Buffer().data();
    } else {
        painter.DrawFrame(0);
        pixels = painter.GetPixelPointer(0, 0);
    }

    uint32_t const size = image.GetSize();
    _packFile.write(reinterpret_cast<char const*>(pixels), static_cast<std::streamsize>(size));
    _crc.Value(pixels, size);
    IncrementOffset(static_cast<int>(size));

    _imageNames.Append(std::string(name));
    ++_iconsCount;
}

void PackExporter::ProcessScreen(int, string_view const& name, MutableImage& image)
{
    CloseSector();
    // At the first screen the names list holds exactly the icons.
    if (_screensCount == 0)
        WriteIconsEnumerationFile();
    image.GetLine(0);

    uint32_t const size = image.GetSize();
    uint8_t const* pixels = image.Buffer().data();
    _packFile.write(reinterpret_cast<char const*>(pixels), static_cast<std::streamsize>(size));

    int64_t const end = int64_t { _offset } + size;
    _sectorIndex += static_cast<int32_t>(end / kSectorSize);
    _offset = static_cast<int32_t>(end % kSectorSize);

    auto const crcs = Zar::Lt::Core::Crc16::GetValues(pixels, static_cast<int>(size), kSectorSize, kPadding);
    _crcTable.insert(_crcTable.end(), crcs.begin(), crcs.end());
    _crc.Reset();

    _imageNames.Append(std::string(name));
    ++_screensCount;
}

void PackExporter::WriteCEnumerationFile(EnumerationOption const& option, int offset)
{
    auto file = CreateOutputFile(option.name + "s.h", ZAR_SOURCE_INFO_AT(kSourceFile, kCEnumerationLine));
    CppEnumerationOutput output(file, option);
    WriteEnumeration(output, offset);
}

void PackExporter::WritePythonEnumerationFile(EnumerationOption const& option, int offset)
{
    auto file = CreateOutputFile(option.name + "s.py", ZAR_SOURCE_INFO_AT(kSourceFile, kPythonEnumerationLine));
    PythonEnumerationOutput output(file, option);
    WriteEnumeration(output, offset);
    // Lets a test script print the numbers it will use.
    std::string const lower = Zar::Lt::Core::ToLower(std::string_view(option.name));
    file << "value_names = [(" << lower << ".value, " << lower << ".name) for " << lower << " in "
         << option.name << "]\nprint(value_names)\n";
}

void PackExporter::WritePythonCommandFile(EnumerationOption const& option, int offset)
{
    auto file = CreateOutputFile("commands.py", ZAR_SOURCE_INFO_AT(kSourceFile, kCommandsLine));
    PythonCommandsOutput output(file, option);
    WriteEnumeration(output, offset);
}

void PackExporter::WritHelperEnumerationFile(EnumerationOption const& option, int offset)
{
    auto file = CreateOutputFile(option.name + "sHelper.cpp", ZAR_SOURCE_INFO_AT(kSourceFile, kHelperLine));
    HelperEnumerationOutput output(file, option);
    WriteEnumeration(output, offset);
}

void PackExporter::WriteIconsEnumerationFile()
{
    // Icon values continue the numbering of the sectors in front of the icons, ten to a sector.
    EnumerationOption const option { "Icon", WrappingMultiply(WrappingAdd(_firstSector, -2), 10), true };
    WriteCEnumerationFile(option, 0);
    WritePythonEnumerationFile(option, 0);
    WritePythonCommandFile(option, 0);
    WritHelperEnumerationFile(option, 0);
}

void PackExporter::WriteScreensEnumerationFile()
{
    // Screens number from 0; there is no helper and no command for them.
    EnumerationOption const option { "Screen", 0, true };
    int const offset = _imageNames.Count() - _screensCount;
    WriteCEnumerationFile(option, offset);
    WritePythonEnumerationFile(option, offset);
}

std::ofstream PackExporter::CreateOutputFile(std::string const& fileName,
    Zar::Lt::Exceptions::SourceInfo const& source) const
{
    std::string const path = Zar::Lt::Core::Path::Combine(_outputFolder, fileName);
    std::ofstream file(path, std::ios::out | std::ios::binary | std::ios::trunc);
    if (!file.is_open())
        throw ResourcesLibraryException(source, "Cannot save file '" + path + "'");
    return file;
}

void PackExporter::WriteEnumeration(EnumerationOutput& output, int offset) const
{
    output.WriteHeader();
    output.Write(_imageNames, offset);
    output.WriteFooter(output.Count());
}

void PackExporter::WritePadding(int count)
{
    for (int i = 0; i < count; ++i)
        _packFile.put(static_cast<char>(kPadding));
}

void PackExporter::PrintSummary() const
{
    // The summary assumes ten icons a sector, two sectors a screen and the header sector; it is not
    // derived from the sectors actually written.
    int64_t const sectorCount = int64_t { kSectorsPerScreen } * _screensCount + 1
        + (int64_t { _iconsCount } + 9) / kIconsPerSectorInSummary;
    std::cout << unsigned { _version.Major() } << '.' << unsigned { _version.Minor() } << '.'
              << unsigned { _version.Patch() } << '.' << unsigned { _version.Build() } << ", " << _iconsCount
              << " icons at sector " << (static_cast<uint32_t>(_firstSector) & 0xFFFF) << ", " << _screensCount
              << " screens, " << sectorCount << " sectors, " << sectorCount * kSectorSize << " bytes" << std::endl;
}

void PackExporter::PrintCrcLine() const
{
    std::ios_base::fmtflags const flags = std::cout.flags();
    std::streamsize const width = std::cout.width();
    char const fill = std::cout.fill();

    std::cout << "crc:" << std::uppercase << std::hex << std::setfill('0');
    char const* separator = "";
    for (uint16_t const crc : _crcTable) {
        std::cout << separator << std::setw(4) << crc;
        separator = " ";
    }
    std::cout << std::endl;

    std::cout.flags(flags);
    std::cout.width(width);
    std::cout.fill(fill);
}

bool PackExporter::IsSelectedName(string_view name)
{
    // Every '_' that leaves room for "Selected" after it is tested; the first match decides.
    for (std::size_t p = 0; p + kSelected.size() <= name.size(); ++p) {
        if (name.substr(p, kSelected.size()) == kSelected)
            return true;
    }
    return false;
}

} // namespace Zar::ResourcesLibrary::Tools

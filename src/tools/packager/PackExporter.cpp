#include "PackExporter.h"

#include "CppEnumerationOutput.h"
#include "HelperEnumerationOutput.h"
#include "PythonCommandsOutput.h"
#include "PythonEnumerationOutput.h"
#include "SelectedVariantName.h"

#include "Zar/Lt/Core/Path.h"
#include "Zar/Lt/Core/StringExtension/Case.h"
#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ClonePaint4Bpp.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"
#include "Zar/ResourcesLibrary/Pack/PackHeader.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools {

namespace {

using Zar::ResourcesLibrary::Image::ClonePaint4Bpp;
using Zar::ResourcesLibrary::Image::Color4Bpp;
using Zar::ResourcesLibrary::Image::MutableImage;
using Zar::ResourcesLibrary::Pack::PackFormat;
using Zar::ResourcesLibrary::Pack::PackHeader;

// The places recorded in the exporter's own failures are fixed, so that logs stay comparable
// between builds of the tool.
constexpr uint32_t kCrcTableLine = 64;
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
constexpr char kProcessIconFunction[]
    = "void Zar::ResourcesLibrary::Tools::PackExporter::ProcessIcon("
      "int, const string_view&, Zar::ResourcesLibrary::Image::MutableImage&)";

// The exporter counts the bytes of a sector in int, as its offset member does.
constexpr int kSectorSize = static_cast<int>(PackFormat::kSectorSize);

void PutCrcEntry(PackHeader& header, uint64_t sector, uint16_t crc)
{
    // A sector number beyond the target's store has no entry to hold its CRC.
    if (sector < PackFormat::kStoreSectors)
        header._crcTable[sector] = crc;
}

// The first icon sector as the header and the summary give it: a 16-bit sector number. Any int is
// taken, a negative one as its 32-bit pattern.
uint32_t FirstSectorField(int32_t firstSector)
{
    return PackFormat::IconSector(static_cast<uint32_t>(firstSector), 0);
}

} // namespace

PackExporter::PackExporter(Zar::Lt::Core::Version32 const& version, int32_t firstSector, std::ostream& out)
    : _version(version)
    , _firstSector(firstSector)
    , _sectorIndex(1)
    , _offset(0)
    , _iconsCount(0)
    , _screensCount(0)
    , _frameColor(Color4Bpp::Level3)
    , _out(out)
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
    // A pack that cannot be created is not reported here. The packager tells how a build went only
    // through what it prints and the files it leaves, never through its exit status: with the file
    // not open every write fails quietly and Close() does nothing, so such a build prints no summary
    // and leaves no pack, and that is what its caller checks.
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
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO_OF(kCloseFunction, ZAR_SOURCE_FILE, kErrorsLine), errors);
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
    ZAR_CHECK(
        PreCondition, tail > 0, "", ZAR_SOURCE_INFO_OF(kCloseSectorFunction, ZAR_SOURCE_FILE, __LINE__));
    WritePadding(tail);
    _crcTable.push_back(_crc.Value(PackFormat::kPadding, static_cast<unsigned>(tail)));
    _crc.Reset();
    _offset = 0;
    ++_sectorIndex;
}

void PackExporter::WriteHeader()
{
    _packFile.seekp(0);

    PackHeader header;
    header._magic = PackFormat::kMagic;
    header._format = PackFormat::kFormatWord;
    header._version = _version;
    header._firstSector = FirstSectorField(_firstSector);
    header._iconCount = static_cast<uint32_t>(_iconsCount);
    header._screenCount = static_cast<uint32_t>(_screensCount);

    PrintSummary();

    // The table is laid out as if every icon sector held ten icons and every screen two sectors.
    uint64_t const iconSectors = PackFormat::MappedIconSectors(static_cast<uint32_t>(_iconsCount));
    uint64_t const screenSectors = PackFormat::MappedScreenSectors(static_cast<uint32_t>(_screensCount));
    uint64_t const sectorCount = iconSectors + screenSectors;
    ZAR_CHECK(PostCondition, static_cast<size_t>(sectorCount) <= _crcTable.size(), "",
        ZAR_SOURCE_INFO_OF(kWriteHeaderFunction, ZAR_SOURCE_FILE, kCrcTableLine));

    for (uint64_t i = 0; i < iconSectors; ++i)
        PutCrcEntry(header, PackFormat::IconSector(static_cast<uint32_t>(_firstSector), i), _crcTable[i]);
    for (uint64_t j = 0; j < screenSectors; ++j)
        PutCrcEntry(header, PackFormat::ScreenSector(j), _crcTable[iconSectors + j]);

    PackFormat::NamesArea names;
    names.Append(_imageNames);
    header.SetNames(names);

    auto const sector = header.Write();
    _packFile.write(
        reinterpret_cast<char const*>(sector.data()), static_cast<std::streamsize>(sector.size()));
}

void PackExporter::Process(Zar::ResourcesLibrary::Image::InputSequence& sequence)
{
    sequence.LoadAll([this](int index, std::string_view const& name,
                         MutableImage& image) { return ProcessImage(index, name, image); },
        1);
}

bool PackExporter::ProcessImage(int index, string_view const& name, MutableImage& image)
{
    try {
        if (name.find_first_of(kForbiddenNameCharacters) != string_view::npos)
            throw ResourcesLibraryException(ZAR_SOURCE_INFO_LINE(kNameLine),
                std::string("name cannot contain ") + kForbiddenNameCharacters);
        if (image.GetSize() < PackFormat::kScreenThreshold)
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

    auto const crcs
        = Zar::Lt::Core::Crc16::GetValues(pixels, static_cast<int>(size), kSectorSize, PackFormat::kPadding);
    _crcTable.insert(_crcTable.end(), crcs.begin(), crcs.end());
    _crc.Reset();

    _imageNames.Append(std::string(name));
    ++_screensCount;
}

template <class Output>
void PackExporter::WriteEnumerationFile(std::string const& fileName,
    Zar::Lt::Exceptions::SourceInfo const& source, EnumerationOption const& option, int offset,
    Trailer trailer) const
{
    auto file = CreateOutputFile(fileName, source);
    // The text is put together in memory and written with one write. A conversion that throws half
    // way still leaves the text before it in the file, as a stream written piece by piece would.
    std::ostringstream text;
    auto const writeText = [&file, &text] {
        std::string const bytes = text.str();
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    };
    try {
        Output output(text, option);
        WriteEnumeration(output, offset);
        if (trailer != nullptr)
            trailer(text, option);
    } catch (...) {
        writeText();
        throw;
    }
    writeText();
}

void PackExporter::WriteCEnumerationFile(EnumerationOption const& option, int offset)
{
    WriteEnumerationFile<CppEnumerationOutput>(
        option.name + "s.h", ZAR_SOURCE_INFO_LINE(kCEnumerationLine), option, offset);
}

// Lets a test script print the numbers it will use.
void PackExporter::WriteValueNames(std::ostream& out, EnumerationOption const& option)
{
    std::string const lower = Zar::Lt::Core::ToLower(std::string_view(option.name));
    out << "value_names = [(" << lower << ".value, " << lower << ".name) for " << lower << " in "
        << option.name << "]\nprint(value_names)\n";
}

void PackExporter::WritePythonEnumerationFile(EnumerationOption const& option, int offset)
{
    WriteEnumerationFile<PythonEnumerationOutput>(
        option.name + "s.py", ZAR_SOURCE_INFO_LINE(kPythonEnumerationLine), option, offset, &WriteValueNames);
}

void PackExporter::WritePythonCommandFile(EnumerationOption const& option, int offset)
{
    WriteEnumerationFile<PythonCommandsOutput>(
        "commands.py", ZAR_SOURCE_INFO_LINE(kCommandsLine), option, offset);
}

void PackExporter::WritHelperEnumerationFile(EnumerationOption const& option, int offset)
{
    WriteEnumerationFile<HelperEnumerationOutput>(
        option.name + "sHelper.cpp", ZAR_SOURCE_INFO_LINE(kHelperLine), option, offset);
}

void PackExporter::WriteIconsEnumerationFile()
{
    // Icon values continue the numbering of the sectors in front of the icons, ten to a sector; for a
    // first sector below 2 or near the limits of int the value wraps to 32 bits, never overflows.
    int32_t const firstValue
        = static_cast<int32_t>(PackFormat::FirstIconValue(static_cast<uint32_t>(_firstSector)));
    EnumerationOption const option { "Icon", firstValue, true };
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

std::ofstream PackExporter::CreateOutputFile(
    std::string const& fileName, Zar::Lt::Exceptions::SourceInfo const& source) const
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
    // Whole runs from one sector of padding bytes, rather than a stream call per byte.
    static std::array<char, PackFormat::kSectorSize> const kPaddingBytes = [] {
        std::array<char, PackFormat::kSectorSize> bytes {};
        bytes.fill(static_cast<char>(PackFormat::kPadding));
        return bytes;
    }();
    for (int left = count; left > 0;) {
        int const run = std::min(left, static_cast<int>(kPaddingBytes.size()));
        _packFile.write(kPaddingBytes.data(), run);
        left -= run;
    }
}

void PackExporter::PrintSummary() const
{
    // The summary assumes ten icons a sector, two sectors a screen and the header sector; it is not
    // derived from the sectors actually written.
    uint64_t const sectorCount = PackFormat::MappedScreenSectors(static_cast<uint32_t>(_screensCount)) + 1
        + PackFormat::MappedIconSectors(static_cast<uint32_t>(_iconsCount));
    _out << unsigned { _version.Major() } << '.' << unsigned { _version.Minor() } << '.'
         << unsigned { _version.Patch() } << '.' << unsigned { _version.Build() } << ", " << _iconsCount
         << " icons at sector " << FirstSectorField(_firstSector) << ", " << _screensCount << " screens, "
         << sectorCount << " sectors, " << sectorCount * PackFormat::kSectorSize << " bytes" << std::endl;
}

void PackExporter::PrintCrcLine() const
{
    std::ios_base::fmtflags const flags = _out.flags();
    std::streamsize const width = _out.width();
    char const fill = _out.fill();

    _out << "crc:" << std::uppercase << std::hex << std::setfill('0');
    char const* separator = "";
    for (uint16_t const crc : _crcTable) {
        _out << separator << std::setw(4) << crc;
        separator = " ";
    }
    _out << std::endl;

    _out.flags(flags);
    _out.width(width);
    _out.fill(fill);
}

bool PackExporter::IsSelectedName(string_view name)
{
    // Anywhere in the name, unlike the commands file's test, which looks only at its end.
    return name.find(SelectedVariantName::kSuffix) != string_view::npos;
}

} // namespace Zar::ResourcesLibrary::Tools

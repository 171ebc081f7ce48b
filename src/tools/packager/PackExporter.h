#pragma once

#include "EnumerationOption.h"

#include "Zar/Lt/Core/Crc16.h"
#include "Zar/Lt/Core/StringCollection/StringCollection.h"
#include "Zar/Lt/Core/Version32.h"
#include "Zar/Lt/Exceptions/SourceInfo.h"
#include "Zar/ResourcesLibrary/Image/Color4Bpp.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"

#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace Zar::ResourcesLibrary::Image {
class InputSequence;
}

namespace Zar::ResourcesLibrary::Tools {

class EnumerationOutput;

// Writes the resource pack: a 4096-byte header sector, then the icon sectors (several icons each),
// then the screen sectors (every screen on fresh sectors), each sector protected by a CRC-16. It
// also collects the image names for the generated source files and the failures of single images,
// which it reports all together when it is closed.
class PackExporter {
public:
    // Spelt through this alias so that the function signatures recorded in exceptions read
    // "const string_view&": those records are fixed, so that logs stay comparable between builds.
    using string_view = std::string_view;

    // A name holding one of these is refused: names become identifiers in the generated C++ and
    // Python sources. packinspect extract refuses them too, so that what it writes packager reads.
    static constexpr char kForbiddenNameCharacters[] = "-\".,'";

    // The summary and the "crc:" line go to out, which must outlive the exporter: its destructor may
    // close the pack and print them.
    PackExporter(Zar::Lt::Core::Version32 const& version, int32_t firstSector, std::ostream& out = std::cout);
    // Closes the pack if that has not been done; a failure of that late close is dropped.
    ~PackExporter();

    PackExporter(PackExporter const&) = delete;
    PackExporter& operator=(PackExporter const&) = delete;

    void Open(std::string const& path);
    // Pads the last sector, writes the header, closes the file, writes the screens' source files,
    // prints the CRC line and throws one exception listing every image that failed, if any.
    void Close();

    void IncrementOffset(int size);
    void CloseSector();
    void WriteHeader();

    // Loads every image of the sequence and packs it.
    void Process(Zar::ResourcesLibrary::Image::InputSequence& sequence);
    // The sequence's callback for one loaded image: checks the name, packs the image as an icon or
    // a screen and turns any failure into one error line. Always returns true.
    bool ProcessImage(int index, string_view const& name, Zar::ResourcesLibrary::Image::MutableImage& image);
    void ProcessIcon(int index, string_view const& name, Zar::ResourcesLibrary::Image::MutableImage& image);
    void ProcessScreen(int index, string_view const& name, Zar::ResourcesLibrary::Image::MutableImage& image);

    void WriteCEnumerationFile(EnumerationOption const& option, int offset);
    void WritePythonEnumerationFile(EnumerationOption const& option, int offset);
    // The missing "e" is the historic name of this operation.
    void WritHelperEnumerationFile(EnumerationOption const& option, int offset);
    void WritePythonCommandFile(EnumerationOption const& option, int offset);
    void WriteIconsEnumerationFile();
    void WriteScreensEnumerationFile();

    bool IsOpen() const { return _packFile.is_open(); }
    std::string Errors() const { return _errors.str(); }
    Zar::Lt::Core::StringCollection const& ImageNames() const { return _imageNames; }
    std::vector<uint16_t> const& CrcTable() const { return _crcTable; }
    std::string const& OutputFolder() const { return _outputFolder; }
    int32_t SectorIndex() const { return _sectorIndex; }
    int32_t Offset() const { return _offset; }
    int32_t IconsCount() const { return _iconsCount; }
    int32_t ScreensCount() const { return _screensCount; }

private:
    // Opens a generated file in the output folder; throws "Cannot save file '<path>'" with the
    // given source record when it cannot be created.
    std::ofstream CreateOutputFile(
        std::string const& fileName, Zar::Lt::Exceptions::SourceInfo const& source) const;
    void WriteEnumeration(EnumerationOutput& output, int offset) const;
    // What a generated file holds after its writer's text, if anything.
    using Trailer = void (*)(std::ostream& out, EnumerationOption const& option);
    // Creates the file and writes it through an Output writer, then the trailer.
    template <class Output>
    void WriteEnumerationFile(std::string const& fileName, Zar::Lt::Exceptions::SourceInfo const& source,
        EnumerationOption const& option, int offset, Trailer trailer = nullptr) const;
    static void WriteValueNames(std::ostream& out, EnumerationOption const& option);
    void WritePadding(int count);
    void PrintSummary() const;
    void PrintCrcLine() const;
    static bool IsSelectedName(string_view name);

    Zar::Lt::Core::Version32 _version;
    std::ofstream _packFile;
    std::stringstream _errors;
    Zar::Lt::Core::StringCollection _imageNames;
    Zar::Lt::Core::Crc16 _crc;
    std::vector<uint16_t> _crcTable;
    std::string _outputFolder;
    int32_t _firstSector;
    int32_t _sectorIndex;
    int32_t _offset;
    int32_t _iconsCount;
    int32_t _screensCount;
    Zar::ResourcesLibrary::Image::Color4Bpp _frameColor;
    std::ostream& _out;
};

} // namespace Zar::ResourcesLibrary::Tools

#pragma once

#include "ImageGeometry.h"
#include "ListFile.h"

#include "ILogger.h"

#include "Zar/ResourcesLibrary/Image/ImageFormat.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools {
class PackExporter;
}

namespace Zar::ResourcesLibrary::Image {
class InputSequence;
}

namespace Zar::ResourcesLibrary::Tools::Inspect {

class BmpProbe;

// Runs a bmp tree through the packager's own loading and packing code, into a scratch folder that is
// removed afterwards, and reports every case in which the pack or the generated sources would not be
// what the user meant: images that fail to load, images packed as something other than the greys they
// were drawn in, sizes that break the icon sectors, names the generated C++ and Python do not compile
// with, lists that lose items or sources, and sectors whose values go wrong.
//
// Every finding is one line that names the list file and line (as an editor counts it, with packager's
// index beside it), the image, the cause and the fix. Unlike the packager, which stops at the first
// icon that fails to load and skips bad screens without a word, the check loads every listed image on
// its own, so one failure hides nothing.
class TreeChecker {
public:
    struct Finding {
        bool _failure = false;
        std::string _text;
    };

    struct Options {
        int32_t _firstSector = 12;
        // The size every icon must have; when not given, the size most icons of the list have.
        std::optional<ImageGeometry> _icon;
        // Warnings count as failures.
        bool _strict = false;
    };

    // root is the bmp folder (a '/' is added when missing). logger, which may be null, receives every
    // exception caught; with logStacks their call stacks as well.
    TreeChecker(std::string root, int32_t firstSector, zar::logging::ILogger* logger, bool logStacks);
    TreeChecker(std::string root, Options const& options, zar::logging::ILogger* logger, bool logStacks);

    void Run();

    // A whole decimal number from 0 up that fits the packager's int; nothing otherwise.
    static std::optional<int32_t> ParseSector(std::string const& text);

    std::vector<Finding> const& Findings() const { return _findings; }
    // What packing every image that loads prints on standard output: the summary and the "crc:" lines,
    // as packager prints them when no icon fails to load.
    std::string const& PackagerOutput() const { return _packagerOutput; }
    // Failures, and with the strict option warnings as well.
    std::size_t FailureCount() const;
    std::size_t WarningCount() const;
    void Print(std::ostream& out) const;

    // The files packager writes only when the first screen arrives.
    static constexpr char kIconSources[] = "Icons.h, Icons.py, IconsHelper.cpp and commands.py";

private:
    struct ListCheck {
        char const* _kind;
        std::string _folder;
        bool _requiredByPackager;
    };

    // One list line and what became of it.
    struct Item {
        std::string _list;
        int _line = 0;
        int _index = 0;
        std::string _item;
        std::string _name;
        std::string _file;
        // Packed: loaded, and taken by the exporter.
        bool _packed = false;
        // Reported already for a reason that makes its size and name beside the point.
        bool _reported = false;
        Zar::ResourcesLibrary::Image::ImageFormat _format
            = Zar::ResourcesLibrary::Image::ImageFormat::Unknown;
        int32_t _width = 0;
        int32_t _height = 0;
        uint32_t _bytes = 0;
    };

    void RunIn(std::string const& scratchFolder);
    std::vector<Item> CheckList(ListCheck const& list, PackExporter& exporter);
    void CheckItem(ListCheck const& list, ListFile const& listFile, Item& item, PackExporter& exporter);
    bool CheckBeforeLoading(ListCheck const& list, Item& item);
    void ReportLoadFailure(
        ListCheck const& list, ListFile const& listFile, Item const& item, std::string const& reason);
    void CheckLoadedFormat(ListCheck const& list, Item& item);
    void CheckPalette(ListCheck const& list, Item const& item, BmpProbe const& probe);
    // The size most icons of the list have, the first of them on a tie.
    static std::optional<ImageGeometry> CommonIconSize(
        ListCheck const& list, std::vector<std::string> const& items);
    void CheckSizes(ListCheck const& list, std::vector<Item> const& items);
    static std::string ScreenOfAnIconsSize(Item const& item);
    std::string ScreenSizeFix() const;
    void CheckKinds(ListCheck const& list, std::vector<Item> const& items);
    void CheckNames(ListCheck const& list, std::vector<Item> const& items);
    void CheckScreensPresent(std::vector<Item> const& icons, std::vector<Item> const& screens);
    void CheckSector(int32_t iconCount);
    void CheckNamesArea(PackExporter const& exporter);
    void CheckSectorSpace(PackExporter const& exporter);
    void CheckClose(PackExporter& exporter);
    void VerifyPack(std::string const& path);
    void NoteIconSectors(PackExporter const& exporter);

    std::string ListPathOf(ListCheck const& list) const;
    // The packinspect import command line that makes the item's file one packager reads as drawn.
    std::string FixByImport(ListCheck const& list, Item const& item) const;
    std::string FixOfPackingError(std::string const& reason) const;

    void Fail(std::string text);
    void Warn(std::string text);
    void FailItem(ListCheck const& list, Item const& item, std::string const& cause, std::string const& fix);
    void LogCurrentException();

    std::string _root;
    Options _options;
    zar::logging::ILogger* _logger;
    bool _logStacks;
    std::vector<Finding> _findings;
    std::string _packagerOutput;
    // File sectors taken by icons, known while no screen has been packed.
    int32_t _iconSectors = 0;
    bool _iconFailedToLoad = false;
    // The icon size the list's icons are held to, once known.
    std::optional<ImageGeometry> _iconSize;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

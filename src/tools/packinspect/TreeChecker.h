#pragma once

#include "ILogger.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools {
class PackExporter;
}

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Runs a bmp tree through the packager's own loading and packing code, into a scratch folder that is
// removed afterwards, and reports every image that would fail with its index, name, file and reason,
// together with what the packager would not say: 4-bit palettes that are not grey ramps, names or
// sectors that overflow the pack, and list lines that name the same image twice.
//
// Unlike the packager, which stops at the first icon that fails to load and skips bad screens without
// a word, the check loads every listed image on its own, so one failure hides nothing.
class TreeChecker {
public:
    struct Finding {
        bool _failure = false;
        std::string _text;
    };

    // root is the bmp folder (a '/' is added when missing). logger, which may be null, receives every
    // exception caught; with logStacks their call stacks as well.
    TreeChecker(std::string root, int32_t firstSector, zar::logging::ILogger* logger, bool logStacks);

    void Run();

    std::vector<Finding> const& Findings() const { return _findings; }
    // What packing every image that loads prints on standard output: the summary and the "crc:" lines,
    // as packager prints them when no icon fails to load.
    std::string const& PackagerOutput() const { return _packagerOutput; }
    std::size_t FailureCount() const;
    void Print(std::ostream& out) const;

private:
    struct ListCheck {
        char const* _kind;
        std::string _folder;
        bool _requiredByPackager;
    };

    void RunIn(std::string const& scratchFolder);
    void CheckList(ListCheck const& list, PackExporter& exporter);
    // Returns false when the image failed to load.
    bool CheckItem(ListCheck const& list, std::string const& item, int index, PackExporter& exporter);
    void CheckPalette(ListCheck const& list, std::string const& item, int index, std::string const& file);
    void CheckDuplicates(ListCheck const& list, std::vector<std::string> const& items);
    void CheckNamesArea(PackExporter const& exporter);
    void CheckSectorSpace(PackExporter const& exporter);
    void CheckClose(PackExporter& exporter);
    void VerifyPack(std::string const& path);
    void NoteIconSectors(PackExporter const& exporter);

    void Fail(std::string text);
    void Warn(std::string text);
    void LogCurrentException();

    std::string _root;
    int32_t _firstSector;
    zar::logging::ILogger* _logger;
    bool _logStacks;
    std::vector<Finding> _findings;
    std::string _packagerOutput;
    // File sectors taken by icons, known while no screen has been packed.
    int32_t _iconSectors = 0;
    bool _iconFailedToLoad = false;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

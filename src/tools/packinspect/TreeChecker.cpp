#include "TreeChecker.h"

#include "BmpPalette.h"
#include "PackFile.h"
#include "PackVerifier.h"

#include "PackExporter.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/Lt/Core/Version32.h"
#include "Zar/Lt/Exceptions/BaseException.h"
#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/Lt/Logging/ExceptionLogger.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/FileFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using namespace Zar::ResourcesLibrary::Image;
using Zar::ResourcesLibrary::Pack::PackFormat;

namespace {

// The packager's defaults for what the command line would otherwise give.
constexpr Zar::Lt::Core::Version32 DefaultVersion(0, 6, 0, 0);

// The file a list line names: relative to its folder, ".bmp" added when it has no extension.
std::string FileOf(std::string const& folder, std::string const& item)
{
    auto const slash = item.find_last_of('/');
    std::string const last = slash == std::string::npos ? item : item.substr(slash + 1);
    bool const hasExtension = InputSequence::BareName(item) != last;
    return folder + item + (hasExtension ? "" : ".bmp");
}

bool IsBmp(std::string const& file)
{
    return file.size() >= 4 && file.compare(file.size() - 4, 4, ".bmp") == 0;
}

// Error lines start with "<index> <item or name> "; the reason is what follows. A text that does not
// start so is kept whole, and a final line feed is dropped.
std::string ReasonOf(std::string text, std::string const& prefix)
{
    if (text.starts_with(prefix))
        text.erase(0, prefix.size());
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

// The input sequence writes the loader's default extension right after the item.
std::string LoadErrorPrefix(int index, std::string const& item)
{
    return std::to_string(index) + " " + item + FileFormatHelper::GetExtension(FileFormat::None) + " ";
}

std::string Describe(char const* kind, int index, std::string const& name, std::string const& file)
{
    return std::string(kind) + " index " + std::to_string(index) + ", name " + name + ", file " + file;
}

} // namespace

TreeChecker::TreeChecker(std::string root, int32_t firstSector, zar::logging::ILogger* logger, bool logStacks)
    : _root(std::move(root))
    , _firstSector(firstSector)
    , _logger(logger)
    , _logStacks(logStacks)
{
    if (_root.empty() || _root.back() != '/')
        _root += '/';
}

void TreeChecker::Run()
{
    // The trial pack is built in a folder of its own, removed with it at the end.
    Zar::Lt::Core::ScratchFolder const scratch("packinspect");
    RunIn(scratch.Prefix());
}

void TreeChecker::RunIn(std::string const& scratchFolder)
{
    std::string const packPath = scratchFolder + "oled.pack";
    {
        // What the exporter prints is collected for the report; it must outlive the exporter.
        std::ostringstream printed;
        PackExporter exporter(DefaultVersion, _firstSector, printed);
        exporter.Open(packPath);
        CheckList({ "icon", _root + "icons/", true }, exporter);
        CheckList({ "screen", _root + "screens/", false }, exporter);
        CheckNamesArea(exporter);
        CheckClose(exporter);
        CheckSectorSpace(exporter);
        _packagerOutput = printed.str();
    }
    if (_iconFailedToLoad)
        Warn("packager stops after the icons when one of them fails to load: it would pack no screen");
    VerifyPack(packPath);
}

void TreeChecker::CheckList(ListCheck const& list, PackExporter& exporter)
{
    InputSequence reader(FileFormat::None, list._folder, "%04", true);
    try {
        reader.AddList(list._folder + "list.txt");
    } catch (std::exception const& e) {
        if (list._requiredByPackager)
            Fail(std::string(list._kind) + "s: " + e.what() + " (packager would pack nothing)");
        LogCurrentException();
        return;
    }
    CheckDuplicates(list, reader.Items());
    // Packager numbers the items of a list from 2: its walk starts at 1 and counts before loading.
    int index = 2;
    for (auto const& item : reader.Items()) {
        if (!CheckItem(list, item, index, exporter) && list._requiredByPackager)
            _iconFailedToLoad = true;
        if (exporter.ScreensCount() == 0)
            NoteIconSectors(exporter);
        ++index;
    }
}

bool TreeChecker::CheckItem(ListCheck const& list, std::string const& item, int index, PackExporter& exporter)
{
    std::string const name = InputSequence::BareName(item);
    std::string const file = FileOf(list._folder, item);
    CheckPalette(list, item, index, file);

    InputSequence single(FileFormat::None, list._folder, "%04", true);
    single.AddItem(item);
    std::size_t const errorsBefore = exporter.Errors().size();
    bool delivered = false;
    auto const pack = [&](int i, std::string_view const& n, MutableImage& image) {
        delivered = true;
        return exporter.ProcessImage(i, n, image);
    };
    try {
        single.LoadAll(pack, index - 1);
    } catch (std::exception const& e) {
        std::string const skipped
            = list._requiredByPackager ? "" : " (packager skips this screen without a word)";
        Fail(Describe(list._kind, index, name, file) + ": " + ReasonOf(e.what(), LoadErrorPrefix(index, item))
            + skipped);
        LogCurrentException();
        return false;
    }
    std::string const added = exporter.Errors().substr(errorsBefore);
    if (!added.empty())
        Fail(Describe(list._kind, index, name, file) + ": "
            + ReasonOf(added, std::to_string(index) + " " + name + " "));
    else if (!delivered)
        Fail(Describe(list._kind, index, name, file)
            + ": loads as an empty image, which packager skips without a word");
    return true;
}

void TreeChecker::CheckPalette(
    ListCheck const& list, std::string const& item, int index, std::string const& file)
{
    if (!IsBmp(file) || BmpPalette::Classify(file) != BmpPalette::Kind::Other)
        return;
    Warn(Describe(list._kind, index, InputSequence::BareName(item), file)
        + ": the 4-bit palette is neither the ascending nor the descending 16-level grey ramp;"
          " its pixels come out as palette indices, not greys");
}

void TreeChecker::CheckDuplicates(ListCheck const& list, std::vector<std::string> const& items)
{
    std::map<std::string, int> firstIndex;
    int index = 2;
    for (auto const& item : items) {
        std::string const name = InputSequence::BareName(item);
        auto const [found, added] = firstIndex.emplace(name, index);
        if (!added)
            Warn(std::string(list._kind) + "s: indexes " + std::to_string(found->second) + " and "
                + std::to_string(index) + " both name the image " + name);
        ++index;
    }
}

void TreeChecker::NoteIconSectors(PackExporter const& exporter)
{
    _iconSectors = exporter.SectorIndex() - 1 + (exporter.Offset() != 0 ? 1 : 0);
}

void TreeChecker::CheckNamesArea(PackExporter const& exporter)
{
    std::size_t needed = 0;
    exporter.ImageNames().Enumerate([&](int, std::string_view name) {
        needed += 1 + name.size();
        if (name.size() > PackFormat::kMaxNameLength)
            Warn("the name " + std::string(name) + " is longer than the "
                + std::to_string(PackFormat::kMaxNameLength) + " bytes a name may have");
        return true;
    });
    if (needed > PackFormat::kNamesCapacity)
        Warn("the names need " + std::to_string(needed) + " bytes, more than the "
            + std::to_string(PackFormat::kNamesCapacity) + " of the names area");
}

void TreeChecker::CheckClose(PackExporter& exporter)
{
    std::string const itemErrors = exporter.Errors();
    try {
        exporter.Close();
    } catch (std::exception const& e) {
        // The image failures were reported one by one already.
        if (itemErrors.empty() || e.what() != itemErrors) {
            Fail(std::string("closing the pack: ") + e.what());
            LogCurrentException();
        }
    }
}

void TreeChecker::CheckSectorSpace(PackExporter const& exporter)
{
    int64_t const dataSectors = exporter.SectorIndex() - 1;
    int64_t const screenSectors = exporter.ScreensCount() ? dataSectors - _iconSectors : 0;
    int64_t const lastIcon = int64_t { _firstSector } + _iconSectors - 1;
    if (_iconSectors > 0 && lastIcon >= PackFormat::kFirstScreenSector)
        Warn("the icons need sectors " + std::to_string(_firstSector) + " to " + std::to_string(lastIcon)
            + ", which runs into the screens' sectors from " + std::to_string(PackFormat::kFirstScreenSector)
            + " on");
    int64_t const lastScreen = int64_t { PackFormat::kFirstScreenSector } + screenSectors - 1;
    if (screenSectors > 0 && lastScreen >= PackFormat::kStoreSectors)
        Warn("the screens need sectors " + std::to_string(PackFormat::kFirstScreenSector) + " to "
            + std::to_string(lastScreen) + ", past the " + std::to_string(PackFormat::kStoreSectors)
            + "-sector store");
}

void TreeChecker::VerifyPack(std::string const& path)
{
    auto const report = PackVerifier::Check(PackFile::Load(path));
    for (auto const& sector : report._sectors)
        if (!sector.IsGood())
            Fail("the pack would not verify: sector " + std::to_string(sector._target)
                + " does not match its CRC" + (sector._note.empty() ? "" : " (" + sector._note + ")"));
    for (auto const& problem : report._problems)
        Fail("the pack would not verify: " + problem);
}

void TreeChecker::Fail(std::string text) { _findings.push_back({ true, std::move(text) }); }

void TreeChecker::Warn(std::string text) { _findings.push_back({ false, std::move(text) }); }

void TreeChecker::LogCurrentException()
{
    if (!_logger)
        return;
    auto const current = std::current_exception();
    if (_logStacks) {
        Zar::Lt::Logging::ExceptionLogger::LogStack(*_logger, current, ZAR_SOURCE_FILE, __LINE__);
        return;
    }
    try {
        std::rethrow_exception(current);
    } catch (Zar::Lt::Exceptions::BaseException const& e) {
        Zar::Lt::Logging::ExceptionLogger::Log(*_logger, e, 0);
    } catch (std::exception const& e) {
        Zar::Lt::Logging::ExceptionLogger::Log(*_logger, e, 0);
    }
}

std::size_t TreeChecker::FailureCount() const
{
    return static_cast<std::size_t>(
        std::count_if(_findings.begin(), _findings.end(), [](Finding const& f) { return f._failure; }));
}

void TreeChecker::Print(std::ostream& out) const
{
    for (auto const& finding : _findings)
        out << (finding._failure ? "FAIL " : "WARN ") << finding._text << '\n';
    if (!_packagerOutput.empty()) {
        out << "packing every image that loads prints:\n";
        std::istringstream lines(_packagerOutput);
        for (std::string line; std::getline(lines, line);)
            out << "  " << line << '\n';
    }
    std::size_t const failures = FailureCount();
    std::size_t const warnings = _findings.size() - failures;
    out << "result: " << failures << (failures == 1 ? " failure, " : " failures, ") << warnings
        << (warnings == 1 ? " warning\n" : " warnings\n");
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#include "TreeChecker.h"

#include "BmpProbe.h"
#include "GeneratedName.h"
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
#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/Image/codec/Input.h"
#include "Zar/ResourcesLibrary/Pack/PackFormat.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>
#include <ostream>
#include <sstream>
#include <strings.h>

namespace Zar::ResourcesLibrary::Tools::Inspect {

using namespace Zar::ResourcesLibrary::Image;
using Zar::ResourcesLibrary::Pack::PackFormat;

namespace {

// The packager's defaults for what the command line would otherwise give.
constexpr Zar::Lt::Core::Version32 DefaultVersion(0, 6, 0, 0);
// Packager numbers the items of a list from 2: its walk starts at 1 and counts before loading.
constexpr int kFirstIndex = 2;
// The icons' enumeration values start at (sector - 2) x 10 and are held in a uint16_t.
constexpr int64_t kMaxEnumerationValue = 0xFFFF;

// The file a list line names, as the detecting loader opens it: relative to its folder, ".bmp" added
// when the item has no usable extension.
std::string FileOf(std::string const& folder, std::string const& item)
{
    std::string const path = folder + item;
    bool const hasExtension = !Input::UsableExtension(path).empty();
    return path + (hasExtension ? "" : FileFormatHelper::GetExtension(FileFormat::Bmp));
}

FileFormat FormatOf(std::string const& file) { return FileFormatHelper::GetFromExtension(file); }

// Error lines start with "<index> <item><extension> "; the reason is what follows. A text that does
// not start so is kept whole, and a final line feed is dropped.
std::string ReasonOf(std::string text, std::string const& prefix)
{
    if (text.starts_with(prefix))
        text.erase(0, prefix.size());
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return text;
}

std::string Hex(BmpProbe::Colour colour)
{
    static constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text = "#";
    for (uint8_t const value : { colour._red, colour._green, colour._blue }) {
        text += kDigits[value >> 4];
        text += kDigits[value & 0x0F];
    }
    return text;
}

bool IsGrey(BmpProbe::Colour colour) { return colour._red == colour._green && colour._green == colour._blue; }

std::string Folder(std::string folder)
{
    if (!folder.empty() && folder.back() == '/')
        folder.pop_back();
    return folder;
}

std::string Plural(int64_t count, char const* word)
{
    return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

std::string SizeText(int32_t width, int32_t height, uint32_t bytes)
{
    return std::to_string(width) + " x " + std::to_string(height) + " (" + std::to_string(bytes) + " bytes)";
}

// A file in the folder whose name differs from the wanted one in letter case only.
std::optional<std::string> OtherCaseOf(std::string const& file)
{
    std::filesystem::path const path(file);
    std::error_code error;
    std::filesystem::directory_iterator entries(path.parent_path().empty() ? "." : path.parent_path(), error);
    if (error)
        return std::nullopt;
    std::string const wanted = path.filename().string();
    for (auto const& entry : entries) {
        std::string const found = entry.path().filename().string();
        if (found != wanted && strcasecmp(found.c_str(), wanted.c_str()) == 0)
            return found;
    }
    return std::nullopt;
}

} // namespace

TreeChecker::TreeChecker(std::string root, int32_t firstSector, zar::logging::ILogger* logger, bool logStacks)
    : TreeChecker(std::move(root), Options { firstSector, std::nullopt, false }, logger, logStacks)
{
}

TreeChecker::TreeChecker(
    std::string root, Options const& options, zar::logging::ILogger* logger, bool logStacks)
    : _root(std::move(root))
    , _options(options)
    , _logger(logger)
    , _logStacks(logStacks)
    , _iconSize(options._icon)
{
    if (_root.empty() || _root.back() != '/')
        _root += '/';
}

std::optional<int32_t> TreeChecker::ParseSector(std::string const& text)
{
    int32_t sector = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), sector);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || sector < 0)
        return std::nullopt;
    return sector;
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
        PackExporter exporter(DefaultVersion, _options._firstSector, printed);
        exporter.Open(packPath);
        auto const icons = CheckList({ "icon", _root + "icons/", true }, exporter);
        auto const screens = CheckList({ "screen", _root + "screens/", false }, exporter);
        CheckScreensPresent(icons, screens);
        CheckSector(exporter.IconsCount());
        CheckNamesArea(exporter);
        CheckClose(exporter);
        CheckSectorSpace(exporter);
        _packagerOutput = printed.str();
    }
    if (_iconFailedToLoad)
        Fail(ListPathOf({ "icon", _root + "icons/", true })
            + ": an icon fails to load, so packager stops after the icons: it packs no screen and writes none"
              " of "
            + kIconSources + "; fix: the icons' failures above");
    VerifyPack(packPath);
}

std::string TreeChecker::ListPathOf(ListCheck const& list) const { return list._folder + "list.txt"; }

std::vector<TreeChecker::Item> TreeChecker::CheckList(ListCheck const& list, PackExporter& exporter)
{
    std::string const listPath = ListPathOf(list);
    InputSequence reader(FileFormat::None, list._folder, "%04", true);
    try {
        reader.AddList(listPath);
    } catch (std::exception const& e) {
        if (list._requiredByPackager)
            Fail(listPath + ": " + e.what() + ": packager packs nothing and writes no source; fix: create "
                + listPath + " with one icon file name a line");
        LogCurrentException();
        return {};
    }
    ListFile const listFile = ListFile::Read(listPath);
    if (listFile.StartsWithByteOrderMark())
        Fail(listPath
            + ":1: the list starts with a UTF-8 byte-order mark (EF BB BF), which packager takes as"
              " part of the first name; fix: save "
            + listPath + " as UTF-8 without a byte-order mark");
    if (list._requiredByPackager && !_options._icon)
        _iconSize = CommonIconSize(list, reader.Items());
    auto const lines = listFile.LinesOf(reader.Items());
    std::vector<Item> items;
    int index = kFirstIndex;
    for (std::size_t k = 0; k < reader.Items().size(); ++k, ++index) {
        std::string const& text = reader.Items()[k];
        Item item { listPath, lines[k], index, text, InputSequence::BareName(text),
            FileOf(list._folder, text) };
        CheckItem(list, listFile, item, exporter);
        if (exporter.ScreensCount() == 0)
            NoteIconSectors(exporter);
        items.push_back(std::move(item));
    }
    CheckKinds(list, items);
    CheckSizes(list, items);
    CheckNames(list, items);
    return items;
}

void TreeChecker::FailItem(
    ListCheck const& list, Item const& item, std::string const& cause, std::string const& fix)
{
    std::string const where = item._line > 0 ? item._list + ":" + std::to_string(item._line) : item._list;
    Fail(where + " (index " + std::to_string(item._index) + "), " + list._kind + " " + item._name + " ("
        + item._file + "): " + cause + "; fix: " + fix);
}

std::string TreeChecker::FixOfPackingError(std::string const& reason) const
{
    if (reason.find(PackExporter::kForbiddenNameCharacters) != std::string::npos)
        return std::string("rename the file and its line without the characters ")
            + PackExporter::kForbiddenNameCharacters;
    if (reason.find("Cannot add icons after screens") != std::string::npos)
        return "an image before it in " + _root
            + "icons/list.txt is a screen's size (see its line): move that one to " + _root
            + "screens/list.txt";
    return "check the image";
}

std::string TreeChecker::FixByImport(ListCheck const& list, Item const& item) const
{
    auto const size = list._requiredByPackager ? _iconSize : std::nullopt;
    std::string fix = "convert it to a 4-bit grey BMP with: packinspect import --force "
        + (size ? "--size=" + size->ToString() + " " : std::string()) + item._file + " -o "
        + Folder(list._folder);
    if (FormatOf(item._file) != FileFormat::Bmp)
        fix += ", then write " + item._name + " on the line in place of " + item._item;
    return fix;
}

bool TreeChecker::CheckBeforeLoading(ListCheck const& list, Item& item)
{
    if (item._file == ListPathOf(list)) {
        item._reported = true;
        FailItem(list, item,
            "the line names the list file itself, which packager loads as a text image and packs as "
                + std::string(list._kind == std::string("icon") ? "an icon" : "an image"),
            "remove the line");
        return false;
    }
    FileFormat const format = FormatOf(item._file);
    if (format == FileFormat::Raw || format == FileFormat::Yuv) {
        FailItem(list, item,
            "packager passes over " + std::string(FileFormatHelper::GetExtension(format))
                + " files without a word (its loaders never take them), so the image is left out of the pack"
                  " and the sources",
            FixByImport(list, item));
        return false;
    }
    if (auto const probe = BmpProbe::Read(item._file); probe && format == FileFormat::Bmp)
        CheckPalette(list, item, *probe);
    return true;
}

void TreeChecker::CheckItem(
    ListCheck const& list, ListFile const& listFile, Item& item, PackExporter& exporter)
{
    if (!CheckBeforeLoading(list, item))
        return;
    InputSequence single(FileFormat::None, list._folder, "%04", true);
    single.AddItem(item._item);
    std::size_t const errorsBefore = exporter.Errors().size();
    bool delivered = false;
    auto const pack = [&](int index, std::string_view const& name, MutableImage& image) {
        delivered = true;
        auto const& info = image.Info();
        item._format = info.Format();
        item._width = info.Width();
        item._height = info.Height();
        item._bytes = image.GetSize();
        return exporter.ProcessImage(index, name, image);
    };
    try {
        single.LoadAll(pack, item._index - 1);
    } catch (std::exception const& e) {
        ReportLoadFailure(
            list, listFile, item, ReasonOf(e.what(), single.ErrorLinePrefix(item._index, item._item)));
        LogCurrentException();
        if (list._requiredByPackager)
            _iconFailedToLoad = true;
        return;
    }
    std::string const added = exporter.Errors().substr(errorsBefore);
    if (!added.empty()) {
        std::string const reason = ReasonOf(added, std::to_string(item._index) + " " + item._name + " ");
        item._reported = true;
        if (delivered && !list._requiredByPackager && item._bytes < PackFormat::kScreenThreshold)
            FailItem(
                list, item, ScreenOfAnIconsSize(item) + " (packager says: " + reason + ")", ScreenSizeFix());
        else
            FailItem(list, item, reason, FixOfPackingError(reason));
        return;
    }
    if (!delivered) {
        FailItem(list, item, "it loads as an empty image, which packager skips without a word",
            FixByImport(list, item));
        return;
    }
    item._packed = true;
    CheckLoadedFormat(list, item);
}

void TreeChecker::ReportLoadFailure(
    ListCheck const& list, ListFile const& listFile, Item const& item, std::string const& reason)
{
    std::string const skipped
        = list._requiredByPackager ? "" : " (packager skips this screen without a word)";
    if (item._item.starts_with(ListFile::kByteOrderMark) && listFile.StartsWithByteOrderMark()) {
        FailItem(list, item,
            "the byte-order mark at the start of the list is taken as part of the name" + skipped,
            "save " + item._list + " as UTF-8 without a byte-order mark");
        return;
    }
    std::error_code error;
    if (!std::filesystem::exists(item._file, error)) {
        if (auto const other = OtherCaseOf(item._file))
            FailItem(list, item,
                "there is no file " + item._file + ", only " + *other + ", whose name differs in letter case"
                    + skipped,
                "write the line as the file is named, or rename the file");
        else
            FailItem(list, item,
                "there is no file " + item._file + " (packager says: " + reason + ")" + skipped,
                "add the file, or remove the line");
        return;
    }
    auto const probe = FormatOf(item._file) == FileFormat::Bmp ? BmpProbe::Read(item._file) : std::nullopt;
    if (probe && probe->Compression() != 0) {
        std::string const rle = probe->Compression() == 1 || probe->Compression() == 2 ? "run-length " : "";
        FailItem(list, item,
            "the BMP is " + rle + "compressed (" + BmpProbe::CompressionName(probe->Compression())
                + "), and packager reads only uncompressed BMPs (it says: " + reason + ")" + skipped,
            FixByImport(list, item));
        return;
    }
    if (probe && probe->Bits() != 1 && probe->Bits() != 4) {
        std::string const kind
            = probe->Bits() <= 8 ? " (a palette of " + std::to_string(1u << probe->Bits()) + " colours)" : "";
        FailItem(list, item,
            "the BMP has " + std::to_string(probe->Bits()) + " bits a pixel" + kind
                + ", and packager reads 1-bit and 4-bit BMPs only (it says: " + reason + ")" + skipped,
            FixByImport(list, item));
        return;
    }
    FailItem(list, item, reason + skipped, FixByImport(list, item));
}

void TreeChecker::CheckLoadedFormat(ListCheck const& list, Item& item)
{
    if (item._format == ImageFormat::Gray4)
        return;
    item._reported = true;
    FailItem(list, item,
        std::string("it loads as ") + ImageFormatHelper::GetString(static_cast<unsigned>(item._format)) + " ("
            + std::to_string(ImageFormatHelper::BitsPerPixel(item._format))
            + " bits a pixel), whose bytes packager packs as if they were 4-bit grey pixels",
        FixByImport(list, item));
}

void TreeChecker::CheckPalette(ListCheck const& list, Item const& item, BmpProbe const& probe)
{
    if (probe.Bits() != 1 && probe.Bits() != 4)
        return;
    auto const misread = probe.MisreadIndices();
    if (misread.empty()) {
        auto const& palette = probe.Palette();
        if (!std::all_of(palette.begin(), palette.end(), IsGrey))
            Warn(item._list + (item._line > 0 ? ":" + std::to_string(item._line) : "") + " (index "
                + std::to_string(item._index) + "), " + list._kind + " " + item._name + " (" + item._file
                + "): the palette holds colours; the display shows only their brightness, which packager "
                  "keeps");
        return;
    }
    std::string shown;
    for (std::size_t const k : misread) {
        auto const colour = probe.Palette()[k];
        shown += (shown.empty() ? "" : ", ") + std::string("index ") + std::to_string(k) + " (" + Hex(colour)
            + ", level " + std::to_string(BmpProbe::DrawnLevel(colour)) + ") becomes level "
            + std::to_string(probe.LoadedLevel(k));
    }
    FailItem(list, item,
        "packager takes the " + std::to_string(probe.Bits())
            + "-bit indices as grey levels, but the palette is not the grey ramp it assumes: " + shown,
        FixByImport(list, item));
}

void TreeChecker::CheckKinds(ListCheck const& list, std::vector<Item> const& items)
{
    bool const icons = list._requiredByPackager;
    for (auto const& item : items) {
        if (!item._packed || item._reported)
            continue;
        bool const packedAsScreen = item._bytes >= PackFormat::kScreenThreshold;
        std::string const size = SizeText(item._width, item._height, item._bytes);
        if (icons && packedAsScreen)
            FailItem(list, item,
                "it is " + size + ", which packager takes for a screen: the icons after it fail and "
                    + kIconSources + " are written with the icons before it only",
                "move it to " + _root + "screens/list.txt, or make it an icon's size");
        else if (!icons && !packedAsScreen)
            FailItem(list, item, ScreenOfAnIconsSize(item), ScreenSizeFix());
    }
}

std::optional<ImageGeometry> TreeChecker::CommonIconSize(
    ListCheck const& list, std::vector<std::string> const& items)
{
    // Loading is cheap for images of an icon's size, and done once more here so that every message about
    // the list, the first included, can give the size in its fix.
    std::map<std::pair<int32_t, int32_t>, int> counts;
    std::optional<std::pair<int32_t, int32_t>> common;
    InputSequence measure(FileFormat::None, list._folder, "%04", false);
    for (auto const& item : items)
        measure.AddItem(item);
    measure.LoadAll(
        [&](int, std::string_view const&, MutableImage& image) {
            auto const& info = image.Info();
            if (info.Width() <= 0 || info.Height() <= 0
                || uint64_t { ImageInfo::StrideOf(info.Width(), ImageFormat::Gray4) }
                        * uint64_t(info.Height())
                    >= PackFormat::kScreenThreshold)
                return true;
            int const count = ++counts[{ info.Width(), info.Height() }];
            if (!common || count > counts[*common])
                common = std::pair { info.Width(), info.Height() };
            return true;
        },
        kFirstIndex - 1);
    if (!common)
        return std::nullopt;
    return ImageGeometry(static_cast<uint32_t>(common->first), static_cast<uint32_t>(common->second));
}

std::string TreeChecker::ScreenOfAnIconsSize(Item const& item)
{
    return "it is " + SizeText(item._width, item._height, item._bytes) + ", below the "
        + std::to_string(PackFormat::kScreenThreshold)
        + " bytes from which packager takes an image for a screen: it packs it as an icon (framed, in the "
          "Icon"
          " enumeration), or refuses it after the first screen";
}

std::string TreeChecker::ScreenSizeFix() const
{
    return "make it a screen's size (256 x 64 is 8192 bytes), or move it to " + _root + "icons/list.txt";
}

void TreeChecker::CheckSizes(ListCheck const& list, std::vector<Item> const& items)
{
    if (!list._requiredByPackager || !_iconSize)
        return;
    auto const expected
        = std::pair { static_cast<int32_t>(_iconSize->Width()), static_cast<int32_t>(_iconSize->Height()) };
    std::string const whence
        = _options._icon ? "the size given with --icon" : "the size of most icons of the list";
    for (auto const& item : items) {
        if (!item._packed || item._reported || item._bytes >= PackFormat::kScreenThreshold
            || std::pair { item._width, item._height } == expected)
            continue;
        FailItem(list, item,
            "it is " + std::to_string(item._width) + "x" + std::to_string(item._height) + ", not "
                + _iconSize->ToString() + " (" + whence
                + "): packager lays icons into sectors at one size, so this icon and every icon after it in "
                  "its"
                  " sector are drawn wrong",
            FixByImport(list, item));
    }
}

void TreeChecker::CheckNames(ListCheck const& list, std::vector<Item> const& items)
{
    bool const icons = list._requiredByPackager;
    std::string const sources = icons ? "Icons.h and Icons.py" : "Screens.h and Screens.py";
    std::map<std::string, Item const*> bySpelling;
    for (auto const& item : items) {
        if (!item._packed)
            continue;
        auto const spelling = GeneratedName::Spelling(item._name);
        if (!spelling) {
            FailItem(list, item, "the name is not valid UTF-8, which the source writers refuse",
                "rename the file and its line in UTF-8");
            continue;
        }
        std::string const fixName
            = "rename the file and its line to ASCII letters, digits and '_', starting with a"
              " letter, and no keyword or <stdint.h> macro";
        if (auto const problem = GeneratedName::Problem(*spelling)) {
            FailItem(list, item,
                sources + " spell the name " + *spelling + ", which " + *problem + ": they do not compile",
                fixName);
            continue;
        }
        auto const [found, added] = bySpelling.emplace(*spelling, &item);
        if (!added) {
            Item const& first = *found->second;
            std::string const firstLine = first._line > 0 ? "line " + std::to_string(first._line)
                                                          : "index " + std::to_string(first._index);
            if (first._name == item._name)
                FailItem(list, item,
                    "the image is listed already on " + firstLine + ": " + sources + " would declare "
                        + *spelling + " twice and do not compile",
                    "remove this line");
            else
                FailItem(list, item,
                    sources + " spell it " + *spelling + ", as they spell " + first._name + " on " + firstLine
                        + ": they would declare it twice and do not compile",
                    "rename one of the two");
            continue;
        }
        if (icons && GeneratedName::IsCommandsKey(*spelling) && item._name != "empty"
            && !item._name.ends_with("_Selected"))
            FailItem(list, item,
                "commands.py spells it " + *spelling
                    + ", a member the commands module defines already for a fixed key: the module fails to "
                      "load",
                "rename the file and its line");
    }
}

void TreeChecker::CheckScreensPresent(std::vector<Item> const& icons, std::vector<Item> const& screens)
{
    bool const anyIcon = std::any_of(icons.begin(), icons.end(), [](Item const& i) { return i._packed; });
    bool const anyScreen
        = std::any_of(screens.begin(), screens.end(), [](Item const& i) { return i._packed; });
    if (!anyIcon || anyScreen || _iconFailedToLoad)
        return;
    std::string const folder = _root + "screens/";
    std::string const listPath = folder + "list.txt";
    std::error_code error;
    std::string why;
    if (!std::filesystem::is_directory(folder, error))
        why = "there is no folder " + folder;
    else if (!ListFile::Read(listPath).Exists())
        why = "there is no " + listPath;
    else if (screens.empty())
        why = listPath + " names no screen";
    else
        why = "no screen of " + listPath + " is packed";
    Fail(listPath + ": " + why + ": packager writes " + kIconSources
        + " when the first screen arrives, so it writes none of them (only empty Screens.h and Screens.py); "
          "fix: list"
          " at least one screen in "
        + listPath);
}

void TreeChecker::CheckSector(int32_t iconCount)
{
    int64_t const sector = _options._firstSector;
    std::string const option = "--sector=" + std::to_string(sector);
    // Packager computes the first value in 32 bits, wrapping as unsigned arithmetic does.
    auto const first = static_cast<int64_t>(
        static_cast<int32_t>((static_cast<uint32_t>(_options._firstSector) - 2u) * 10u));
    int64_t const last = first + std::max(iconCount, 1) - 1;
    if (first < 0)
        Fail(option + ": the icons' values start at " + std::to_string(first)
            + ", which enum class Icon : uint16_t cannot hold: Icons.h does not compile; fix: a sector of 2 "
              "or"
              " more (packager's default is 12)");
    else if (last > kMaxEnumerationValue)
        Fail(option + ": the icons' values run to " + std::to_string(last) + ", past the "
            + std::to_string(kMaxEnumerationValue)
            + " a uint16_t holds: Icons.h does not compile; fix: a sector of "
            + std::to_string((kMaxEnumerationValue + 1 - std::max(iconCount, 1)) / 10 + 2) + " or less");
    if (sector > PackFormat::kSectorNumberMask)
        Fail(option + ": the header keeps only the low 16 bits of the sector, "
            + std::to_string(sector & PackFormat::kSectorNumberMask) + "; fix: a sector below "
            + std::to_string(PackFormat::kSectorNumberMask + 1));
    int64_t const iconSectors
        = (iconCount + PackFormat::kIconsPerMappedSector - 1) / PackFormat::kIconsPerMappedSector;
    int64_t const lastSector = (sector & PackFormat::kSectorNumberMask) + iconSectors - 1;
    if (iconSectors > 0 && lastSector >= PackFormat::kStoreSectors)
        Fail(option + ": the icons' CRCs go to entries "
            + std::to_string(sector & PackFormat::kSectorNumberMask) + " to " + std::to_string(lastSector)
            + " of a table of " + std::to_string(PackFormat::kStoreSectors)
            + ": they land outside it; fix: a sector of "
            + std::to_string(PackFormat::kFirstScreenSector - iconSectors) + " or less");
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
            Fail("the name " + std::string(name) + " is longer than the "
                + std::to_string(PackFormat::kMaxNameLength) + " bytes a name may have; fix: a shorter name");
        return true;
    });
    if (needed > PackFormat::kNamesCapacity)
        Fail("the names need " + std::to_string(needed) + " bytes, more than the "
            + std::to_string(PackFormat::kNamesCapacity) + " of the names area; fix: shorter names");
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
    int64_t const lastIcon = int64_t { _options._firstSector } + _iconSectors - 1;
    if (_iconSectors > 0 && lastIcon >= PackFormat::kFirstScreenSector)
        Fail("the icons need sectors " + std::to_string(_options._firstSector) + " to "
            + std::to_string(lastIcon) + ", which runs into the screens' sectors from "
            + std::to_string(PackFormat::kFirstScreenSector) + " on; fix: a sector of "
            + std::to_string(PackFormat::kFirstScreenSector - _iconSectors) + " or less, or fewer icons");
    int64_t const lastScreen = int64_t { PackFormat::kFirstScreenSector } + screenSectors - 1;
    int64_t const room = PackFormat::kStoreSectors - PackFormat::kFirstScreenSector;
    if (screenSectors > 0 && lastScreen >= PackFormat::kStoreSectors)
        Fail("the screens need sectors " + std::to_string(PackFormat::kFirstScreenSector) + " to "
            + std::to_string(lastScreen) + ", past the " + std::to_string(PackFormat::kStoreSectors)
            + "-sector store whose CRC table ends at " + std::to_string(PackFormat::kStoreSectors - 1) + ": "
            + Plural(room, "sector") + " fit, " + Plural(room / PackFormat::kSectorsPerMappedScreen, "screen")
            + " of 8192 bytes; fix: fewer screens");
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

std::size_t TreeChecker::WarningCount() const
{
    return static_cast<std::size_t>(
        std::count_if(_findings.begin(), _findings.end(), [](Finding const& f) { return !f._failure; }));
}

std::size_t TreeChecker::FailureCount() const
{
    std::size_t const failures = _findings.size() - WarningCount();
    return _options._strict ? _findings.size() : failures;
}

void TreeChecker::Print(std::ostream& out) const
{
    for (auto const& finding : _findings)
        out << (finding._failure || _options._strict ? "FAIL " : "WARN ") << finding._text << '\n';
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

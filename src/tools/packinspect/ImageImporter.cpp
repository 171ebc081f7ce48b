#include "ImageImporter.h"

#include "BmpFile.h"
#include "GeneratedName.h"
#include "ImageDecoder.h"
#include "ImageGeometry.h"
#include "ImageList.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <system_error>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

namespace fs = std::filesystem;

// packager packs an image below this many bytes (at 4 bits per pixel) as an icon, the rest as screens.
constexpr std::size_t kSectorSize = 4096;
constexpr char kListFile[] = "list.txt";
constexpr char kSelected[] = "_Selected";

std::string SizeText(uint32_t width, uint32_t height)
{
    return std::to_string(width) + "x" + std::to_string(height);
}

std::string FolderName(std::string folder)
{
    while (folder.size() > 1 && folder.back() == '/')
        folder.pop_back();
    return fs::path(folder).filename().string();
}

std::string StemOf(std::string const& file) { return fs::path(file).stem().string(); }

std::string PathIn(std::string const& folder, std::string const& file)
{
    return (fs::path(folder) / file).string();
}

void WriteFile(std::string const& path, std::string_view bytes)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    if (!stream)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), path + ": cannot write it");
}

} // namespace

std::optional<ImageImporter::Kind> ImageImporter::KindOfFolder(std::string const& folder)
{
    std::string const name = FolderName(folder);
    if (name == "icons")
        return Kind::Icon;
    if (name == "screens")
        return Kind::Screen;
    return std::nullopt;
}

std::vector<uint8_t> ImageImporter::Pack4(std::vector<uint8_t> const& levels, uint32_t width, uint32_t height)
{
    ImageGeometry const geometry(width, height);
    std::vector<uint8_t> pixels(geometry.Size(), 0);
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x) {
            uint8_t const level = levels[static_cast<std::size_t>(y) * width + x] & 0x0F;
            // The left pixel of a byte is its high nibble.
            pixels[y * geometry.Stride() + x / 2] |= x % 2 == 0 ? static_cast<uint8_t>(level << 4) : level;
        }
    return pixels;
}

std::vector<uint8_t> ImageImporter::Pack1(std::vector<uint8_t> const& levels, uint32_t width, uint32_t height)
{
    std::size_t const stride = BmpFile::MonoStride(width);
    std::vector<uint8_t> bits(stride * height, 0);
    for (uint32_t y = 0; y < height; ++y)
        for (uint32_t x = 0; x < width; ++x)
            if (levels[static_cast<std::size_t>(y) * width + x] != 0)
                bits[y * stride + x / 8] |= static_cast<uint8_t>(0x80 >> (x % 8));
    return bits;
}

ImageImporter::Image ImageImporter::Convert(QImage const& frame, ImportSettings const& settings)
{
    Image image;
    QImage fitted = ImageFit::Composite(frame, settings._background);
    // Only a preview shows the source; a folder of large pictures must not be kept whole otherwise.
    if (settings._preview)
        image._composited = fitted;
    if (settings._size && fitted.size() != *settings._size) {
        if (settings._fit == ImageFit::Mode::None)
            throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
                "it is " + SizeText(fitted.width(), fitted.height()) + " pixels, not the "
                    + SizeText(settings._size->width(), settings._size->height())
                    + " of --size; give --fit=contain, cover or stretch to scale it");
        fitted = ImageFit::Scale(fitted, *settings._size, settings._fit, settings._background);
    }
    image._width = static_cast<uint32_t>(fitted.width());
    image._height = static_cast<uint32_t>(fitted.height());

    std::vector<uint8_t> greys(static_cast<std::size_t>(image._width) * image._height);
    for (uint32_t y = 0; y < image._height; ++y) {
        auto const* line = reinterpret_cast<QRgb const*>(fitted.constScanLine(static_cast<int>(y)));
        for (uint32_t x = 0; x < image._width; ++x) {
            uint8_t const luma = GreyMapping::Luma(static_cast<uint8_t>(qRed(line[x])),
                static_cast<uint8_t>(qGreen(line[x])), static_cast<uint8_t>(qBlue(line[x])));
            greys[static_cast<std::size_t>(y) * image._width + x] = settings._invert ? 255 - luma : luma;
        }
    }
    image._levels = Ditherer(settings._mapping, settings._dither).Levels(greys, image._width, image._height);

    if (settings._mapping.IsMono()) {
        if (!BmpFile::IsReadBackWholeMono(image._width))
            throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
                "packager reads 1-bit rows of a width of " + std::to_string(image._width)
                    + " one byte short; choose a width that is a multiple of 8 or 4 bits per pixel");
        image._file
            = BmpFile::Mono(image._width, image._height, Pack1(image._levels, image._width, image._height));
    } else {
        ImageGeometry const geometry(image._width, image._height);
        if (!BmpFile::IsReadBackWhole(geometry))
            throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
                "packager reads 4-bit rows of a width of " + std::to_string(image._width)
                    + " (8 k + 1) one byte short; choose a width one pixel wider or narrower");
        image._file = BmpFile::Gray4(geometry, Pack4(image._levels, image._width, image._height));
    }
    return image;
}

std::vector<std::string> ImageImporter::FrameNames(std::string const& base, std::size_t count)
{
    if (count == 1)
        return { base };
    // A selected variant keeps "_Selected" at its end, where packager and the designers look for it.
    std::string stem = base;
    std::string suffix;
    if (stem.size() > sizeof kSelected - 1 && stem.ends_with(kSelected)) {
        stem.resize(stem.size() - (sizeof kSelected - 1));
        suffix = kSelected;
    }
    int const digits = std::max<int>(2, static_cast<int>(std::to_string(count - 1).size()));
    std::vector<std::string> names;
    for (std::size_t index = 0; index < count; ++index) {
        std::string number = std::to_string(index);
        number.insert(0, static_cast<std::size_t>(digits) - number.size(), '0');
        names.push_back(stem + "_" + number + suffix);
    }
    return names;
}

std::vector<ImageImporter::Image> ImageImporter::ConvertFile(
    std::string const& file, ImportSettings const& settings)
{
    ImageDecoder::Request request;
    request._frame = settings._frame;
    request._target = settings._size;
    request._fit = settings._fit;
    auto const frames = ImageDecoder::Decode(file, request);
    std::string const base = settings._name.value_or(GeneratedName::FromStem(StemOf(file)));
    auto const names = FrameNames(base, frames.size());
    std::vector<Image> images;
    for (std::size_t index = 0; index < frames.size(); ++index) {
        Image image = Convert(frames[index], settings);
        image._name = names[index];
        image._source = file;
        images.push_back(std::move(image));
    }
    return images;
}

std::string ImageImporter::CheckKind(Image const& image, Kind kind)
{
    std::size_t const size = ImageGeometry(image._width, image._height).Size();
    std::string const what = SizeText(image._width, image._height) + " is " + std::to_string(size)
        + " bytes at 4 bits per pixel";
    if (kind == Kind::Icon && size >= kSectorSize)
        return what
            + ", which packager packs as a screen, not an icon; import it into screens or make it smaller";
    if (kind == Kind::Screen && size < kSectorSize)
        return what
            + ", which packager packs as an icon, not a screen; import it into icons or make it larger";
    return {};
}

std::optional<std::string> ImageImporter::BorderWarning(Image const& image)
{
    if (image._name.find(kSelected) != std::string::npos)
        return std::nullopt;
    for (uint32_t y = 0; y < image._height; ++y)
        for (uint32_t x = 0; x < image._width; ++x) {
            bool const border = x == 0 || y == 0 || x + 1 == image._width || y + 1 == image._height;
            if (border && image._levels[static_cast<std::size_t>(y) * image._width + x] != 0)
                return image._name + " has drawn pixels in its outer one-pixel border, first at ("
                    + std::to_string(x) + ", " + std::to_string(y)
                    + "), which packager paints over with the icon frame";
        }
    return std::nullopt;
}

ImageImporter::Plan ImageImporter::Prepare(ImportSettings const& settings)
{
    auto const kind = KindOfFolder(settings._folder);
    if (!kind)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "-o " + settings._folder
                + ": not a tree's icons or screens folder; give ROOT/icons or ROOT/screens");
    fs::path const folder(settings._folder);
    std::error_code error;
    if (!fs::is_directory(folder.parent_path().empty() ? fs::path(".") : folder.parent_path(), error))
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "-o " + settings._folder + ": its tree folder " + folder.parent_path().string()
                + " does not exist");

    if (settings._name && settings._files.size() > 1)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(),
            "--name names one file, and " + std::to_string(settings._files.size())
                + " are given; import them one at a time or rename the files");

    Plan plan;
    ImageList list = ImageList::Read(PathIn(settings._folder, kListFile));
    std::vector<std::string> problems;
    std::map<std::string, std::string> namedBy;
    for (auto const& file : settings._files) {
        std::vector<Image> images;
        try {
            images = ConvertFile(file, settings);
        } catch (std::exception const& failure) {
            problems.push_back(file + ": " + failure.what());
            continue;
        }
        for (auto& image : images) {
            std::string problem;
            if (auto const nameProblem = GeneratedName::ListedNameProblem(image._name))
                problem = *nameProblem + "; give another with --name or rename the file";
            if (problem.empty())
                problem = CheckKind(image, *kind);
            if (problem.empty() && namedBy.contains(image._name))
                problem = "the name " + image._name + " is also that of " + namedBy[image._name]
                    + "; give one of them another with --name or rename the file";
            if (problem.empty() && list.LineOf(image._name) && !settings._force)
                problem = "the name " + image._name + " is listed already in "
                    + PathIn(settings._folder, kListFile)
                    + "; give --force to replace its file, or another name with --name";
            if (!problem.empty()) {
                problems.push_back(file + ": " + problem);
                continue;
            }
            namedBy[image._name] = file;
            if (*kind == Kind::Icon)
                if (auto warning = BorderWarning(image))
                    plan._warnings.push_back(file + ": " + *warning);
            list.Put(image._name);
            plan._images.push_back(std::move(image));
        }
    }
    if (!problems.empty()) {
        std::string text;
        for (auto const& problem : problems)
            text += problem + "\n";
        text.pop_back();
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), text);
    }
    plan._listText = list.Text();
    return plan;
}

void ImageImporter::Commit(Plan const& plan, ImportSettings const& settings)
{
    std::error_code error;
    bool const madeFolder = fs::create_directory(settings._folder, error);
    if (error)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), "-o " + settings._folder + ": cannot make it: " + error.message());

    // A file that is new is written in its place: removing it undoes it. A file that would replace one
    // (a forced image, the list) is written beside it and renamed over it only once every file is
    // written, so that a failure leaves the old one. Writing new files directly keeps an import of a
    // whole folder at one file creation per image, as cheap as the files it writes.
    std::vector<std::string> created;
    std::vector<std::pair<std::string, std::string>> staged;
    auto undo = [&] {
        for (auto const& path : created)
            fs::remove(path, error);
        for (auto const& [staging, final] : staged)
            fs::remove(staging, error);
        if (madeFolder)
            fs::remove(settings._folder, error);
    };
    auto write = [&](std::string const& path, std::string_view bytes) {
        if (fs::exists(path, error)) {
            staged.emplace_back(path + ".import", path);
            WriteFile(staged.back().first, bytes);
        } else {
            created.push_back(path);
            WriteFile(path, bytes);
        }
    };
    try {
        for (auto const& image : plan._images)
            write(PathIn(settings._folder, image._name + ".bmp"),
                std::string_view(reinterpret_cast<char const*>(image._file.data()), image._file.size()));
        write(PathIn(settings._folder, kListFile), plan._listText);
    } catch (...) {
        undo();
        throw;
    }
    for (auto const& [staging, final] : staged) {
        fs::rename(staging, final, error);
        if (error) {
            undo();
            throw ResourcesLibraryException(
                ZAR_SOURCE_INFO(), final + ": cannot write it: " + error.message());
        }
    }
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

// packinspect import: a designer's image files made into the BMPs packager packs as drawn.

#include "Command.h"
#include "ImageDecoder.h"
#include "ImageImporter.h"
#include "ImportPreview.h"
#include "PngFile.h"

#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <charconv>
#include <cmath>
#include <fstream>
#include <ostream>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const& kOutputOption = CommonOptions::kOutput;
OptionParser::Option const kSizeOption { "size", 0, true };
OptionParser::Option const kFitOption { "fit", 0, true };
OptionParser::Option const kBackgroundOption { "background", 0, true };
OptionParser::Option const kBitsOption { "bits", 0, true };
OptionParser::Option const kInvertOption { "invert", 0, false };
OptionParser::Option const& kGammaOption = CommonOptions::kGamma;
OptionParser::Option const& kGreyTableOption = CommonOptions::kGreyTable;
OptionParser::Option const kThresholdOption { "threshold", 0, true };
OptionParser::Option const kDitherOption { "dither", 0, true };
OptionParser::Option const kFrameOption { "frame", 0, true };
OptionParser::Option const kNameOption { "name", 0, true };
OptionParser::Option const& kForceOption = CommonOptions::kForce;
OptionParser::Option const kPreviewOption { "preview", 0, true };

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect import [OPTION]... FILE... -o ROOT/icons   (or ROOT/screens)\n"
        "Convert image files (PNG, JPEG, GIF, BMP, PGM, PPM, SVG) into the uncompressed\n"
        "4-bit grey BMPs packager packs exactly as drawn, and append their names to the\n"
        "folder's list.txt in the order given. Each file goes through, in this order:\n"
        "\n"
        "      --background=G  transparency shows black, white or grey 0..255 (default\n"
        "                      black, the unlit pixel)\n"
        "      --size=WxH      the size to bring each image to; without --fit it must\n"
        "                      already be that size\n"
        "      --fit=MODE      contain (whole, centred, rest background), cover (filled,\n"
        "                      overflow cut), stretch, or none (default); SVG is drawn\n"
        "                      at the size\n"
        "                      grey = (299 R + 587 G + 114 B + 500) / 1000\n"
        "      --invert        grey = 255 - grey\n"
        "                      level = (grey x 15 + 127) / 255 by default, or:\n"
        "      --gamma=G       level = 15 x (grey / 255)^G, rounded\n"
        "      --grey-table=FILE  the panel's 16 measured luminances, level 0 to 15\n"
        "                      ascending; each grey takes the level of nearest light\n"
        "      --bits=1        black and white (1-bit BMP); default 4\n"
        "      --threshold=T   with --bits=1: white from grey T up (default 128); a\n"
        "                      dithered image is split by light instead\n"
        "      --dither=MODE   none (default), ordered, floyd-steinberg or atkinson;\n"
        "                      in linear light, serpentine, the same bytes every run\n"
        "\n"
        "      --frame=N       only frame N (from 0) of an animation; otherwise every\n"
        "                      frame, named NAME_00, NAME_01, ...\n"
        "      --name=NAME     the name of the one file given (default: its stem, with\n"
        "                      -\".,' and white space made _)\n"
        "      --force         replace the file of a name listed already\n"
        "      --preview=FILE  write a PNG of every source beside its result at 4 x\n"
        "  -o, --output=DIR    ROOT/icons or ROOT/screens (required)\n"
        "  -h, --help          show this help and exit\n"
        "\n"
        "Into icons an image must be below {sector size} bytes at 4 bits per pixel, into\n"
        "screens {sector size} or more, as packager decides. A name must be a C++ and\n"
        "Python name that is no keyword and not listed already. Icons with drawn pixels\n"
        "in their outer one-pixel border are warned of: packager draws its frame there\n"
        "(unless the name holds _Selected). Nothing is written unless every file\n"
        "converts; every problem is named with its file.\n"
        "\n"
        "Exit status: 0 if the images were written, 1 if a file was refused, 2 if the\n"
        "command line is wrong.\n");
}

std::optional<int> WholeNumber(std::string const& text, int low, int high)
{
    int value = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || value < low
        || value > high)
        return std::nullopt;
    return value;
}

std::optional<QSize> SizeOf(std::string const& text)
{
    auto const x = text.find('x');
    if (x == std::string::npos)
        return std::nullopt;
    auto const width = WholeNumber(text.substr(0, x), 1, ImageDecoder::kMaxSide);
    auto const height = WholeNumber(text.substr(x + 1), 1, ImageDecoder::kMaxSide);
    if (!width || !height)
        return std::nullopt;
    return QSize(*width, *height);
}

// The options as the preview's label shows them.
std::string OptionsText(ImportSettings const& settings)
{
    std::string text = settings._mapping.Description();
    if (settings._size)
        text += ", " + std::to_string(settings._size->width()) + "x"
            + std::to_string(settings._size->height()) + " " + ImageFit::NameOf(settings._fit);
    if (settings._invert)
        text += ", inverted";
    text += ", dither ";
    text += Ditherer::NameOf(settings._dither);
    text += ", background " + std::to_string(settings._background);
    return text;
}

// Fills the conversion settings from the command line; gives a usage error's text on trouble.
std::optional<std::string> ReadConversion(OptionParser const& options, ImportSettings& settings)
{
    if (auto const size = options.Value(kSizeOption._long)) {
        settings._size = SizeOf(*size);
        if (!settings._size)
            return "--size takes WxH, each from 1 to 4096, not '" + *size + "'";
    }
    if (auto const fit = options.Value(kFitOption._long)) {
        auto const mode = ImageFit::Parse(*fit);
        if (!mode)
            return "--fit takes contain, cover, stretch or none, not '" + *fit + "'";
        if (*mode != ImageFit::Mode::None && !settings._size)
            return "--fit=" + *fit + " needs --size=WxH";
        settings._fit = *mode;
    }
    if (auto const background = options.Value(kBackgroundOption._long)) {
        auto const grey = *background == "black" ? 0
            : *background == "white"             ? 255
                                                 : WholeNumber(*background, 0, 255);
        if (!grey)
            return "--background takes black, white or a grey from 0 to 255, not '" + *background + "'";
        settings._background = static_cast<uint8_t>(*grey);
    }
    settings._invert = options.Has(kInvertOption._long);
    if (auto const dither = options.Value(kDitherOption._long)) {
        auto const mode = Ditherer::Parse(*dither);
        if (!mode)
            return "--dither takes none, ordered, floyd-steinberg or atkinson, not '" + *dither + "'";
        settings._dither = *mode;
    }
    auto const bits = options.Value(kBitsOption._long).value_or("4");
    if (bits != "1" && bits != "4")
        return "--bits takes 1 or 4, not '" + bits + "'";
    auto const gamma = options.Value(kGammaOption._long);
    auto const table = options.Value(kGreyTableOption._long);
    auto const threshold = options.Value(kThresholdOption._long);
    if (bits == "1") {
        if (gamma || table)
            return "--gamma and --grey-table map to 16 levels; with --bits=1 use --threshold";
        auto const value = WholeNumber(threshold.value_or("128"), 0, 256);
        if (!value)
            return "--threshold takes a grey from 0 to 256, not '" + *threshold + "'";
        settings._mapping = GreyMapping::Threshold(*value);
        return std::nullopt;
    }
    if (threshold)
        return "--threshold is for --bits=1";
    std::optional<GreyMapping> mapping;
    if (auto const problem = GreyMapping::FromOptions(gamma, table, mapping))
        return problem;
    if (mapping)
        settings._mapping = *mapping;
    return std::nullopt;
}

int Run(Invocation& invocation)
{
    auto const& options = invocation.Options();
    ImportSettings settings;
    settings._files = invocation.Operands();
    if (settings._files.empty())
        return invocation.UsageError("no image file given");
    auto const output = invocation.RequiredValue(
        kOutputOption, "the folder is missing: give it with -o ROOT/icons or -o ROOT/screens");
    if (!output)
        return kUsage;
    settings._folder = *output;
    if (auto const problem = ReadConversion(options, settings))
        return invocation.UsageError(*problem);
    if (auto const frame = options.Value(kFrameOption._long)) {
        settings._frame = WholeNumber(*frame, 0, ImageDecoder::kMaxFrames - 1);
        if (!settings._frame)
            return invocation.UsageError("--frame takes a frame number from 0, not '" + *frame + "'");
    }
    settings._name = options.Value(kNameOption._long);
    settings._force = options.Has(kForceOption._long);
    settings._preview = options.Value(kPreviewOption._long);

    ImageImporter::Plan plan;
    try {
        plan = ImageImporter::Prepare(settings);
        if (settings._preview
            && !PngFile::Save(ImportPreview::Render(plan._images, OptionsText(settings)), *settings._preview))
            return invocation.Problem(*settings._preview + ": cannot write it; nothing was imported");
        ImageImporter::Commit(plan, settings);
    } catch (ResourcesLibraryException const& error) {
        std::istringstream lines(error.what());
        std::string line;
        while (std::getline(lines, line))
            invocation.Problem(line);
        return invocation.Problem("nothing was imported");
    }
    for (auto const& warning : plan._warnings)
        invocation.Out() << "warning: " << warning << '\n';
    for (auto const& image : plan._images)
        invocation.Out() << "imported " << image._source << " as " << image._name << " (" << image._width
                         << "x" << image._height << ")\n";
    return kFine;
}

} // namespace

Command const& ImportCommand()
{
    static Command const command { "import", "import FILE... -o ROOT/icons",
        "convert image files into the BMPs packager packs as drawn, and list them",
        { kOutputOption, kSizeOption, kFitOption, kBackgroundOption, kBitsOption, kInvertOption, kGammaOption,
            kGreyTableOption, kThresholdOption, kDitherOption, kFrameOption, kNameOption, kForceOption,
            kPreviewOption },
        &Help, &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

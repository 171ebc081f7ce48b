// packinspect build: check, pack with packager, verify and move the outputs into place, all or nothing.

#include "Command.h"
#include "ImageGeometry.h"
#include "PackArguments.h"
#include "PackBuild.h"

#include <charconv>
#include <optional>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

OptionParser::Option const& kSectorOption = CommonOptions::kSector;
OptionParser::Option const kVersionOption { "version", 0, true };
OptionParser::Option const& kStrictOption = CommonOptions::kStrict;
OptionParser::Option const& kOutputOption = CommonOptions::kOutput;

std::string Help()
{
    return Command::HelpText(
        "Usage: packinspect build [OPTION]... [ROOT] -o OUTDIR\n"
        "Build the pack of the bmp tree ROOT (default bmp/) into OUTDIR so that any\n"
        "problem fails the build: check the tree as 'packinspect check' does, run\n"
        "packager itself (found beside packinspect, then on PATH; the words of\n"
        "PACKINSPECT_EMULATOR, when set, go before it) in a staging folder beside\n"
        "OUTDIR, verify the pack, test that the six generated sources are whole and\n"
        "count the pack's icons and screens, and only then move oled.pack and the\n"
        "sources into OUTDIR together, removing the outputs of a previous build that\n"
        "this one did not make. On any failure OUTDIR is left as it was and the\n"
        "reasons are printed on standard error.\n"
        "\n"
        "  -o, --output=OUTDIR  the folder that receives the pack and the sources (made\n"
        "                       when missing, with the folders above it)\n"
        "      --sector=N       first icon sector, given to packager (default {default sector})\n"
        "      --version=V      pack version Major.minor[.patch[.build]], each 0 to 255,\n"
        "                       given to packager (default: packager's own, 0.6.0.0)\n"
        "      --icon=WxH       the size every icon must have (default: the size most\n"
        "                       icons have)\n"
        "      --strict         the check's warnings fail too\n"
        "  -h, --help           show this help and exit\n"
        "\n"
        "Exit status: 0 if every step passed and the outputs are in place, 1 if not, 2\n"
        "if the command line is wrong.\n");
}

// Major.minor with optional patch and build, each a number from 0 to 255: packager itself cuts the
// first three parts to 8 bits without a word, which a build that fails loudly does not let through.
bool IsVersion(std::string const& text)
{
    int parts = 0;
    for (std::size_t start = 0; start <= text.size(); ++parts) {
        auto end = text.find('.', start);
        if (end == std::string::npos)
            end = text.size();
        unsigned value = 0;
        auto const [last, error] = std::from_chars(text.data() + start, text.data() + end, value);
        if (end == start || error != std::errc() || last != text.data() + end || value > 255)
            return false;
        start = end + 1;
    }
    return parts >= 2 && parts <= 4;
}

// Every line PackBuild reports goes out with the command's name before it.
int ReportProblems(Invocation& invocation, std::string const& text)
{
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        invocation.Problem(line);
    return kProblemsFound;
}

int Run(Invocation& invocation)
{
    if (invocation.Operands().size() > 1)
        return invocation.UsageError("one bmp folder at most");
    auto const output
        = invocation.RequiredValue(kOutputOption, "the output folder is missing: give it with -o OUTDIR");
    if (!output)
        return kUsage;
    PackBuild::Options options;
    options._root = invocation.Operands().empty() ? "bmp" : invocation.Operands()[0];
    options._outputFolder = *output;
    auto const sector = CommonOptions::Sector(invocation);
    if (!sector)
        return kUsage;
    options._sector = *sector;
    options._version = invocation.Options().Value(kVersionOption._long).value_or("");
    if (!options._version.empty() && !IsVersion(options._version))
        return invocation.UsageError("the version '" + options._version
            + "' is not Major.minor[.patch[.build]] with parts from 0 to 255");
    if (auto const text = invocation.Options().Value(PackArguments::kIconOption._long)) {
        options._icon = ImageGeometry::Parse(*text);
        if (!options._icon)
            return invocation.UsageError(
                "a size is WxH, two numbers from 1 to 65535: '" + *text + "' is not");
    }
    options._strict = invocation.Options().Has(kStrictOption._long);

    // The check's findings say what failed; the exceptions behind them would only repeat it.
    std::ostringstream problems;
    int const status = PackBuild(options, "", invocation.Out(), problems).Run();
    return status == 0 ? kFine : ReportProblems(invocation, problems.str());
}

} // namespace

Command const& BuildCommand()
{
    static Command const command { "build", "build [ROOT] -o OUTDIR",
        "check, pack with packager, verify and move the outputs\ninto OUTDIR together: a build that fails "
        "loudly",
        { kOutputOption, kSectorOption, kVersionOption, PackArguments::kIconOption, kStrictOption }, &Help,
        &Run };
    return command;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

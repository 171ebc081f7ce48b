#include "PackBuild.h"

#include "ChildProcess.h"
#include "PackFile.h"
#include "PackVerifier.h"
#include "TreeChecker.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <ostream>
#include <set>
#include <sstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace fs = std::filesystem;

namespace {

// The last line each generated file ends with; a file cut short, by a full disk for one, lacks it.
struct SourceEnd {
    char const* _file;
    char const* _end;
};

constexpr SourceEnd kSourceEnds[] = {
    { "Icons.h", "}}\n" },
    { "Icons.py", "print(value_names)\n" },
    { "commands.py", "        raise CommandNotFoundException(command)\n" },
    { "IconsHelper.cpp", "    return names[value];\n}\n" },
    { "Screens.h", "}}\n" },
    { "Screens.py", "print(value_names)\n" },
};

std::optional<std::string> ReadAll(fs::path const& path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        return std::nullopt;
    return std::string((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
}

// The line of a generated header that gives the count of its enumeration.
std::string CountLine(std::string const& name, uint32_t count)
{
    return "    static constexpr " + name + "Index Count = " + std::to_string(count) + ";\n";
}

std::string CrcLine(std::string const& printed)
{
    auto const start = printed.find("crc:");
    return start == std::string::npos ? std::string()
                                      : printed.substr(start, printed.find('\n', start) - start);
}

// A folder beside the output folder, so that moving out of it is a rename on the same file system.
std::optional<fs::path> MakeStaging(fs::path const& output)
{
    fs::path const parent = output.parent_path();
    // Appended piece by piece: GCC 12's -O3 restrict check misreads "." + a temporary string as an
    // overlapping copy.
    std::string name = ".";
    name += output.filename().string();
    name += ".staging-XXXXXX";
    std::string pattern = (parent / name).string();
    if (!mkdtemp(pattern.data()))
        return std::nullopt;
    return fs::path(pattern);
}

// Makes the folders missing above the output folder (so that "-o build/generated" works in a fresh
// checkout) and, when it is destroyed, removes those of them that are still empty: a failed build
// leaves no trace, a successful one keeps the folders its outputs are in.
class MissingParents {
public:
    explicit MissingParents(fs::path const& output)
    {
        std::error_code error;
        for (fs::path folder = output.parent_path(); !folder.empty() && !fs::exists(folder, error);
             folder = folder.parent_path())
            _made.insert(_made.begin(), folder);
        for (auto const& folder : _made)
            fs::create_directory(folder, error);
    }
    ~MissingParents()
    {
        std::error_code error;
        for (auto folder = _made.rbegin(); folder != _made.rend(); ++folder)
            fs::remove(*folder, error);
    }
    MissingParents(MissingParents const&) = delete;
    MissingParents& operator=(MissingParents const&) = delete;

private:
    std::vector<fs::path> _made;
};

// Removes the staging folder whatever happens; the link to the tree inside it is removed as a link.
class StagingFolder {
public:
    explicit StagingFolder(fs::path path)
        : _path(std::move(path))
    {
    }
    ~StagingFolder()
    {
        std::error_code error;
        fs::remove_all(_path, error);
    }
    StagingFolder(StagingFolder const&) = delete;
    StagingFolder& operator=(StagingFolder const&) = delete;

private:
    fs::path _path;
};

} // namespace

PackBuild::PackBuild(Options options, std::string packager, std::ostream& out, std::ostream& err,
    zar::logging::ILogger* logger)
    : _options(std::move(options))
    , _packager(std::move(packager))
    , _out(out)
    , _err(err)
    , _logger(logger)
{
}

std::vector<std::string> const& PackBuild::Outputs()
{
    static std::vector<std::string> const outputs { "oled.pack", "Icons.h", "Icons.py", "commands.py",
        "IconsHelper.cpp", "Screens.h", "Screens.py" };
    return outputs;
}

int PackBuild::Problem(std::string const& text)
{
    _err << text << '\n';
    return 1;
}

int PackBuild::Run()
{
    if (!Check())
        return Problem("the check failed; " + _options._outputFolder + " is unchanged");
    std::string const packager = Packager();
    if (packager.empty())
        return Problem("packager is not beside packinspect (" + ChildProcess::ExecutableFolder()
            + ") nor on PATH; " + _options._outputFolder + " is unchanged");
    fs::path const output = OutputPath();
    MissingParents const parents(output);
    auto const staging = MakeStaging(output);
    if (!staging)
        return Problem("cannot make a staging folder beside " + _options._outputFolder + "; it is unchanged");
    StagingFolder const removed(*staging);
    fs::path const built = *staging / "out";
    if (!RunPackager(packager, *staging))
        return Problem(_options._outputFolder + " is unchanged");
    PackFile const pack = PackFile::Load((built / "oled.pack").string());
    if (!Verify(built, pack) || !CheckSources(built, pack) || !CheckPrinted(*staging / "packager.txt"))
        return Problem(_options._outputFolder + " is unchanged");
    if (!MoveIntoPlace(built))
        return 1;
    auto const& header = pack.Header();
    _out << "built " << _options._outputFolder << ": oled.pack (" << header._iconCount << " icons, "
         << header._screenCount << " screens) and its " << Outputs().size() - 1 << " source files, from "
         << packager << '\n'
         << _printed;
    return 0;
}

fs::path PackBuild::OutputPath() const
{
    // Absolute and without a trailing '/', so that its parent is the folder it is in.
    fs::path output = fs::absolute(_options._outputFolder).lexically_normal();
    if (!output.has_filename())
        output = output.parent_path();
    return output;
}

bool PackBuild::Check()
{
    TreeChecker checker(_options._root,
        TreeChecker::Options { _options._sector, _options._icon, _options._strict }, _logger, false);
    checker.Run();
    _trialOutput = checker.PackagerOutput();
    if (checker.FailureCount() == 0)
        return true;
    checker.Print(_err);
    return false;
}

std::string PackBuild::Packager() const
{
    return _packager.empty() ? ChildProcess::FindProgram("packager") : _packager;
}

bool PackBuild::RunPackager(std::string const& packager, fs::path const& staging)
{
    fs::path const built = staging / "out";
    std::error_code error;
    // packager reads the fixed folder bmp/ of where it runs: a link to the tree stands in for it.
    fs::create_directory(built, error);
    if (!error)
        fs::create_directory_symlink(fs::absolute(_options._root), built / "bmp", error);
    if (error) {
        _err << "cannot prepare " << built.string() << ": " << error.message() << '\n';
        return false;
    }
    auto arguments = ChildProcess::EmulatorWords();
    arguments.push_back(packager);
    if (!_options._version.empty())
        arguments.insert(arguments.end(), { "version", _options._version });
    arguments.insert(arguments.end(), { "sector", std::to_string(_options._sector) });
    auto const result = ChildProcess::Run(arguments, built.string(), (staging / "packager.txt").string());
    fs::remove(built / "bmp", error);
    _printed = ReadAll(staging / "packager.txt").value_or("");
    if (!result._started) {
        _err << result._problem << '\n';
        return false;
    }
    if (result._exitCode != 0) {
        _err << packager << " "
             << (result._signal ? "was ended by signal " + std::to_string(result._signal)
                                : "exited with " + std::to_string(result._exitCode))
             << ", printing:\n"
             << _printed;
        return false;
    }
    return true;
}

bool PackBuild::Verify(fs::path const& folder, PackFile const& pack)
{
    auto const report = PackVerifier::Check(pack);
    if (report.ProblemCount() == 0)
        return true;
    _err << "the pack packager wrote does not verify (" << (folder / "oled.pack").string() << ", "
         << pack.Size() << " bytes):\n";
    PackVerifier::Print(report, _err);
    return false;
}

bool PackBuild::CheckSources(fs::path const& folder, PackFile const& pack)
{
    std::vector<std::string> problems;
    for (auto const& [file, end] : kSourceEnds) {
        auto const text = ReadAll(folder / file);
        if (!text)
            problems.push_back(std::string(file) + " is missing");
        else if (!text->ends_with(end))
            problems.push_back(
                std::string(file) + " is cut short (" + std::to_string(text->size()) + " bytes)");
    }
    auto const& header = pack.Header();
    auto const counts = [&](char const* file, std::string const& name, uint32_t count) {
        auto const text = ReadAll(folder / file);
        if (text && text->find(CountLine(name, count)) == std::string::npos)
            problems.push_back(std::string(file) + " does not count the pack's " + std::to_string(count) + " "
                + (name == "Icon" ? "icons" : "screens"));
    };
    counts("Icons.h", "Icon", header._iconCount);
    counts("Screens.h", "Screen", header._screenCount);
    for (auto const& problem : problems)
        _err << "the sources packager wrote are incomplete: " << problem << '\n';
    return problems.empty();
}

bool PackBuild::CheckPrinted(fs::path const& log)
{
    // The CRCs packager prints are those of the trial pack the check built from the same tree.
    std::string const printed = CrcLine(_printed);
    std::string const trial = CrcLine(_trialOutput);
    if (printed == trial)
        return true;
    _err << "packager printed \"" << printed << "\" where the check's trial pack has \"" << trial << "\" ("
         << log.string() << ")\n";
    return false;
}

bool PackBuild::MoveIntoPlace(fs::path const& folder)
{
    fs::path const output(_options._outputFolder);
    std::error_code error;
    fs::create_directories(output, error);
    if (error)
        return Problem("cannot make " + output.string() + ": " + error.message()) == 0;
    std::set<std::string> previous;
    if (auto const manifest = ReadAll(output / kManifest)) {
        std::istringstream lines(*manifest);
        for (std::string line; std::getline(lines, line);)
            if (!line.empty() && line.find('/') == std::string::npos)
                previous.insert(line);
    }
    std::string manifest;
    for (auto const& file : Outputs()) {
        // An output that is the same as before is left as it is, so that nothing that includes it
        // is rebuilt for nothing.
        if (ReadAll(output / file) != ReadAll(folder / file))
            fs::rename(folder / file, output / file, error);
        if (error)
            return Problem("cannot move " + file + " into " + output.string() + ": " + error.message()) == 0;
        previous.erase(file);
        manifest += file + "\n";
    }
    for (auto const& stale : previous)
        fs::remove(output / stale, error);
    std::ofstream(output / kManifest, std::ios::binary) << manifest;
    return true;
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

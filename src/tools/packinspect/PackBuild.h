#pragma once

#include "ImageGeometry.h"

#include "ILogger.h"

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

class PackFile;

// A build that fails loudly, for shells, Makefiles and CI: the tree is checked, packager (the very
// program, as a child process) packs it in a staging folder of its own, the pack is verified and the
// generated sources are tested for completeness, and only then are all outputs moved into the output
// folder together, replacing the previous ones that differ (an output the same as before keeps its file
// and its time) and removing those a previous build made that this one did not. Any failure leaves the output
// folder as it was and says why.
class PackBuild {
public:
    struct Options {
        std::string _root = "bmp";
        std::string _outputFolder;
        int32_t _sector = 12;
        // Given to packager as it is; empty: packager's own default.
        std::string _version;
        std::optional<ImageGeometry> _icon;
        bool _strict = false;
    };

    // packager: the program to run; empty to find it beside this executable, then on PATH. What goes
    // wrong is written to err, one reason a line, for the command to prefix with its name.
    PackBuild(Options options, std::string packager, std::ostream& out, std::ostream& err,
        zar::logging::ILogger* logger = nullptr);

    // 0 when every step passed and the outputs are in place, 1 otherwise.
    int Run();

    // The pack and the six sources packager writes beside it.
    static std::vector<std::string> const& Outputs();
    // The file in the output folder that names the outputs of the last build, so that the next one
    // removes those it does not make again.
    static constexpr char kManifest[] = ".packinspect-build";

private:
    std::filesystem::path OutputPath() const;
    bool Check();
    std::string Packager() const;
    bool RunPackager(std::string const& packager, std::filesystem::path const& staging);
    bool Verify(std::filesystem::path const& folder, PackFile const& pack);
    bool CheckSources(std::filesystem::path const& folder, PackFile const& pack);
    bool CheckPrinted(std::filesystem::path const& log);
    bool MoveIntoPlace(std::filesystem::path const& folder);
    int Problem(std::string const& text);

    Options _options;
    std::string _packager;
    std::ostream& _out;
    std::ostream& _err;
    zar::logging::ILogger* _logger;
    std::string _trialOutput;
    std::string _printed;
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

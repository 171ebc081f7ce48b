#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <utility>

// Set by the build from the install layout: the module's folder relative to the executable's, and
// the same folder under the configured prefix.
#ifndef PACKAGER_QT_MODULE_RELATIVE_FOLDER
#define PACKAGER_QT_MODULE_RELATIVE_FOLDER "../lib/packager"
#endif
#ifndef PACKAGER_QT_MODULE_INSTALLED_FOLDER
#define PACKAGER_QT_MODULE_INSTALLED_FOLDER "/usr/local/lib/packager"
#endif

namespace Zar::ResourcesLibrary::Image {

namespace {

struct ModuleState {
    std::vector<std::string> searchPaths; // empty: those of the running executable
    ZarQtImageCodec const* codec = nullptr;
};

ModuleState& State()
{
    static ModuleState state;
    return state;
}

std::string ExecutableFolder()
{
    std::array<char, 4096> path {};
    ssize_t const length = ::readlink("/proc/self/exe", path.data(), path.size() - 1);
    if (length <= 0)
        return ".";
    std::string executable(path.data(), static_cast<size_t>(length));
    size_t const slash = executable.rfind('/');
    return slash == std::string::npos ? std::string(".") : executable.substr(0, slash);
}

// The loader's reason for the last failure. The text is copied at once: dlerror's buffer belongs to
// the loader and is freed by a later dlclose.
std::string LoaderReason()
{
    char const* const reason = ::dlerror();
    return reason != nullptr ? std::string(reason) : std::string("no reason given");
}

// The codec of the module at path, or nullptr with the reason added to failures. A module that
// is refused is closed again.
ZarQtImageCodec const* OpenModule(std::string const& path, std::string& failures)
{
    std::string reason;
    if (void* const handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
        auto const entry = reinterpret_cast<ZarQtImageCodecEntry>(::dlsym(handle, ZAR_QT_IMAGE_CODEC_ENTRY));
        ZarQtImageCodec const* const codec = entry != nullptr ? entry() : nullptr;
        if (entry == nullptr)
            reason = LoaderReason();
        else if (codec == nullptr)
            reason = path + ": its " ZAR_QT_IMAGE_CODEC_ENTRY "() gave no codec";
        else if (codec->version != ZAR_QT_IMAGE_CODEC_VERSION)
            reason = path + ": its codec has version " + std::to_string(codec->version)
                + ", this build needs " + std::to_string(ZAR_QT_IMAGE_CODEC_VERSION)
                + " (a module of another build)";
        else
            return codec;
        ::dlclose(handle);
    } else {
        reason = LoaderReason();
    }
    failures += failures.empty() ? " tried " : "; ";
    failures += path + " (" + reason + ")";
    return nullptr;
}

} // namespace

ZarQtImageCodec const& QtModule::Codec()
{
    ModuleState& state = State();
    if (state.codec != nullptr)
        return *state.codec;
    std::vector<std::string> const paths = state.searchPaths.empty()
        ? CandidatePaths(ExecutableFolder(), std::getenv(kFolderVariable))
        : state.searchPaths;
    std::string failures;
    for (std::string const& path : paths) {
        state.codec = OpenModule(path, failures);
        if (state.codec != nullptr)
            return *state.codec;
    }
    // Not remembered: a later image tries again, and each failed image says why.
    throw ResourcesLibraryException(
        ZAR_SOURCE_INFO(), std::string("cannot load the Qt image module ") + kFileName + ":" + failures);
}

std::vector<std::string> QtModule::CandidatePaths(
    std::string const& executableFolder, char const* moduleFolder)
{
    std::string const file = std::string("/") + kFileName;
    if (moduleFolder != nullptr && moduleFolder[0] != '\0')
        return { moduleFolder + file };
    return { executableFolder + file, executableFolder + "/" PACKAGER_QT_MODULE_RELATIVE_FOLDER + file,
        PACKAGER_QT_MODULE_INSTALLED_FOLDER + file };
}

void QtModule::SetSearchPaths(std::vector<std::string> paths)
{
    ModuleState& state = State();
    state.searchPaths = std::move(paths);
    state.codec = nullptr;
}

} // namespace Zar::ResourcesLibrary::Image

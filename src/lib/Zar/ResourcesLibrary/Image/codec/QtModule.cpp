#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <dlfcn.h>
#include <unistd.h>

#include <array>
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

// The codec of the module at path, or nullptr with the loader's reason added to failures.
ZarQtImageCodec const* OpenModule(std::string const& path, std::string& failures)
{
    void* handle = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    char const* reason = nullptr;
    if (handle != nullptr) {
        if (auto entry = reinterpret_cast<ZarQtImageCodecEntry>(::dlsym(handle, ZAR_QT_IMAGE_CODEC_ENTRY)))
            return entry();
        reason = ::dlerror();
        ::dlclose(handle);
    } else {
        reason = ::dlerror();
    }
    failures += failures.empty() ? " tried " : "; ";
    failures += path + " (" + (reason != nullptr ? reason : "no reason given") + ")";
    return nullptr;
}

} // namespace

ZarQtImageCodec const& QtModule::Codec()
{
    ModuleState& state = State();
    if (state.codec != nullptr)
        return *state.codec;
    std::vector<std::string> const paths
        = state.searchPaths.empty() ? CandidatePaths(ExecutableFolder()) : state.searchPaths;
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

std::vector<std::string> QtModule::CandidatePaths(std::string const& executableFolder)
{
    std::string const file = std::string("/") + kFileName;
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

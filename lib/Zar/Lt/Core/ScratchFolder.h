#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace Zar::Lt::Core {

// A fresh private folder under the system's temporary folder (TMPDIR, else /tmp), removed with
// everything in it when the object goes. packinspect builds a trial pack in one; the tests, the
// benchmarks and the fuzz targets write their input trees in one.
//
// The folder's own name is the given prefix, a '-' and six letters or digits, so it holds no dot:
// a file made in it has an extension only when its own name gives one.
//
//   ScratchFolder const folder("packinspect");
//   std::string const list = folder.Write("bmp/icons/list.txt", "Play\n");
//   exporter.Open(folder.Prefix() + "oled.pack");
class ScratchFolder {
public:
    // Makes the folder. A prefix holding '/' or '.' throws PreCondition; a folder that cannot be
    // made throws BaseException naming the path tried and the reason.
    explicit ScratchFolder(std::string_view prefix = kDefaultPrefix);
    // Removes the folder and everything in it. A failure to remove is ignored: an object going out
    // of scope, also while an exception is on its way, must not throw.
    ~ScratchFolder();

    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::filesystem::path const& Path() const noexcept { return _path; }
    std::filesystem::path operator/(std::filesystem::path const& name) const { return _path / name; }

    // The path of an entry of the folder as a string, the form the loaders take.
    std::string PathOf(std::filesystem::path const& name) const { return (_path / name).string(); }

    // The folder with a trailing '/', the form the packager's build takes for folders.
    std::string Prefix() const { return _path.string() + "/"; }

    // Writes a file in the folder, in binary mode and with the folders above it, and returns its
    // path. The name is relative to the folder: an absolute one throws PreCondition. A file that
    // cannot be written throws BaseException, so that nothing goes on with a file left empty.
    std::string Write(std::filesystem::path const& name, std::string_view content) const;
    std::string Write(std::filesystem::path const& name, std::vector<uint8_t> const& content) const;

    static constexpr std::string_view kDefaultPrefix = "zar-scratch";

private:
    std::string WriteBytes(std::filesystem::path const& name, char const* data, std::size_t size) const;

    std::filesystem::path _path;
};

} // namespace Zar::Lt::Core

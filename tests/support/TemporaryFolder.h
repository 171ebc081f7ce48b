#pragma once

// A fresh folder per test under the system's temporary folder, removed with everything in it when
// the object goes. Its own name holds no dot, so that the paths made in it have no extension by
// accident.
//
//   TemporaryFolder const folder;
//   std::string const path = folder.Write("bmp/icons/list.txt", "Play\n");
//   loader.Load(folder.PathOf("missing.bmp"));

#include "FileContents.h"

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <stdlib.h>

namespace TestSupport {

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "packager-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), "mkdtemp " + pattern);
        _path = pattern;
    }

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }

    TemporaryFolder(TemporaryFolder const&) = delete;
    TemporaryFolder& operator=(TemporaryFolder const&) = delete;

    std::filesystem::path const& Path() const { return _path; }
    std::filesystem::path operator/(std::string const& name) const { return _path / name; }

    // The path of a file in the folder as a string, the form the loaders take.
    std::string PathOf(std::string const& name) const { return (_path / name).string(); }

    // The folder with a trailing '/', the form the tool takes for folders.
    std::string Prefix() const { return _path.string() + "/"; }

    // Writes a file in the folder (and the folders above it) and returns its path.
    std::string Write(std::string const& name, std::string const& content) const
    {
        WriteFile(_path / name, content);
        return PathOf(name);
    }

    std::string Write(std::string const& name, std::vector<uint8_t> const& content) const
    {
        WriteFile(_path / name, content);
        return PathOf(name);
    }

private:
    std::filesystem::path _path;
};

} // namespace TestSupport

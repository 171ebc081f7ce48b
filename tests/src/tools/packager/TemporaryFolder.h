#pragma once

// A fresh folder per test under the system's temporary folder, removed with everything in it when
// the test ends, and small helpers to put files into it and read them back.

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <unistd.h>

namespace PackagerTests {

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "packager-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), "mkdtemp");
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
    // The folder's path with a trailing '/', the form the tool expects for folders.
    std::string Prefix() const { return _path.string() + "/"; }
    std::filesystem::path operator/(std::string const& name) const { return _path / name; }

private:
    std::filesystem::path _path;
};

// Makes a folder the current one for a scope: the tool reads bmp/ and writes its files in the
// current folder.
class ScopedWorkingDirectory
{
public:
    explicit ScopedWorkingDirectory(std::filesystem::path const& folder)
        : _previous(std::filesystem::current_path())
    {
        std::filesystem::current_path(folder);
    }

    ~ScopedWorkingDirectory()
    {
        std::error_code ignored;
        std::filesystem::current_path(_previous, ignored);
    }

    ScopedWorkingDirectory(ScopedWorkingDirectory const&) = delete;
    ScopedWorkingDirectory& operator=(ScopedWorkingDirectory const&) = delete;

private:
    std::filesystem::path _previous;
};

inline void WriteFile(std::filesystem::path const& path, std::string const& content)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file << content;
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

inline void WriteFile(std::filesystem::path const& path, std::vector<uint8_t> const& content)
{
    WriteFile(path, std::string(content.begin(), content.end()));
}

inline std::vector<uint8_t> ReadBytes(std::filesystem::path const& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path.string());
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

inline std::string ReadText(std::filesystem::path const& path)
{
    auto const bytes = ReadBytes(path);
    return { bytes.begin(), bytes.end() };
}

} // namespace PackagerTests

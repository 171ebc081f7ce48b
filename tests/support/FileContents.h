#pragma once

// Whole-file reads and writes for tests, in binary mode so that the bytes on disk are exactly the
// ones given. A failure throws rather than leaving an empty file behind, so that a test never goes
// on to check the tool against a fixture that was not written.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace TestSupport {

// Writes the file, creating the folders above it first.
inline void WriteFile(std::filesystem::path const& path, char const* data, std::size_t size)
{
    if (path.has_parent_path())
        std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(data, static_cast<std::streamsize>(size));
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

inline void WriteFile(std::filesystem::path const& path, std::string const& content)
{
    WriteFile(path, content.data(), content.size());
}

inline void WriteFile(std::filesystem::path const& path, std::vector<uint8_t> const& content)
{
    WriteFile(path, reinterpret_cast<char const*>(content.data()), content.size());
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

} // namespace TestSupport

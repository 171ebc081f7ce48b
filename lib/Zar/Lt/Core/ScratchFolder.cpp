#include "Zar/Lt/Core/ScratchFolder.h"

#include "Zar/Lt/Exceptions/BaseException.h"
#include "Zar/Lt/Exceptions/Check.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include <stdlib.h>

namespace Zar::Lt::Core {

namespace {

// mkdtemp replaces these six characters with letters and digits.
constexpr std::string_view kUniqueSuffix = "-XXXXXX";

} // namespace

ScratchFolder::ScratchFolder(std::string_view prefix)
{
    // The prefix names the folder itself: a '/' would put it elsewhere, and a '.' would give the
    // paths made in it an extension they do not ask for.
    ZAR_PRECONDITION(prefix.find_first_of("/.") == std::string_view::npos);
    std::error_code error;
    std::string pattern = std::filesystem::temp_directory_path(error).string();
    if (error)
        throw Zar::Lt::Exceptions::BaseException(
            ZAR_SOURCE_INFO(), "Cannot create a scratch folder: no temporary folder: " + error.message());
    if (pattern.empty() || pattern.back() != '/')
        pattern += '/';
    pattern += prefix;
    pattern += kUniqueSuffix;
    if (::mkdtemp(pattern.data()) == nullptr) {
        int const reason = errno;
        throw Zar::Lt::Exceptions::BaseException(ZAR_SOURCE_INFO(),
            "Cannot create a scratch folder " + pattern + ": " + std::generic_category().message(reason));
    }
    _path = pattern;
}

ScratchFolder::~ScratchFolder()
{
    try {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    } catch (...) {
        // remove_all may still run out of memory while it walks the tree; what it could not remove
        // stays in the temporary folder, which is the lesser harm than a throwing destructor.
    }
}

std::string ScratchFolder::Write(std::filesystem::path const& name, std::string_view content) const
{
    return WriteBytes(name, content.data(), content.size());
}

std::string ScratchFolder::Write(std::filesystem::path const& name, std::vector<uint8_t> const& content) const
{
    return WriteBytes(name, reinterpret_cast<char const*>(content.data()), content.size());
}

std::string ScratchFolder::WriteBytes(
    std::filesystem::path const& name, char const* data, std::size_t size) const
{
    // An absolute name would replace the folder: what is written here stays inside it.
    ZAR_PRECONDITION(name.is_relative());
    std::filesystem::path const path = _path / name;
    // A folder that cannot be made shows as the file that cannot be written below.
    std::error_code ignored;
    std::filesystem::create_directories(path.parent_path(), ignored);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(data, static_cast<std::streamsize>(size));
    file.close();
    if (!file)
        throw Zar::Lt::Exceptions::BaseException(ZAR_SOURCE_INFO(), "Cannot write " + path.string());
    return path.string();
}

} // namespace Zar::Lt::Core

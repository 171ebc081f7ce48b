#pragma once

// A private folder under the system's temporary directory for targets that must go through files,
// made once per fuzzing process and removed at its exit.

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace ZarFuzz {

class ScratchFolder
{
public:
    ScratchFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "zar-fuzz-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr)
            std::abort();
        _path = pattern;
    }

    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }

    ScratchFolder(ScratchFolder const&) = delete;
    ScratchFolder& operator=(ScratchFolder const&) = delete;

    std::filesystem::path const& Path() const { return _path; }

private:
    std::filesystem::path _path;
};

} // namespace ZarFuzz

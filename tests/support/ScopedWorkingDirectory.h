#pragma once

// Makes a folder the current one for a scope and goes back to the previous one at its end: the
// packager reads bmp/ and writes its files relative to the current folder.

#include <filesystem>
#include <system_error>

namespace TestSupport {

class ScopedWorkingDirectory {
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

} // namespace TestSupport

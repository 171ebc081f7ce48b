// The I/O floor of a packager run: opens and reads every file that the icons' and the screens'
// list.txt name, then writes files of given sizes (those of the pack and of the generated sources).
// It does no decoding, no drawing and no CRC, so its time is what any tool doing this job has to
// spend on the file system and on starting a process. Plain POSIX calls keep it free of any
// buffering layer: one read loop per input, one write per output.
//
//   io_floor <bmp root> <output folder> [<file name>=<size> ...]
//
// Without arguments it does nothing, which makes it the start-up baseline of a C++ program that
// does not load Qt.

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace {

bool ReadWhole(std::string const& path, std::vector<char>& buffer, std::size_t& size)
{
    int const file = ::open(path.c_str(), O_RDONLY);
    if (file < 0)
        return false;
    size = 0;
    for (;;) {
        if (size == buffer.size())
            buffer.resize(buffer.empty() ? 4096 : 2 * buffer.size());
        ssize_t const got = ::read(file, buffer.data() + size, buffer.size() - size);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        size += static_cast<std::size_t>(got);
    }
    ::close(file);
    return true;
}

bool WriteFile(std::string const& path, std::vector<char> const& bytes, std::size_t size)
{
    int const file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (file < 0)
        return false;
    std::size_t done = 0;
    while (done < size) {
        ssize_t const put = ::write(file, bytes.data() + done, size - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            break;
        done += static_cast<std::size_t>(put);
    }
    return ::close(file) == 0 && done == size;
}

// A list item without an extension in its last component names a BMP file, as for the packager.
std::string ImagePath(std::string const& folder, std::string_view item)
{
    std::string path = folder;
    path.append(item);
    auto const slash = item.rfind('/');
    auto const dot = item.rfind('.');
    if (dot == std::string_view::npos || (slash != std::string_view::npos && dot < slash))
        path += ".bmp";
    return path;
}

// Reads the list and every file it names; returns the number of files read, or -1 when a listed
// file is missing (the floor must do all the reading the packager does, or it is no floor).
int ReadListed(std::string const& folder, std::vector<char>& buffer)
{
    std::vector<char> list;
    std::size_t listSize = 0;
    if (!ReadWhole(folder + "list.txt", list, listSize))
        return 0;
    int count = 0;
    std::string_view rest(list.data(), listSize);
    while (!rest.empty()) {
        auto const end = rest.find('\n');
        auto line = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        auto const first = line.find_first_not_of(" \t\r");
        if (first == std::string_view::npos)
            continue;
        line = line.substr(first, line.find_last_not_of(" \t\r") - first + 1);
        std::size_t size = 0;
        if (!ReadWhole(ImagePath(folder, line), buffer, size))
            return -1;
        ++count;
    }
    return count;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 1)
        return 0;
    if (argc < 3) {
        std::fprintf(stderr, "usage: io_floor <bmp root> <output folder> [<file name>=<size> ...]\n");
        return 2;
    }
    std::string const root = argv[1];
    std::string folder = argv[2];
    if (!folder.empty() && folder.back() != '/')
        folder += '/';

    std::vector<char> buffer;
    for (char const* kind : { "icons/", "screens/" }) {
        if (ReadListed(root + kind, buffer) < 0) {
            std::fprintf(
                stderr, "io_floor: a file listed in %s%slist.txt cannot be read\n", root.c_str(), kind);
            return 1;
        }
    }

    std::vector<char> const bytes(1 << 20, '\xFF');
    for (int i = 3; i < argc; ++i) {
        char const* const equals = std::strrchr(argv[i], '=');
        char* end = nullptr;
        unsigned long long const size = equals ? std::strtoull(equals + 1, &end, 10) : 0;
        if (!equals || end == equals + 1 || *end != '\0' || size > bytes.size()) {
            std::fprintf(stderr, "io_floor: expected <file name>=<size up to 1 MiB>, got %s\n", argv[i]);
            return 2;
        }
        std::string const path = folder + std::string(argv[i], static_cast<std::size_t>(equals - argv[i]));
        if (!WriteFile(path, bytes, static_cast<std::size_t>(size))) {
            std::fprintf(stderr, "io_floor: cannot write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}

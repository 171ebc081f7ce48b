#include "Zar/ResourcesLibrary/Image/InputFile.h"

#include "Zar/ResourcesLibrary/Image/ByteStream.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <utility>

namespace Zar::ResourcesLibrary::Image {

namespace {

// Bytes read at most per piece while the size a file declares is not yet proven.
constexpr size_t kReadStep = size_t { 1 } << 20;

// Closes the descriptor on every way out of a read.
class Descriptor {
public:
    explicit Descriptor(int descriptor)
        : _descriptor(descriptor)
    {
    }
    ~Descriptor()
    {
        if (_descriptor >= 0)
            ::close(_descriptor);
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    int Get() const noexcept { return _descriptor; }

private:
    int _descriptor;
};

// Reads exactly size bytes unless the file ends or fails first; the bytes read.
size_t ReadFully(int descriptor, uint8_t* data, size_t size)
{
    size_t done = 0;
    while (done < size) {
        ssize_t const got = ::read(descriptor, data + done, size - done);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        done += static_cast<size_t>(got);
    }
    return done;
}

// A regular file of 1 to kWholeReadLimit bytes. A size of 0 is left to the stream as well: files
// of the kernel's pseudo file systems report it and still hold text.
bool IsWholeReadable(struct stat const& status)
{
    return S_ISREG(status.st_mode) && status.st_size > 0
        && static_cast<uint64_t>(status.st_size) <= InputFile::kWholeReadLimit;
}

std::unique_ptr<std::istream> OpenAsStream(char const* path)
{
    auto stream = std::make_unique<std::ifstream>(path, std::ios::in | std::ios::binary);
    if (!stream->is_open())
        return nullptr;
    return stream;
}

} // namespace

std::optional<std::vector<uint8_t>> InputFile::ReadWhole(char const* path)
{
    if (path == nullptr || path[0] == '\0')
        return std::nullopt;
    // Only a regular file is opened here. Opening a pipe, even without blocking and closed at once,
    // would release a writer waiting in its own open, whose first write then finds no reader and
    // kills it; the stream opens it once and reads it as it arrives instead.
    struct stat status { };
    if (::stat(path, &status) != 0 || !IsWholeReadable(status))
        return std::nullopt;
    // The size from stat is used as it is: asking the open file again would cost every input one
    // more system call. Non-blocking in case the path was replaced by a pipe in between: then the
    // read finds nothing and the loader reports a file too short, rather than waiting on it.
    Descriptor const file(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.Get() < 0)
        return std::nullopt;
    // The buffer holds no more than the file system says the file does. A file that shrinks
    // meanwhile gives what it still held; one that grows is read to its size then.
    std::vector<uint8_t> bytes(static_cast<size_t>(status.st_size));
    bytes.resize(ReadFully(file.Get(), bytes.data(), bytes.size()));
    return bytes;
}

std::unique_ptr<std::istream> InputFile::Open(char const* path)
{
    if (path == nullptr || path[0] == '\0')
        return nullptr;
    if (std::optional<std::vector<uint8_t>> bytes = ReadWhole(path))
        return std::make_unique<ByteStream>(std::move(*bytes));
    return OpenAsStream(path);
}

std::vector<uint8_t> InputFile::ReadAvailable(uint64_t size, PieceReader const& read)
{
    std::vector<uint8_t> data;
    while (data.size() < size) {
        size_t const step = static_cast<size_t>(std::min<uint64_t>(size - data.size(), kReadStep));
        size_t const before = data.size();
        data.resize(before + step);
        size_t const got = read(data.data() + before, step);
        data.resize(before + std::min(got, step));
        if (got < step)
            break;
    }
    return data;
}

std::vector<uint8_t> InputFile::ReadAvailable(std::istream& stream, uint64_t size)
{
    return ReadAvailable(size, [&stream](uint8_t* data, size_t count) {
        stream.read(reinterpret_cast<char*>(data), static_cast<std::streamsize>(count));
        return static_cast<size_t>(stream.gcount());
    });
}

std::optional<uint64_t> InputFile::RemainingBytes(std::istream& stream)
{
    std::streampos const here = stream.tellg();
    if (here == std::streampos(-1))
        return std::nullopt;
    stream.seekg(0, std::ios::end);
    std::streampos const end = stream.tellg();
    stream.clear();
    stream.seekg(here);
    if (end == std::streampos(-1) || end < here || !stream)
        return std::nullopt;
    return static_cast<uint64_t>(end - here);
}

} // namespace Zar::ResourcesLibrary::Image

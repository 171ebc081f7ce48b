#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <istream>
#include <memory>
#include <optional>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

// Opens the files that a build reads (images and lists) the way that costs the fewest system calls:
// a regular file of ordinary size is read whole with one read into memory and closed at once, and
// decoded from there. Anything else (a file larger than any display image, a pipe, a device) is
// opened as a plain file stream, which reads it as it arrives and never needs its size.
class InputFile {
public:
    // Regular files up to this size are read in one go. The largest input the display has room
    // for is an 800 x 480 frame of 1.5 MB; a file beyond this is left to the stream, so that the
    // loaders' memory bound (the decoded image and a fixed allowance) holds for it too.
    static constexpr uint64_t kWholeReadLimit = uint64_t { 16 } << 20;

    // The opened file, positioned at its first byte, or nullptr when it cannot be opened.
    static std::unique_ptr<std::istream> Open(char const* path);

    // The whole content of a regular file of 1 to kWholeReadLimit bytes; nothing for a file that
    // cannot be opened, is not regular, is empty or larger. A file that is not regular is not even
    // opened (a pipe's writer would take that open for its reader). The file is closed on return.
    static std::optional<std::vector<uint8_t>> ReadWhole(char const* path);

    // Reads a piece of at most count bytes into data and returns how many it put there.
    using PieceReader = std::function<size_t(uint8_t* data, size_t count)>;

    // Reads up to size bytes through read, stopping at its first short piece. The buffer grows only
    // as bytes arrive, so a size that the data cannot back never turns into a large allocation.
    static std::vector<uint8_t> ReadAvailable(uint64_t size, PieceReader const& read);

    // The same, reading the stream directly.
    static std::vector<uint8_t> ReadAvailable(std::istream& stream, uint64_t size);

    // The bytes a stream still holds from its position on, when it can tell (a file read into
    // memory, file and string streams can); nothing when it cannot seek. The position is left where
    // it was and the stream's state cleared.
    static std::optional<uint64_t> RemainingBytes(std::istream& stream);
};

} // namespace Zar::ResourcesLibrary::Image

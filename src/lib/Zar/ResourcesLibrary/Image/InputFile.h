#pragma once

#include <cstdint>
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
};

} // namespace Zar::ResourcesLibrary::Image

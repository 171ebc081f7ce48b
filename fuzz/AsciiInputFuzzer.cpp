// Feeds arbitrary bytes, as they would stand in memory after a text image was read, to the text
// image loader's header reading and decoding. Neither has a failure of its own: text they cannot
// read gives the empty header and the empty image. So any exception is a finding, and neither may
// read past the bytes it is given.

#include "FuzzCheck.h"

#include "Zar/ResourcesLibrary/Image/ImageFormat.h"
#include "Zar/ResourcesLibrary/Image/codec/AsciiInput.h"

#include <cstddef>
#include <cstdint>

using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::ImageInfo;

namespace {

// The row length of a 4-bit image, written out here rather than taken from ImageInfo::StrideOf: the
// loader's stride is what is checked, and a check sharing its rule would pass whatever the rule did.
uint64_t Gray4Stride(int32_t width)
{
    return ((uint64_t { 4 } * static_cast<uint64_t>(width) + 7) / 8 + 3) & ~uint64_t { 3 };
}

bool HasGeometry(ImageInfo const& info) { return info.Width() > 0 && info.Height() > 0; }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    ZarFuzz::ExactCopy const text(data, size);
    AsciiInput input(FileFormat::Ascii, ImageFormat::Unknown, "%04u.txt", "", 'X', ' ');

    ImageInfo const header = input.ReadHeaderFromData(text.Data(), text.Size());
    if (HasGeometry(header)) {
        // Width and height are 16-bit counts, and one row per pitch of at least width + 1 bytes.
        ZAR_FUZZ_CHECK(header.Width() < 65536 && header.Height() < 65536);
        ZAR_FUZZ_CHECK(
            static_cast<uint64_t>(header.Height()) * (static_cast<uint64_t>(header.Width()) + 1) <= size);
        ZAR_FUZZ_CHECK(header.Format() == ImageFormat::Gray4);
        ZAR_FUZZ_CHECK(header.Stride() == Gray4Stride(header.Width()));
    }

    auto const image = input.FromData(text.Data(), text.Size());
    if (!HasGeometry(header)) {
        ZAR_FUZZ_CHECK(image.IsEmpty());
        return 0;
    }
    ZAR_FUZZ_CHECK(image.Info().Width() == header.Width() && image.Info().Height() == header.Height());
    ZAR_FUZZ_CHECK(image.Buffer().size() == header.Stride() * static_cast<uint64_t>(header.Height()));
    // Lit pixels are level 15 and clear ones 0: every nibble is one or the other.
    for (uint8_t byte : image.Buffer())
        ZAR_FUZZ_CHECK(
            ((byte >> 4) == 0 || (byte >> 4) == 0xF) && ((byte & 0xF) == 0 || (byte & 0xF) == 0xF));
    return 0;
}

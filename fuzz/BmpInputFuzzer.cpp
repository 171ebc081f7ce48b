// Feeds a whole BMP file's bytes to the BMP loader through a stream, the way Load reads a file: the
// header checks, then the pixel data. Only the loader's own failures may come out, and every image
// it returns must be a consistent 4-bit grey image.

#include "FuzzCheck.h"

#include "Zar/Lt/Exceptions/BaseException.h"
#include "Zar/ResourcesLibrary/Image/ImageFormat.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

void CheckImage(MutableImage const& image)
{
    auto const& info = image.Info();
    ZAR_FUZZ_CHECK(info.Format() == ImageFormat::Gray4);
    ZAR_FUZZ_CHECK(info.Width() >= 0 && info.Height() >= 0);
    // Written out rather than taken from ImageInfo::StrideOf, so that the check does not share the
    // rule it checks.
    uint64_t const stride
        = ((uint64_t { 4 } * static_cast<uint64_t>(info.Width()) + 7) / 8 + 3) & ~uint64_t { 3 };
    ZAR_FUZZ_CHECK(info.Stride() == stride);
    ZAR_FUZZ_CHECK(
        image.Buffer().empty() || image.Buffer().size() == stride * static_cast<uint64_t>(info.Height()));
}

void LoadThroughStream(std::string const& file)
{
    std::istringstream stream(file, std::ios::in | std::ios::binary);
    BmpInput input(FileFormat::Bmp, ImageFormat::Unknown, "%04u.bmp", "");
    std::vector<uint8_t> const block = input.RawReadHeader(stream);
    CheckImage(input.ReadData(stream, block, ImageFormat::Unknown));
}

void ReadHeaderThroughStream(std::string const& file)
{
    std::istringstream stream(file, std::ios::in | std::ios::binary);
    BmpInput input(FileFormat::Bmp, ImageFormat::Unknown, "%04u.bmp", "");
    auto const info = input.ReadHeader(stream);
    ZAR_FUZZ_CHECK(info.Format() == ImageFormat::Mono || info.Format() == ImageFormat::Gray4);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    std::string const file(reinterpret_cast<char const*>(data), size);
    // The loader reports every refusal as one of the project's exceptions (its own messages, or the
    // preconditions of the image model); anything else escaping is a finding.
    try {
        LoadThroughStream(file);
    } catch (Zar::Lt::Exceptions::BaseException const&) {
    }
    try {
        ReadHeaderThroughStream(file);
    } catch (Zar::Lt::Exceptions::BaseException const&) {
    }
    return 0;
}

#include "Zar/ResourcesLibrary/Image/codec/RawInput.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/codec/Raw.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <fstream>
#include <string>
#include <utility>
#include <vector>

using Zar::ResourcesLibrary::ResourcesLibraryException;
using namespace Zar::ResourcesLibrary::Image;

namespace {

ImageInfo FrameInfo()
{
    ImageInfo info(ImageFormat::Bgra);
    info._width = RawInput::kWidth;
    info._height = RawInput::kHeight;
    // Rows of 32-bit pixels are whole multiples of 4 bytes already: the dump has no padding.
    info._stride = ImageFormatHelper::BitsPerPixel(ImageFormat::Bgra) * RawInput::kWidth / 8;
    info._bottomUp = 1;
    return info;
}

} // namespace

MutableImage RawInput::Load(char const* filePath)
{
    std::string const path = filePath != nullptr ? filePath : "";
    ImageInfo const info = FrameInfo();
    size_t const frameSize = size_t { info.Stride() } * kHeight;

    std::ifstream stream;
    size_t const available = Raw::Open(stream, path.c_str(), frameSize);
    if (stream.fail() || stream.bad())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "cannot open file '" + path + "'");

    // Only the first frame is taken; bytes beyond it are ignored. A file shorter than one frame
    // is not refused: what it holds fills the top of the frame and the rest stays black, which
    // shows a truncated dump for what it is instead of failing a whole build over it.
    std::vector<uint8_t> pixels(frameSize, 0);
    if (available > 0)
        stream.read(reinterpret_cast<char*>(pixels.data()), static_cast<std::streamsize>(available));
    if (stream.bad())
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "cannot open file '" + path + "'");
    return MutableImage(info, std::move(pixels));
}

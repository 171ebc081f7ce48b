#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/Image/ImageFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/codec/QtModule.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using Zar::ResourcesLibrary::ResourcesLibraryException;
using namespace Zar::ResourcesLibrary::Image;

namespace {

// Qt formats 1 to 17 in order. Format_ARGB32 goes to Bgrx on purpose: its pixels lie in memory in
// the order B, G, R, A on little-endian machines, and the fourth byte is not announced as alpha.
constexpr std::array<ImageFormat, 17> kFromQt {
    ImageFormat::Mono, // Format_Mono
    ImageFormat::Unknown, // Format_MonoLSB
    ImageFormat::Unknown, // Format_Indexed8
    ImageFormat::Rgbx, // Format_RGB32
    ImageFormat::Bgrx, // Format_ARGB32
    ImageFormat::Unknown, // Format_ARGB32_Premultiplied
    ImageFormat::Unknown, // Format_RGB16
    ImageFormat::Unknown, // Format_ARGB8565_Premultiplied
    ImageFormat::Unknown, // Format_RGB666
    ImageFormat::Unknown, // Format_ARGB6666_Premultiplied
    ImageFormat::Unknown, // Format_RGB555
    ImageFormat::Unknown, // Format_ARGB8555_Premultiplied
    ImageFormat::Rgb24, // Format_RGB888
    ImageFormat::Unknown, // Format_RGB444
    ImageFormat::Unknown, // Format_ARGB4444_Premultiplied
    ImageFormat::Rgbx, // Format_RGBX8888
    ImageFormat::Rgba, // Format_RGBA8888
};

} // namespace

std::string QtInput::FormatName(ImageFormat format)
{
    constexpr unsigned int kLastFormat = 11;
    auto const value = static_cast<unsigned int>(format);
    if (value > kLastFormat)
        return "Undefined";
    return std::string(ImageFormatHelper::GetString(value));
}

ImageFormat QtInput::FromQtFormat(int qtFormat)
{
    if (qtFormat < 1 || qtFormat > static_cast<int>(kFromQt.size()))
        return ImageFormat::Unknown;
    return kFromQt[static_cast<size_t>(qtFormat - 1)];
}

void QtInput::PutWordPixelsInLittleEndianOrder(
    uint8_t* pixels, std::size_t size, int qtFormat, std::endian machine)
{
    constexpr int kFormatRgb32 = 4;
    constexpr int kFormatArgb32Premultiplied = 6;
    if (machine == std::endian::little || qtFormat < kFormatRgb32 || qtFormat > kFormatArgb32Premultiplied)
        return;
    for (std::size_t at = 0; at + 4 <= size; at += 4) {
        std::swap(pixels[at], pixels[at + 3]);
        std::swap(pixels[at + 1], pixels[at + 2]);
    }
}

MutableImage QtInput::Load(char const* filePath)
{
    ZarQtImageCodec const& codec = QtModule::Codec();
    // The path is read as Latin-1, one character a byte. Qt encodes file names back in the
    // locale's encoding, so a path outside ASCII names another file and loads as the empty image.
    ZarQtImage decoded {};
    codec.load(filePath, &decoded);
    std::unique_ptr<ZarQtImage, void (*)(ZarQtImage*)> const release(&decoded, codec.release);
    if (decoded.sizeInBytes <= 0)
        return MutableImage::Empty;

    ImageFormat const format = FromQtFormat(decoded.qtFormat);
    if (_imageFormat != ImageFormat::Unknown && _imageFormat != format)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Invalid format " + FormatName(format));

    ImageInfo info(format);
    info._width = decoded.width;
    info._height = decoded.height;
    // Qt pads its rows to 4 bytes as every producer here does.
    info._stride = ImageInfo::StrideOf(decoded.width, format);

    size_t const size = size_t { info._stride } * static_cast<size_t>(std::max(decoded.height, 0));
    std::vector<uint8_t> pixels(size, 0);
    // For the formats of the table Qt's rows are exactly as long as ours and this is one block
    // copy. A format outside the table counts 32 bits a pixel and may need more bytes than Qt
    // decoded: only what Qt holds is copied, and the rest of the image stays zero.
    size_t const available = std::min(size, static_cast<size_t>(decoded.sizeInBytes));
    if (available > 0)
        std::memcpy(pixels.data(), decoded.bits, available);
    PutWordPixelsInLittleEndianOrder(pixels.data(), available, decoded.qtFormat, std::endian::native);
    return MutableImage(info, std::move(pixels));
}

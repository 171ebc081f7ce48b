#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/ResourcesLibrary/Image/FileFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/InputFile.h"
#include "Zar/ResourcesLibrary/Image/codec/AsciiInput.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"
#include "Zar/ResourcesLibrary/Image/codec/DetectInput.h"
#include "Zar/ResourcesLibrary/Image/codec/IndexPattern.h"
#include "Zar/ResourcesLibrary/Image/codec/QtInput.h"
#include "Zar/ResourcesLibrary/Image/codec/RawInput.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Zar::ResourcesLibrary::Image {

Input::Input(FileFormat fileFormat, ImageFormat imageFormat, std::string pattern, std::string folder)
    : _fileFormat(fileFormat)
    , _imageFormat(imageFormat)
    , _pattern(std::move(pattern))
    , _folder(std::move(folder))
{
}

Input::~Input() = default;

bool Input::IsEmpty() const { return false; }

size_t Input::GetHeaderSize() const { return 32; }

ImageInfo Input::ReadHeaderFromData(void const* /*data*/, size_t /*size*/)
{
    throw Zar::Lt::Exceptions::NotSupported(ZAR_SOURCE_INFO(), "Input::ReadHeaderFromData not supported");
}

ImageInfo Input::ReadHeader(std::istream& stream)
{
    std::vector<uint8_t> header(GetHeaderSize(), 0);
    size_t const count = Read(stream, header.data(), header.size());
    return ReadHeaderFromData(header.data(), count);
}

ImageInfo Input::LoadHeader(char const* filePath)
{
    std::unique_ptr<std::istream> const stream = InputFile::Open(filePath);
    if (!stream)
        return ImageInfo::Empty;
    return ReadHeader(*stream);
}

size_t Input::Read(std::istream& /*stream*/, void* /*data*/, size_t /*size*/)
{
    throw Zar::Lt::Exceptions::NotSupported(ZAR_SOURCE_INFO(), "Input::Read not supported");
}

MutableImage Input::FromData(void const* /*data*/, size_t /*size*/)
{
    throw Zar::Lt::Exceptions::NotSupported(ZAR_SOURCE_INFO(), "Input::FromData not supported");
}

MutableImage Input::Load(char const* filePath)
{
    ZAR_CHECK(PreCondition, filePath && filePath[0], "Input::Load nullptr in filePath", ZAR_SOURCE_INFO());
    std::unique_ptr<std::istream> const stream = InputFile::Open(filePath);
    if (!stream)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), std::string("Input::Load cannot open ") + filePath);
    ImageInfo const info = ReadHeader(*stream);
    if (info.Width() <= 0 || info.Height() <= 0)
        throw ResourcesLibraryException(
            ZAR_SOURCE_INFO(), std::string("Input::Load cannot read header ") + filePath);
    auto const height = static_cast<uint64_t>(info.Height());
    uint64_t bodySize = uint64_t { info.Stride() } * height;
    if (bodySize == 0)
        bodySize = uint64_t { info.GetBytes(info.Width()) } * height;
    std::vector<uint8_t> const body = InputFile::ReadAvailable(
        bodySize, [&](uint8_t* data, size_t size) { return Read(*stream, data, size); });
    return FromData(body.empty() ? nullptr : body.data(), body.size());
}

MutableImage Input::Read(int index)
{
    char path[IndexPattern::kPathBufferSize];
    IndexPattern::Format(path, sizeof(path), IndexPattern::OrDefault(_pattern), index);
    return Load(static_cast<char const*>(path));
}

MutableImage Input::Read(int index, std::string const& name)
{
    if (name.empty())
        return Read(index);
    return Load(GetFilePath(index, name));
}

ImageInfo Input::ReadHeaderFromData(std::vector<uint8_t> const& data)
{
    return ReadHeaderFromData(data.data(), data.size());
}

MutableImage Input::Load(std::string const& filePath) { return Load(filePath.c_str()); }

std::string Input::GetFilePath(int index, std::string const& name) const
{
    std::string const path = IndexPattern::FilePath(_folder, _pattern, index, name);
    if (path.find('.') != std::string::npos)
        return path;
    return IndexPattern::WithExtension(path, GetExtension(_fileFormat));
}

size_t Input::RawRead(std::istream& stream, void* data, size_t size)
{
    auto* bytes = static_cast<char*>(data);
    size_t total = 0;
    while (total < size && !stream.fail()) {
        auto const remaining = static_cast<std::streamsize>(
            std::min<size_t>(size - total, static_cast<size_t>(std::numeric_limits<std::streamsize>::max())));
        std::streamsize got = stream.readsome(bytes + total, remaining);
        if (got == 0) {
            stream.read(bytes + total, remaining);
            got = stream.gcount();
        }
        if (got > 0)
            total += static_cast<size_t>(got);
    }
    return total;
}

char const* Input::GetExtension(FileFormat format) { return FileFormatHelper::GetExtension(format); }

std::string_view Input::UsableExtension(std::string_view path) noexcept
{
    size_t const dot = path.rfind('.');
    if (dot == std::string_view::npos)
        return {};
    std::string_view const tail = path.substr(dot);
    if (tail.size() < 2 || tail[1] == '.' || tail.find('/') != std::string_view::npos)
        return {};
    return tail;
}

std::unique_ptr<Input> Input::Create(
    FileFormat format, ImageFormat imageFormat, std::string&& folder, std::string&& name)
{
    if (!folder.empty() && folder.back() != '/')
        folder += '/';
    if (name.empty())
        name = "%04u";
    if (name.find('.') == std::string::npos)
        name += GetExtension(format);
    std::string pattern = folder + name;

    switch (format) {
    case FileFormat::None:
        return std::make_unique<DetectInput>(
            FileFormat::None, ImageFormat::Unknown, std::string(), std::move(pattern));
    case FileFormat::Raw:
    case FileFormat::Yuv:
        // The raw loader deliberately records no file format, whichever of the two was asked.
        return std::make_unique<RawInput>(
            FileFormat::None, ImageFormat::Unknown, std::move(pattern), std::string());
    case FileFormat::Bmp:
        return std::make_unique<BmpInput>(
            FileFormat::Bmp, ImageFormat::Unknown, std::move(pattern), std::string());
    case FileFormat::Jpeg:
    case FileFormat::Png:
    case FileFormat::Pgm:
    case FileFormat::Ppm:
    case FileFormat::Qt:
        return std::make_unique<QtInput>(format, imageFormat, std::move(pattern), std::string());
    case FileFormat::Ascii:
        return std::make_unique<AsciiInput>(
            FileFormat::Ascii, ImageFormat::Unknown, std::move(pattern), std::string(), 'X', ' ');
    default:
        return nullptr;
    }
}

std::unique_ptr<Input> Input::Create(char const* path)
{
    FileFormat const format = FileFormatHelper::GetFromExtension(path != nullptr ? path : "");
    return Create(format, ImageFormat::Unknown, std::string(), "%04u");
}

} // namespace Zar::ResourcesLibrary::Image

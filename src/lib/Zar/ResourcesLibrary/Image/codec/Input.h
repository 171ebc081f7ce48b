#pragma once

#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/ImageFormat.h"
#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"
#include "Zar/ResourcesLibrary/Image/codec/IndexPattern.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

// The image loader interface: open a file, read a fixed-size header, turn it into an ImageInfo,
// read the body, turn the bytes into a MutableImage. Create() picks the loader for a file format.
class Input {
public:
    Input(FileFormat fileFormat, ImageFormat imageFormat, std::string pattern, std::string folder);
    virtual ~Input();

    Input(Input const&) = delete;
    Input& operator=(Input const&) = delete;

    virtual bool IsEmpty() const;
    virtual size_t GetHeaderSize() const;
    virtual ImageInfo ReadHeaderFromData(void const* data, size_t size);
    virtual ImageInfo ReadHeader(std::istream& stream);
    virtual ImageInfo LoadHeader(char const* filePath);
    virtual size_t Read(std::istream& stream, void* data, size_t size);
    virtual MutableImage FromData(void const* data, size_t size);
    virtual MutableImage Load(char const* filePath);
    virtual MutableImage Read(int index);
    virtual MutableImage Read(int index, std::string const& name);

    ImageInfo ReadHeaderFromData(std::vector<uint8_t> const& data);
    MutableImage Load(std::string const& filePath);
    std::string GetFilePath(int index, std::string const& name) const;

    static size_t RawRead(std::istream& stream, void* data, size_t size);
    template <typename T> static size_t RawRead(std::istream& stream, T& value)
    {
        return RawRead(stream, &value, sizeof(T));
    }

    static char const* GetExtension(FileFormat format);

    // The path's last extension, dot included, when it is a usable one: at least one character
    // after the last '.', which is not a second '.', and no '/' after it. Otherwise empty.
    static std::string_view UsableExtension(std::string_view path) noexcept;

    static std::unique_ptr<Input> Create(
        FileFormat format, ImageFormat imageFormat, std::string&& folder, std::string&& name);
    static std::unique_ptr<Input> Create(char const* path);

    FileFormat GetFileFormat() const noexcept { return _fileFormat; }
    ImageFormat GetImageFormat() const noexcept { return _imageFormat; }
    std::string const& GetPattern() const noexcept { return _pattern; }
    std::string const& GetFolder() const noexcept { return _folder; }

protected:
    FileFormat _fileFormat;
    ImageFormat _imageFormat;
    std::string _pattern;
    std::string _folder;
};

} // namespace Zar::ResourcesLibrary::Image

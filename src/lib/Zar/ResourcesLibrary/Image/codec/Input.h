#pragma once

#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/ImageFormat.h"
#include "Zar/ResourcesLibrary/Image/ImageInfo.h"
#include "Zar/ResourcesLibrary/Image/MutableImage.h"

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

    // Every path built from a pattern lives in a buffer of this size, terminator included.
    static constexpr size_t kPathBufferSize = 512;

    // Writes the pattern with its integer conversion replaced by the index into buffer (size bytes,
    // always NUL-terminated when size > 0, cut where it does not fit). Only the first integer
    // conversion is formatted; any other conversion is copied as plain text.
    static void FormatIndex(char* buffer, size_t size, std::string const& pattern, int index);
    // The pattern itself, or "%04d" when it holds no '%' to put the index in.
    static std::string PatternOrDefault(std::string const& pattern);
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
    // Reads up to size bytes through the virtual stream Read. The buffer grows only as bytes
    // arrive, so a size that the stream cannot back never turns into a large allocation.
    std::vector<uint8_t> ReadAvailable(std::istream& stream, uint64_t size);

    FileFormat _fileFormat;
    ImageFormat _imageFormat;
    std::string _pattern;
    std::string _folder;
};

} // namespace Zar::ResourcesLibrary::Image

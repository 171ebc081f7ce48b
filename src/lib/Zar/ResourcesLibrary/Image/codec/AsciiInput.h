#pragma once

#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include <cstddef>
#include <string>

// Reads an image drawn as text: one line per pixel row, one character per pixel. Every character
// other than the clear character is a lit pixel; the result is Gray4 with levels 15 and 0.
class AsciiInput : public Zar::ResourcesLibrary::Image::Input {
public:
    using Input::Input;
    AsciiInput(Zar::ResourcesLibrary::Image::FileFormat fileFormat,
        Zar::ResourcesLibrary::Image::ImageFormat imageFormat, std::string pattern, std::string folder,
        char set, char clear);

    size_t GetHeaderSize() const override;
    Zar::ResourcesLibrary::Image::ImageInfo ReadHeaderFromData(void const* data, size_t size) override;
    Zar::ResourcesLibrary::Image::MutableImage FromData(void const* data, size_t size) override;
    Zar::ResourcesLibrary::Image::MutableImage Load(char const* filePath) override;

    using Input::Load;
    using Input::ReadHeaderFromData;

    char SetChar() const noexcept { return _setChar; }
    char ClearChar() const noexcept { return _clearChar; }

private:
    char _setChar = 'X';
    char _clearChar = ' ';
};

#pragma once

#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

// Reads the file kinds that Qt's image classes decode, through the module that holds the Qt code
// (QtModule, opened on the first such file), and copies the decoded pixels into an image
// of the matching format.
class QtInput : public Zar::ResourcesLibrary::Image::Input {
public:
    using Input::Input;

    Zar::ResourcesLibrary::Image::MutableImage Load(char const* filePath) override;

    using Input::Load;

    // The image format of a QImage::Format value; values without a counterpart give Unknown.
    static Zar::ResourcesLibrary::Image::ImageFormat FromQtFormat(int qtFormat);
    // The name a format goes by in messages; "Undefined" for a value past the last format.
    static std::string FormatName(Zar::ResourcesLibrary::Image::ImageFormat format);
    // Qt holds the pixels of its 32-bit formats (RGB32, ARGB32 and ARGB32_Premultiplied) as words of
    // the machine's byte order; on a big-endian machine the first size bytes are turned, word by
    // word, into the little-endian order that the formats of the table describe.
    static void PutWordPixelsInLittleEndianOrder(
        uint8_t* pixels, std::size_t size, int qtFormat, std::endian machine);
};

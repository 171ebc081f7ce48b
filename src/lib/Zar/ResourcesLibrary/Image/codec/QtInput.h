#pragma once

#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include <cstdint>
#include <string>

// Reads the file kinds that Qt's image classes decode and copies the decoded pixels into an image
// of the matching format.
class QtInput : public Zar::ResourcesLibrary::Image::Input
{
public:
    using Input::Input;

    Zar::ResourcesLibrary::Image::MutableImage Load(char const* filePath) override;

    using Input::Load;

    // The image format of a QImage::Format value; values without a counterpart give Unknown.
    static Zar::ResourcesLibrary::Image::ImageFormat FromQtFormat(int qtFormat);
    // Bytes of a row of x pixels, padded to 4 bytes as Qt pads its rows. Requires x >= 0.
    static uint32_t LineStride(int x, Zar::ResourcesLibrary::Image::ImageFormat format);
    // The name a format goes by in messages; "Undefined" for a value past the last format.
    static std::string FormatName(Zar::ResourcesLibrary::Image::ImageFormat format);
};

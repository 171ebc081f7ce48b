#pragma once

#include "Zar/ResourcesLibrary/Image/codec/Input.h"

// Reads a headerless dump of one full-screen frame: 800 x 480 Bgra pixels, rows top to bottom.
class RawInput : public Zar::ResourcesLibrary::Image::Input {
public:
    using Input::Input;

    static constexpr int32_t kWidth = 800;
    static constexpr int32_t kHeight = 480;

    Zar::ResourcesLibrary::Image::MutableImage Load(char const* filePath) override;

    using Input::Load;
};

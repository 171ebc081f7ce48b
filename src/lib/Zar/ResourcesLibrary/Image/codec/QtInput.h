#pragma once

#include "Zar/ResourcesLibrary/Image/codec/Input.h"

// Reads the file kinds that Qt's image classes decode and copies the decoded pixels into an image
// of the matching format.
class QtInput : public Zar::ResourcesLibrary::Image::Input
{
public:
    using Input::Input;

    Zar::ResourcesLibrary::Image::MutableImage Load(char const* filePath) override;

    using Input::Load;
};

#pragma once

#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include <memory>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Image {

// Picks the loader of each file by its extension (BMP when there is none), making one loader per
// format on first use and reusing it afterwards.
class DetectInput : public Input {
public:
    using Input::Input;
    ~DetectInput() override;

    bool HasFormat(FileFormat format) const;
    bool IsEmpty() const override;
    void Append(FileFormat format, std::string folder, ImageFormat imageFormat);
    MutableImage Load(char const* filePath) override;

    using Input::Load;

    std::vector<std::unique_ptr<Input>> const& Inputs() const noexcept { return _inputs; }

private:
    std::vector<std::unique_ptr<Input>> _inputs;
};

} // namespace Zar::ResourcesLibrary::Image

#include "Zar/ResourcesLibrary/Image/codec/DetectInput.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/Lt/Exceptions/NotSupported.h"
#include "Zar/ResourcesLibrary/Image/FileFormatHelper.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <string_view>
#include <utility>

namespace Zar::ResourcesLibrary::Image {

namespace {

// The format's name; a value outside the table has none, rather than the table's fallback name.
std::string NameOf(FileFormat format)
{
    auto const value = static_cast<unsigned>(format);
    return value > static_cast<unsigned>(FileFormat::BarsWithText) ? std::string()
                                                                   : FileFormatHelper::GetString(value);
}

} // namespace

DetectInput::~DetectInput() = default;

bool DetectInput::HasFormat(FileFormat format) const
{
    for (auto const& input : _inputs) {
        if (input->GetFileFormat() == format)
            return true;
    }
    return false;
}

bool DetectInput::IsEmpty() const { return _inputs.empty(); }

void DetectInput::Append(FileFormat format, std::string folder, ImageFormat imageFormat)
{
    if (folder.empty())
        folder = _folder;
    std::unique_ptr<Input> input = Create(format, imageFormat, std::move(folder), "%04u");
    if (!input)
        throw ResourcesLibraryException(ZAR_SOURCE_INFO(), "Unsupported format " + NameOf(format));
    _inputs.push_back(std::move(input));
}

MutableImage DetectInput::Load(char const* filePath)
{
    std::string const given = filePath != nullptr ? filePath : "";
    std::string_view const extension = UsableExtension(given);
    FileFormat format = FileFormat::Bmp;
    std::string path = given;
    if (!extension.empty()) {
        format = FileFormatHelper::GetFromExtension(extension);
        if (format == FileFormat::None)
            format = FileFormat::Bmp;
    } else {
        path += GetExtension(FileFormat::Bmp);
    }

    if (!HasFormat(format)) {
        std::unique_ptr<Input> input
            = Create(format, ImageFormat::Unknown, std::string(_folder), std::string(_pattern));
        if (!input)
            throw Zar::Lt::Exceptions::NotSupported(ZAR_SOURCE_INFO(), "Input::Load " + given);
        _inputs.push_back(std::move(input));
    }

    // The raw loader records the file format None, so it is never found here: a raw or yuv file
    // gives the empty image, which the input sequence passes over without a failure, so a frame
    // dump named in a pack's list is left out of the pack rather than failing the build. Each such
    // call leaves one more raw loader behind; they hold no open file and are destroyed with this one.
    for (auto const& input : _inputs) {
        if (input->GetFileFormat() == format)
            return input->Load(path);
    }
    return MutableImage();
}

} // namespace Zar::ResourcesLibrary::Image

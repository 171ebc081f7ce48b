// Arbitrary strings as file paths, folders, patterns and names: the extension lookup must give a
// value of the table, and every path built from a pattern must fit its 512-byte buffer, whatever
// the pattern holds (conversions other than one integer included).

#include "FuzzCheck.h"

#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/FileFormatHelper.h"
#include "Zar/ResourcesLibrary/Image/ImageFormat.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/Image/codec/IndexPattern.h"
#include "Zar/ResourcesLibrary/Image/codec/Input.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::FileFormatHelper;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::IndexPattern;
using Zar::ResourcesLibrary::Image::Input;
using Zar::ResourcesLibrary::Image::InputSequence;

namespace {

constexpr unsigned kLastFileFormat = 16;

void CheckExtensionLookup(std::string const& path)
{
    ZarFuzz::ExactCopy const exact(reinterpret_cast<uint8_t const*>(path.data()), path.size());
    FileFormat const format = FileFormatHelper::GetFromExtension(exact.View());
    ZAR_FUZZ_CHECK(static_cast<unsigned>(format) <= kLastFileFormat);
    if (format != FileFormat::None) {
        // Only a path with a usable last extension has a format.
        ZAR_FUZZ_CHECK(path.rfind('.') != std::string::npos);
        ZAR_FUZZ_CHECK(path.find('/', path.rfind('.')) == std::string::npos);
    }
}

void CheckLoaderPaths(FileFormat format, std::string const& folder, std::string const& pattern,
    std::string const& name, int index)
{
    std::unique_ptr<Input> const input
        = Input::Create(format, ImageFormat::Unknown, std::string(folder), std::string(pattern));
    if (input) {
        ZAR_FUZZ_CHECK(input->GetFilePath(index, name).size() < IndexPattern::kPathBufferSize);
        ZAR_FUZZ_CHECK(input->GetFilePath(index, "").size() < IndexPattern::kPathBufferSize);
    }
    std::unique_ptr<Input> const byPath = Input::Create(name.c_str());
    if (byPath)
        ZAR_FUZZ_CHECK(byPath->GetFilePath(index, folder).size() < IndexPattern::kPathBufferSize);
}

void CheckSequencePaths(FileFormat format, std::string const& folder, std::string const& pattern,
    std::string const& name, int index)
{
    InputSequence const sequence(format, folder, pattern, false);
    ZAR_FUZZ_CHECK(sequence.GetFilePath(index, name).size() < IndexPattern::kPathBufferSize);
    ZAR_FUZZ_CHECK(InputSequence::BareName(name).size() <= name.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    FuzzedDataProvider provider(data, size);
    // Values past the table are included: lookups by value must fall back, never fail.
    auto const format
        = static_cast<FileFormat>(provider.ConsumeIntegralInRange<int>(-1, kLastFileFormat + 3));
    int const index = provider.ConsumeIntegral<int>();
    std::string const folder = provider.ConsumeRandomLengthString(700);
    std::string const pattern = provider.ConsumeRandomLengthString(700);
    std::string const name = provider.ConsumeRemainingBytesAsString();

    CheckExtensionLookup(name);
    CheckExtensionLookup(folder);
    CheckLoaderPaths(format, folder, pattern, name, index);
    CheckSequencePaths(format, folder, pattern, name, index);
    return 0;
}

// Reads arbitrary bytes as a list file (lines of any length, NUL bytes, carriage returns, no final
// line feed) and checks what the sequence keeps: trimmed, non-empty names of at most 255 bytes,
// each taken from the file, never more than the file has lines. The names then go through the
// path building that loading them would use.

#include "FuzzCheck.h"

#include "Zar/Lt/Core/ScratchFolder.h"
#include "Zar/ResourcesLibrary/Image/FileFormat.h"
#include "Zar/ResourcesLibrary/Image/InputSequence.h"
#include "Zar/ResourcesLibrary/Image/codec/IndexPattern.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::IndexPattern;
using Zar::ResourcesLibrary::Image::InputSequence;

namespace {

bool IsListSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

void CheckItem(std::string const& item, std::string_view file)
{
    ZAR_FUZZ_CHECK(!item.empty());
    ZAR_FUZZ_CHECK(item.size() <= InputSequence::kMaxLineLength);
    ZAR_FUZZ_CHECK(item.find('\n') == std::string::npos);
    ZAR_FUZZ_CHECK(!IsListSpace(item.front()) && !IsListSpace(item.back()));
    ZAR_FUZZ_CHECK(file.find(item) != std::string_view::npos);
}

void CheckPaths(InputSequence const& sequence, std::string const& item, int index)
{
    std::string const bare = InputSequence::BareName(item);
    ZAR_FUZZ_CHECK(bare.size() <= item.size());
    ZAR_FUZZ_CHECK(bare.find('/') == std::string::npos);
    ZAR_FUZZ_CHECK(sequence.GetFilePath(index, item).size() < IndexPattern::kPathBufferSize);
    ZAR_FUZZ_CHECK(sequence.GetInput()->GetFilePath(index, item).size() < IndexPattern::kPathBufferSize);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    static Zar::Lt::Core::ScratchFolder const scratch("zar-fuzz");
    std::string const listPath = (scratch.Path() / "list.txt").string();
    std::string_view const file(reinterpret_cast<char const*>(data), size);
    {
        std::ofstream list(listPath, std::ios::binary | std::ios::trunc);
        list.write(file.data(), static_cast<std::streamsize>(file.size()));
    }

    InputSequence sequence(FileFormat::None, scratch.Path().string() + "/", "%04", true);
    sequence.AddList(listPath);

    auto const lines = static_cast<size_t>(std::count(file.begin(), file.end(), '\n')) + 1;
    auto const& items = sequence.Items();
    ZAR_FUZZ_CHECK(items.size() <= lines);
    int index = 0;
    for (std::string const& item : items) {
        CheckItem(item, file);
        CheckPaths(sequence, item, ++index);
    }
    return 0;
}

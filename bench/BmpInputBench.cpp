#include "BenchCheck.h"
#include "BmpBytes.h"
#include "MemoryStream.h"

#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

// The loader's own reading of one file, from its header to the finished image, as Load does after
// opening the file.
MutableImage Decode(BmpInput& input, std::vector<uint8_t> const& file)
{
    Zar::Bench::MemoryStream stream(file);
    auto const block = input.RawReadHeader(stream);
    return input.ReadData(stream, block, ImageFormat::Unknown);
}

bool DecodesToGray4(BmpInput& input, std::vector<uint8_t> const& file, int32_t width, int32_t height)
{
    try {
        auto const image = Decode(input, file);
        auto const& info = image.Info();
        return info.Format() == ImageFormat::Gray4 && info.Width() == width && info.Height() == height
            && image.Buffer().size() == info.GetSize();
    } catch (...) {
        return false;
    }
}

void BmpInputDecode(benchmark::State& state, int32_t width, int32_t height, uint16_t bitsPerPixel)
{
    auto const file = Zar::Bench::MakeBmp(width, height, bitsPerPixel);
    BmpInput input(FileFormat::Bmp, ImageFormat::Unknown, "", "");
    if (!Zar::Bench::Check(state, DecodesToGray4(input, file, width, height), "the file does not decode"))
        return;
    for (auto _ : state) {
        auto image = Decode(input, file);
        benchmark::DoNotOptimize(image.Buffer().data());
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(file.size()));
}

BENCHMARK_CAPTURE(BmpInputDecode, Icon32x24Mono, 32, 24, 1);
BENCHMARK_CAPTURE(BmpInputDecode, Icon32x24Gray4, 32, 24, 4);
BENCHMARK_CAPTURE(BmpInputDecode, Screen256x64Gray4, 256, 64, 4);

} // namespace

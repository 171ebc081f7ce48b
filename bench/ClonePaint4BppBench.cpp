#include "BenchCheck.h"
#include "BmpBytes.h"
#include "MemoryStream.h"

#include "Zar/Lt/Core/Crc16.h"
#include "Zar/ResourcesLibrary/Image/ClonePaint4Bpp.h"
#include "Zar/ResourcesLibrary/Image/codec/BmpInput.h"

#include <benchmark/benchmark.h>

#include <cstdint>

using Zar::ResourcesLibrary::Image::ClonePaint4Bpp;
using Zar::ResourcesLibrary::Image::Color4Bpp;
using Zar::ResourcesLibrary::Image::FileFormat;
using Zar::ResourcesLibrary::Image::ImageFormat;
using Zar::ResourcesLibrary::Image::MutableImage;

namespace {

// The grey level of the frames that the exporter draws around plain icons.
constexpr Color4Bpp kFrameColor = Color4Bpp::Level3;

MutableImage LoadIcon(uint16_t bitsPerPixel)
{
    auto const file = Zar::Bench::MakeBmp(32, 24, bitsPerPixel);
    Zar::Bench::MemoryStream stream(file);
    BmpInput input(FileFormat::Bmp, ImageFormat::Unknown, "", "");
    auto const block = input.RawReadHeader(stream);
    return input.ReadData(stream, block, ImageFormat::Unknown);
}

// The frame's corners carry the frame colour, and the source image stays as it was loaded.
bool FramesTheCopyOnly(MutableImage const& icon)
{
    ClonePaint4Bpp painter(icon, kFrameColor);
    painter.DrawFrame(0);
    uint8_t const* framed = painter.GetPixelPointer(0, 0);
    uint32_t const lastRow = icon.Info().Stride() * 23;
    return framed[0] == 0x33 && framed[lastRow + 15] == 0x33 && icon.Buffer() == LoadIcon(4).Buffer();
}

// What the exporter does for every plain icon: a private copy, framed.
void ClonePaint4BppDrawFrame(benchmark::State& state)
{
    auto const icon = LoadIcon(4);
    if (!Zar::Bench::Check(state, FramesTheCopyOnly(icon), "the frame is not drawn on a copy"))
        return;
    for (auto _ : state) {
        ClonePaint4Bpp painter(icon, kFrameColor);
        painter.DrawFrame(0);
        benchmark::DoNotOptimize(painter.GetPixelPointer(0, 0));
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(ClonePaint4BppDrawFrame);

// The whole in-memory work on one icon, without files: decode, frame, CRC of its bytes. The
// end-to-end script's time per icon can be set against this.
void IconPipeline(benchmark::State& state)
{
    auto const file = Zar::Bench::MakeBmp(32, 24, 4);
    BmpInput input(FileFormat::Bmp, ImageFormat::Unknown, "", "");
    Zar::Lt::Core::Crc16 crc;
    for (auto _ : state) {
        Zar::Bench::MemoryStream stream(file);
        auto const block = input.RawReadHeader(stream);
        auto const icon = input.ReadData(stream, block, ImageFormat::Unknown);
        ClonePaint4Bpp painter(icon, kFrameColor);
        painter.DrawFrame(0);
        benchmark::DoNotOptimize(crc.Value(painter.GetPixelPointer(0, 0), icon.GetSize()));
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()));
}
BENCHMARK(IconPipeline);

} // namespace

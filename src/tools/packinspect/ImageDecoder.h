#pragma once

#include "ImageFit.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Reads a designer's image file through Qt: PNG, JPEG, GIF (every frame), BMP, PGM, PPM, and SVG,
// which is drawn at the size asked for so that its edges stay crisp. The declared size is checked
// before anything is decoded, so that a small file that claims a huge picture (a decompression bomb)
// costs nothing. Failures throw ResourcesLibraryException whose text says why and what to do.
class ImageDecoder {
public:
    // The largest picture decoded, on either side: well above any display, small enough that a
    // decoded frame stays within 64 MiB.
    static constexpr int kMaxSide = 4096;
    // A file above this is not read at all; an honest image of kMaxSide x kMaxSide is far smaller.
    static constexpr int64_t kMaxFileBytes = 64 * 1024 * 1024;
    // An animation with more frames is refused before its frames are decoded.
    static constexpr int kMaxFrames = 1000;
    // The frames kept of one file hold at most this many pixels together (64 MiB decoded), so that a
    // small animation file of many large frames cannot make it keep gigabytes.
    static constexpr int64_t kMaxKeptPixels = int64_t { kMaxSide } * kMaxSide;

    struct Request {
        // One frame of an animation, counted from 0; every frame when not given.
        std::optional<int> _frame;
        // The size an SVG is drawn at, placed by _fit; other formats ignore both.
        std::optional<QSize> _target;
        ImageFit::Mode _fit = ImageFit::Mode::None;
    };

    static std::vector<QImage> Decode(std::string const& path, Request const& request);
    // The same for a file's bytes; svg says whether they are read as SVG.
    static std::vector<QImage> DecodeBytes(QByteArray const& bytes, bool svg, Request const& request);

    // By the name's extension (.svg or .svgz, any case) or by an "<svg" near the start.
    static bool LooksLikeSvg(std::string const& path, QByteArray const& bytes);

private:
    static QByteArray ReadFile(std::string const& path);
    static std::vector<QImage> DecodeRaster(QByteArray const& bytes, Request const& request);
    static std::vector<QImage> DecodeSvg(QByteArray const& bytes, Request const& request);
    static void CheckSize(QSize size);
    static void CheckWhole(QByteArray const& bytes, std::string const& format);
    // The screen a GIF's frames are drawn on, as its header declares it.
    static QSize GifScreenSize(QByteArray const& bytes);
    // The file size an uncompressed BMP's header calls for; nothing for other kinds.
    static std::optional<uint64_t> UncompressedBmpSize(QByteArray const& bytes);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

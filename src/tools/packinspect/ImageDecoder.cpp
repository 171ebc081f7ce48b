#include "ImageDecoder.h"

#include "Zar/Lt/Exceptions/Check.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QSvgRenderer>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

namespace {

std::string SizeText(QSize size)
{
    return std::to_string(size.width()) + "x" + std::to_string(size.height());
}

[[noreturn]] void Refuse(std::string const& reason)
{
    throw ResourcesLibraryException(ZAR_SOURCE_INFO(), reason);
}

std::string FramesText(int count) { return std::to_string(count) + (count == 1 ? " frame" : " frames"); }

std::string FrameRangeText(int count)
{
    return count == 1 ? "only frame 0" : "frames 0 to " + std::to_string(count - 1);
}

// Qt's image readers report the decoder's own complaints ("libpng error: Read Error") as warnings on
// standard error. While a file is decoded they are kept instead, so that the refusal can quote them.
class DecoderWarnings {
public:
    DecoderWarnings()
        : _previous(qInstallMessageHandler(&Keep))
    {
        Kept().clear();
    }
    ~DecoderWarnings() { qInstallMessageHandler(_previous); }
    DecoderWarnings(DecoderWarnings const&) = delete;
    DecoderWarnings& operator=(DecoderWarnings const&) = delete;

    static std::string& Kept()
    {
        static std::string kept;
        return kept;
    }

private:
    static void Keep(QtMsgType, QMessageLogContext const&, QString const& message)
    {
        if (!Kept().empty())
            Kept() += "; ";
        Kept() += message.toStdString();
    }

    QtMessageHandler _previous;
};

} // namespace

QByteArray ImageDecoder::ReadFile(std::string const& path)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
        Refuse(std::string("cannot open it: ") + std::strerror(errno));
    stream.seekg(0, std::ios::end);
    std::streamoff const size = stream.tellg();
    stream.seekg(0, std::ios::beg);
    if (size < 0)
        Refuse("cannot read it: it is not a regular file");
    if (size > kMaxFileBytes)
        Refuse("it is " + std::to_string(size) + " bytes, more than the " + std::to_string(kMaxFileBytes)
            + " an image of " + std::to_string(kMaxSide) + "x" + std::to_string(kMaxSide) + " needs");
    QByteArray bytes(static_cast<int>(size), Qt::Uninitialized);
    stream.read(bytes.data(), size);
    if (stream.gcount() != size)
        Refuse("cannot read it: it changed while being read");
    return bytes;
}

bool ImageDecoder::LooksLikeSvg(std::string const& path, QByteArray const& bytes)
{
    auto const dot = path.rfind('.');
    if (dot != std::string::npos) {
        QString const extension = QString::fromStdString(path.substr(dot + 1)).toLower();
        if (extension == "svg" || extension == "svgz")
            return true;
    }
    return bytes.left(4096).contains("<svg");
}

std::vector<QImage> ImageDecoder::Decode(std::string const& path, Request const& request)
{
    QByteArray const bytes = ReadFile(path);
    return DecodeBytes(bytes, LooksLikeSvg(path, bytes), request);
}

std::vector<QImage> ImageDecoder::DecodeBytes(QByteArray const& bytes, bool svg, Request const& request)
{
    if (bytes.isEmpty())
        Refuse("it is empty (0 bytes); export the image again");
    return svg ? DecodeSvg(bytes, request) : DecodeRaster(bytes, request);
}

void ImageDecoder::CheckWhole(QByteArray const& bytes, std::string const& format)
{
    // Qt draws a GIF or a BMP cut short without a word, the missing part black: they are checked here.
    constexpr char kGifTrailer = 0x3B;
    if (format == "gif" && bytes.back() != kGifTrailer)
        Refuse("it ends before the GIF's end mark; the file is truncated, export it again");
    if (format == "bmp") {
        auto const expected = UncompressedBmpSize(bytes);
        if (expected && *expected > static_cast<uint64_t>(bytes.size()))
            Refuse("it is " + std::to_string(bytes.size()) + " bytes, and its header says "
                + std::to_string(*expected) + "; the file is truncated, export it again");
    }
}

QSize ImageDecoder::GifScreenSize(QByteArray const& bytes)
{
    // "GIF89a", then the screen's width and height, 16 bits each, little-endian.
    constexpr int kScreenOffset = 6;
    if (bytes.size() < kScreenOffset + 4)
        return QSize(0, 0);
    auto word = [&](int offset) {
        return static_cast<uint8_t>(bytes[offset]) | (static_cast<uint8_t>(bytes[offset + 1]) << 8);
    };
    return QSize(word(kScreenOffset), word(kScreenOffset + 2));
}

std::optional<uint64_t> ImageDecoder::UncompressedBmpSize(QByteArray const& bytes)
{
    constexpr int kInfoHeaderEnd = 14 + 40;
    if (bytes.size() < kInfoHeaderEnd)
        return std::nullopt;
    auto read = [&](int offset, int width) {
        uint64_t value = 0;
        for (int i = width - 1; i >= 0; --i)
            value = (value << 8) | static_cast<uint8_t>(bytes[offset + i]);
        return value;
    };
    uint64_t const offset = read(10, 4);
    auto const width = static_cast<int32_t>(read(18, 4));
    auto const height = static_cast<int32_t>(read(22, 4));
    uint64_t const bits = read(28, 2);
    uint64_t const compression = read(30, 4);
    constexpr uint64_t kRgb = 0;
    constexpr uint64_t kBitFields = 3;
    if (read(14, 4) < 40 || (compression != kRgb && compression != kBitFields) || width <= 0)
        return std::nullopt;
    uint64_t const stride = (static_cast<uint64_t>(width) * bits + 31) / 32 * 4;
    return offset + stride * static_cast<uint64_t>(std::abs(static_cast<int64_t>(height)));
}

void ImageDecoder::CheckSize(QSize size)
{
    if (size.width() <= 0 || size.height() <= 0)
        Refuse("it has 0 pixels (" + SizeText(size.expandedTo(QSize(0, 0))) + "); export the image again");
    if (size.width() > kMaxSide || size.height() > kMaxSide)
        Refuse("it declares " + SizeText(size) + " pixels, more than the " + std::to_string(kMaxSide) + "x"
            + std::to_string(kMaxSide) + " import decodes; scale it down first");
}

std::vector<QImage> ImageDecoder::DecodeRaster(QByteArray const& bytes, Request const& request)
{
    DecoderWarnings const warnings;
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead())
        Refuse("it is not an image Qt can read (PNG, JPEG, GIF, BMP, PGM, PPM or SVG); "
               "export it in one of those formats");
    if (!reader.supportsOption(QImageIOHandler::Size))
        Refuse("its size cannot be known before decoding (" + reader.format().toStdString()
            + "); export it as PNG");
    std::string const format = reader.format().toLower().toStdString();
    // Qt gives a GIF's first frame's size, but draws every frame on the whole screen the file declares.
    QSize const declared = format == "gif" ? reader.size().expandedTo(GifScreenSize(bytes)) : reader.size();
    CheckSize(declared);
    CheckWhole(bytes, format);

    int const count = std::max(1, reader.supportsAnimation() ? reader.imageCount() : 1);
    if (count > kMaxFrames)
        Refuse("it has " + FramesText(count) + ", more than the " + std::to_string(kMaxFrames)
            + " import takes");
    int64_t const kept = (request._frame ? 1 : count) * int64_t { declared.width() } * declared.height();
    if (kept > kMaxKeptPixels)
        Refuse("its " + FramesText(count) + " of " + SizeText(declared) + " hold " + std::to_string(kept)
            + " pixels, more than the " + std::to_string(kMaxKeptPixels)
            + " import keeps of one file; take one frame with --frame=N");
    if (request._frame && (*request._frame < 0 || *request._frame >= count))
        Refuse("frame " + std::to_string(*request._frame) + " is out of range: it has " + FramesText(count)
            + ", " + FrameRangeText(count));

    std::vector<QImage> frames;
    int const last = request._frame.value_or(count - 1);
    for (int index = 0; index <= last; ++index) {
        QImage frame;
        if (!reader.read(&frame) || frame.isNull())
            Refuse("cannot decode " + (count > 1 ? "frame " + std::to_string(index) : std::string("it"))
                + " (" + reader.errorString().toStdString()
                + "); the file is truncated or damaged, export it again");
        // Some readers go on over a cut or damaged file, filling in what is missing, and only warn.
        if (!DecoderWarnings::Kept().empty())
            Refuse("it is damaged (" + DecoderWarnings::Kept()
                + "); the file is truncated or damaged, export it again");
        // The header's size was checked; a frame must not be larger than it said.
        CheckSize(frame.size());
        if (!request._frame || index == *request._frame)
            frames.push_back(frame.convertToFormat(QImage::Format_ARGB32));
    }
    return frames;
}

std::vector<QImage> ImageDecoder::DecodeSvg(QByteArray const& bytes, Request const& request)
{
    if (request._frame && *request._frame != 0)
        Refuse("frame " + std::to_string(*request._frame) + " is out of range: it has 1 frame, only frame 0");
    QSvgRenderer renderer;
    if (!renderer.load(bytes))
        Refuse("it is not an SVG image Qt can draw; export it again");
    QSize const natural = renderer.defaultSize();
    CheckSize(natural);
    QSize canvas = natural;
    QRect placement(QPoint(0, 0), natural);
    if (request._target && request._fit != ImageFit::Mode::None) {
        canvas = *request._target;
        placement = ImageFit::Placement(natural, canvas, request._fit);
    }
    QImage image(canvas, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull())
        Refuse("cannot allocate " + SizeText(canvas) + " pixels");
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(placement));
    painter.end();
    return { image.convertToFormat(QImage::Format_ARGB32) };
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

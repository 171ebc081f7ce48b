// How faithfully each dither mode of packinspect import keeps a picture's tones, next to ImageMagick.
//
//   dither_quality [--no-imagemagick]
//
// Two pictures are made here: a smooth grey gradient (256 x 64, black to white) and a photograph-like
// picture (256 x 64: sky, hills, a sun and fine texture). Each is converted to the 16 levels by every
// mode, and by ImageMagick's "-colorspace Gray -dither FloydSteinberg -colors 16" and "-colorspace
// Gray -ordered-dither o8x8,16" (ImageMagick is a dependency of this benchmark only). The result and
// the source are both blurred with a Gaussian of sigma 1 pixel, in linear light, since that is how the
// eye and the panel's pixels average light; the mean absolute difference is printed in levels (the
// blurred light coded back to grey, times 15 / 255). The same figure with the blur on the coded greys
// is printed beside it. Target: Floyd-Steinberg and ordered no worse than ImageMagick's.

#include "Ditherer.h"
#include "GreyMapping.h"

#include <QDir>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

using namespace Zar::ResourcesLibrary::Tools::Inspect;

namespace {

constexpr int kWidth = 256;
constexpr int kHeight = 64;

using Picture = std::vector<double>; // grey values 0 to 255, rows from the top

Picture Gradient()
{
    Picture picture;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            picture.push_back(255.0 * x / (kWidth - 1));
    return picture;
}

Picture PhotoLike()
{
    Picture picture;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            double const horizon = 34 + 8 * std::sin(x / 23.0) + 3 * std::sin(x / 5.0);
            double value = y < horizon ? 210 - 90.0 * y / horizon
                                       : 70 + 40 * std::sin(x / 11.0 + y / 7.0) - (y - horizon);
            double const sun = std::hypot(x - 190.0, y - 14.0);
            if (sun < 10)
                value = 250 - sun;
            value += 12 * std::sin(x * 1.7 + y * 2.3); // texture
            picture.push_back(std::clamp(value, 0.0, 255.0));
        }
    return picture;
}

std::vector<uint8_t> Greys(Picture const& picture)
{
    std::vector<uint8_t> greys;
    for (double const value : picture)
        greys.push_back(static_cast<uint8_t>(std::lround(value)));
    return greys;
}

double ToLinear(double grey)
{
    double const coded = grey / 255.0;
    return coded <= 0.04045 ? coded / 12.92 : std::pow((coded + 0.055) / 1.055, 2.4);
}

double ToGrey(double linear)
{
    linear = std::clamp(linear, 0.0, 1.0);
    return 255.0 * (linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1 / 2.4) - 0.055);
}

Picture Blurred(Picture const& picture)
{
    constexpr int kRadius = 3;
    std::vector<double> kernel;
    double sum = 0;
    for (int i = -kRadius; i <= kRadius; ++i) {
        kernel.push_back(std::exp(-0.5 * i * i));
        sum += kernel.back();
    }
    for (double& weight : kernel)
        weight /= sum;
    auto pass = [&](Picture const& in, bool horizontal) {
        Picture out(in.size());
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                double value = 0;
                for (int i = -kRadius; i <= kRadius; ++i) {
                    int const sx = std::clamp(horizontal ? x + i : x, 0, kWidth - 1);
                    int const sy = std::clamp(horizontal ? y : y + i, 0, kHeight - 1);
                    value += kernel[i + kRadius] * in[sy * kWidth + sx];
                }
                out[y * kWidth + x] = value;
            }
        return out;
    };
    return pass(pass(picture, true), false);
}

// Mean absolute difference in levels of the blurred pictures; linear blurs in linear light.
double Error(Picture const& source, Picture const& result, bool linear)
{
    auto prepare = [&](Picture picture) {
        if (linear)
            for (double& value : picture)
                value = ToLinear(value);
        picture = Blurred(picture);
        if (linear)
            for (double& value : picture)
                value = ToGrey(value);
        return picture;
    };
    Picture const a = prepare(source);
    Picture const b = prepare(result);
    double total = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        total += std::abs(a[i] - b[i]);
    return total / static_cast<double>(a.size()) * 15.0 / 255.0;
}

Picture FromLevels(std::vector<uint8_t> const& levels)
{
    Picture picture;
    for (uint8_t const level : levels)
        picture.push_back(17.0 * level);
    return picture;
}

std::optional<Picture> ImageMagick(Picture const& source, QStringList const& options)
{
    QTemporaryDir folder;
    QImage image(kWidth, kHeight, QImage::Format_Grayscale8);
    auto const greys = Greys(source);
    for (int y = 0; y < kHeight; ++y)
        std::memcpy(image.scanLine(y), greys.data() + y * kWidth, kWidth);
    QString const in = folder.filePath("in.png");
    QString const out = folder.filePath("out.png");
    image.save(in);
    QProcess convert;
    convert.start("convert", QStringList { in } + options + QStringList { out });
    if (!convert.waitForFinished(60000) || convert.exitCode() != 0)
        return std::nullopt;
    QImage const result = QImage(out).convertToFormat(QImage::Format_Grayscale8);
    if (result.size() != QSize(kWidth, kHeight))
        return std::nullopt;
    // Each grey as the display shows it: the nearest of the 16 levels.
    Picture picture;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            picture.push_back(17.0 * ((result.constScanLine(y)[x] * 15 + 127) / 255));
    return picture;
}

void Report(char const* name, Picture const& source, Picture const& result)
{
    std::printf("  %-34s %6.3f   %6.3f\n", name, Error(source, result, true), Error(source, result, false));
}

} // namespace

int main(int argc, char** argv)
{
    bool const withImageMagick = !(argc > 1 && std::strcmp(argv[1], "--no-imagemagick") == 0);
    auto const mapping = GreyMapping::Nearest();
    for (auto const& [title, source] : { std::pair { "smooth grey gradient 256x64", Gradient() },
             std::pair { "photograph-like picture 256x64", PhotoLike() } }) {
        std::printf("%s: mean absolute error of the blurred result (sigma 1), in levels\n", title);
        std::printf("  %-34s %6s   %6s\n", "", "linear", "coded");
        for (auto const mode : { Ditherer::Mode::None, Ditherer::Mode::Ordered,
                 Ditherer::Mode::FloydSteinberg, Ditherer::Mode::Atkinson }) {
            auto const levels = Ditherer(mapping, mode).Levels(Greys(source), kWidth, kHeight);
            Report((std::string("import --dither=") + Ditherer::NameOf(mode)).c_str(), source,
                FromLevels(levels));
        }
        if (!withImageMagick)
            continue;
        auto const floyd
            = ImageMagick(source, { "-colorspace", "Gray", "-dither", "FloydSteinberg", "-colors", "16" });
        auto const ordered = ImageMagick(source, { "-colorspace", "Gray", "-ordered-dither", "o8x8,16" });
        if (!floyd || !ordered) {
            std::printf(
                "  ImageMagick: not measured (convert failed or is missing; Debian package imagemagick)\n");
            continue;
        }
        Report("ImageMagick -dither FloydSteinberg", source, *floyd);
        Report("ImageMagick -ordered-dither o8x8,16", source, *ordered);
    }
    return 0;
}

// The two halves of the import benchmark that are not packinspect itself:
//
//   import_floor make DIR N     writes N designer PNGs of 32 x 24 into DIR: anti-aliased RGBA drawings
//                               over transparency, each a little different
//   import_floor floor DIR OUT  the least any importer must do for those files: Qt decodes each PNG of
//                               DIR and a BMP of the output's size (a 4-bit 32 x 24 BMP, 502 bytes) is
//                               written for it into OUT, with plain POSIX calls and nothing else

#include <QDir>
#include <QImage>
#include <QPainter>
#include <QString>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int kWidth = 32;
constexpr int kHeight = 24;
// File header, info header, 16 palette entries and 24 rows of 16 bytes.
constexpr std::size_t kBmpSize = 14 + 40 + 16 * 4 + 24 * 16;

int Make(QString const& folder, int count)
{
    QDir().mkpath(folder);
    for (int index = 0; index < count; ++index) {
        QImage image(kWidth, kHeight, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(QColor(255, 255, 255, 220), 1.5));
        painter.setBrush(QColor(40 + index % 200, 120, 200 - index % 150, 180));
        painter.drawEllipse(QRectF(4 + index % 5, 3 + index % 3, 20, 16));
        painter.drawLine(QPointF(3, 20), QPointF(28, 4 + index % 15));
        painter.end();
        if (!image.save(QString("%1/icon%2.png").arg(folder).arg(index, 3, 10, QChar('0')), "PNG"))
            return 1;
    }
    return 0;
}

int Floor(QString const& folder, QString const& output)
{
    QDir().mkpath(output);
    std::vector<char> bmp(kBmpSize, 0);
    for (QString const& name : QDir(folder).entryList({ "*.png" }, QDir::Files, QDir::Name)) {
        QImage const image(folder + "/" + name);
        if (image.isNull())
            return 1;
        // The pixels' first byte goes into the file, so that the decoding cannot be skipped.
        bmp[kBmpSize - 1] = static_cast<char>(image.constBits()[0]);
        QByteArray const path = (output + "/" + name + ".bmp").toLocal8Bit();
        int const file = open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (file < 0 || write(file, bmp.data(), bmp.size()) != static_cast<ssize_t>(bmp.size())
            || close(file) != 0)
            return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && std::strcmp(argv[1], "make") == 0)
        return Make(argv[2], std::atoi(argv[3]));
    if (argc == 4 && std::strcmp(argv[1], "floor") == 0)
        return Floor(argv[2], argv[3]);
    std::fprintf(stderr, "usage: import_floor make DIR N | import_floor floor DIR OUT\n");
    return 2;
}

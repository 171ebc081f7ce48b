#include "PngFile.h"

#include <QBuffer>
#include <QByteArray>

#include <fstream>

namespace Zar::ResourcesLibrary::Tools::Inspect {

bool PngFile::Save(QImage const& image, std::string const& path)
{
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return false;
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(png.constData(), png.size());
    stream.close();
    return static_cast<bool>(stream);
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

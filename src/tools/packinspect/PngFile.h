#pragma once

#include <QImage>

#include <string>

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Saves the pictures packinspect draws.
class PngFile {
public:
    // False when the file cannot be written. Qt would take the file name as text and encode it again;
    // written through a stream, its bytes reach the file system as they were given, UTF-8 or not.
    static bool Save(QImage const& image, std::string const& path);
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

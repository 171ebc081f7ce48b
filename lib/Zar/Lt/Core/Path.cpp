#include "Zar/Lt/Core/Path.h"

namespace Zar::Lt::Core {

std::string Path::Combine(std::string_view folder, std::string_view name)
{
    if (name.empty())
        return std::string(folder);
    if (folder.empty() || name.front() == '/')
        return std::string(name);
    std::string path(folder);
    if (path.back() != '/')
        path += '/';
    path += name;
    return path;
}

} // namespace Zar::Lt::Core

#pragma once

#include <string>
#include <string_view>

namespace Zar::Lt::Core {

class Path {
public:
    // Joins a folder and a file name with one '/'. An absolute name replaces the folder; nothing is
    // normalised, and only '/' counts as a separator.
    static std::string Combine(std::string_view folder, std::string_view name);
};

} // namespace Zar::Lt::Core

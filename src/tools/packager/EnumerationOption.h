#pragma once

#include <cstdint>
#include <string>

namespace Zar::ResourcesLibrary::Tools {

// What one generated enumeration file holds: the singular name every identifier and file name is
// built from, the value of the first enumerator (0 leaves it implicit) and whether enumerator names
// are capitalised.
struct EnumerationOption {
    std::string name;
    int32_t first;
    bool capitalize;
};

} // namespace Zar::ResourcesLibrary::Tools

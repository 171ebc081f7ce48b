#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace Zar::Bench {

// Names as a real icon list holds them: numbered plain icons, with every eighth one a "_Selected"
// variant (those take the other branch of the commands writer and the exporter).
inline std::vector<std::string> IconNames(int count)
{
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (int i = 1; i <= count; ++i) {
        char name[32];
        std::snprintf(name, sizeof(name), i % 8 == 0 ? "Icon%04d_Selected" : "Icon%04d", i);
        names.emplace_back(name);
    }
    return names;
}

} // namespace Zar::Bench

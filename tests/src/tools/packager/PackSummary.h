#pragma once

// The summary the packager prints after writing a pack, as the tests expect it.

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace PackagerTests {

// The line printed after the header: every CRC in upper-case hexadecimal, 4 digits.
inline std::string CrcLine(std::vector<uint16_t> const& crcs)
{
    std::string line = "crc:";
    for (std::size_t i = 0; i < crcs.size(); ++i) {
        char text[8];
        std::snprintf(text, sizeof text, "%04X", crcs[i]);
        if (i != 0)
            line += ' ';
        line += text;
    }
    return line + "\n";
}

} // namespace PackagerTests

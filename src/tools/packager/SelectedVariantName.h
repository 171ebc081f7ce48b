#pragma once

#include <string_view>

namespace Zar::ResourcesLibrary::Tools {

// Tells the names of selected variants: names ending in "_Selected", compared byte for byte and
// case-sensitively. Selected variants are drawn differently on the display but are not separate
// commands.
class SelectedVariantName {
public:
    static constexpr std::string_view kSuffix = "_Selected";

    // The answer is the one of Qt's QString::fromUtf8(name).endsWith(kSuffix, Qt::CaseSensitive),
    // which the commands file was first generated with, for any bytes: Qt's decoder turns every
    // byte it cannot decode into one replacement character, never swallows an ASCII byte into a
    // broken sequence, and drops a byte-order mark only at the very start. So the last nine
    // characters it decodes are the suffix exactly when the last nine bytes are.
    static bool Matches(std::string_view name) noexcept;
};

} // namespace Zar::ResourcesLibrary::Tools

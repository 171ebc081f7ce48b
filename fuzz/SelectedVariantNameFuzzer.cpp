// The commands writer's test of selected variants, on any bytes (invalid UTF-8, NUL bytes, cut
// sequences): its answer must be the one of Qt's QString::endsWith on the same bytes, which it
// replaces. Only this target links Qt Core.

#include "FuzzCheck.h"
#include "SelectedVariantName.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    std::string_view const name(reinterpret_cast<char const*>(data), size);
    bool const qt = QString::fromUtf8(name.data(), static_cast<int>(name.size()))
                        .endsWith(QStringLiteral("_Selected"), Qt::CaseSensitive);
    ZAR_FUZZ_CHECK(qt == Zar::ResourcesLibrary::Tools::SelectedVariantName::Matches(name));
    return 0;
}

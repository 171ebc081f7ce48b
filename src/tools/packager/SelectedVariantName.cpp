#include "SelectedVariantName.h"

namespace Zar::ResourcesLibrary::Tools {

bool SelectedVariantName::Matches(std::string_view name) noexcept { return name.ends_with(kSuffix); }

} // namespace Zar::ResourcesLibrary::Tools

#include "Zar/Lt/Logging/Indentation.h"

#include <algorithm>
#include <cstddef>

namespace Zar::Lt::Logging {

std::string_view Indentation::Of(int count)
{
    auto const blanks = static_cast<std::size_t>(std::clamp(count, 0, static_cast<int>(_spaces.size())));
    return _spaces.substr(_spaces.size() - blanks);
}

} // namespace Zar::Lt::Logging

#include "Zar/Lt/Core/StringCollection/IStringCollection.h"

#include "Zar/Lt/Exceptions/Check.h"

#include <limits>

namespace Zar::Lt::Core {

void IStringCollection::Append(std::string_view const& text)
{
    // The raw append takes an unsigned length: a longer text must not arrive silently cut.
    ZAR_PRECONDITION(text.size() <= std::numeric_limits<unsigned>::max());
    Append(text.data(), static_cast<unsigned>(text.size()));
}

void IStringCollection::Append(IStringReadOnlyCollection const& other)
{
    other.Enumerate([this](int, std::string_view text) {
        Append(text);
        return true;
    });
}

} // namespace Zar::Lt::Core

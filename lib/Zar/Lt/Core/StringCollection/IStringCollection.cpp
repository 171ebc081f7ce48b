#include "Zar/Lt/Core/StringCollection/IStringCollection.h"

namespace Zar::Lt::Core {

void IStringCollection::Append(std::string_view const& text)
{
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

#include "Zar/Lt/Core/StringCollection/StringCollection.h"

namespace Zar::Lt::Core {

void StringCollection::Enumerate(EnumerateCallback const& callback) const
{
    // The callback may append to this very collection (a collection appended to itself): walking only
    // the elements present at the start keeps that from running forever.
    std::size_t const count = _strings.size();
    for (std::size_t position = 0; position < count; ++position) {
        if (!callback(static_cast<int>(position), _strings[position]))
            return;
    }
}

void StringCollection::Append(char const* data, unsigned length) { _strings.emplace_back(data, length); }

void StringCollection::Append(std::initializer_list<std::string_view> const& list)
{
    _strings.reserve(_strings.size() + list.size());
    for (std::string_view const& text : list)
        Append(text);
}

} // namespace Zar::Lt::Core

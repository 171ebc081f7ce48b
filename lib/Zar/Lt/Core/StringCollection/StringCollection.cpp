#include "Zar/Lt/Core/StringCollection/StringCollection.h"

namespace Zar::Lt::Core {

void StringCollection::Enumerate(EnumerateCallback const& callback) const
{
    for (std::size_t position = 0; position < _strings.size(); ++position) {
        if (!callback(static_cast<int>(position), _strings[position]))
            return;
    }
}

void StringCollection::Append(char const* data, unsigned length)
{
    _strings.emplace_back(data, length);
}

void StringCollection::Append(std::initializer_list<std::string_view> const& list)
{
    _strings.reserve(_strings.size() + list.size());
    for (std::string_view const& text : list)
        Append(text);
}

} // namespace Zar::Lt::Core

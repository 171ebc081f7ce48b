#include "Zar/Lt/Core/StringCollection/IStringReadOnlyCollection.h"

namespace Zar::Lt::Core {

void IStringReadOnlyCollection::Enumerate(int offset, EnumerateCallback const& callback) const
{
    if (offset == 0) {
        Enumerate(callback);
        return;
    }
    Enumerate([offset, &callback](int position, std::string_view text) {
        if (position < offset)
            return true;
        return callback(position - offset, text);
    });
}

int IStringReadOnlyCollection::Offset() const { return 0; }

int IStringReadOnlyCollection::Count() const
{
    int count = 0;
    Enumerate([&count](int, std::string_view) {
        ++count;
        return true;
    });
    return count;
}

bool IStringReadOnlyCollection::Exists(std::string_view text) const
{
    bool found = false;
    Enumerate([&found, text](int, std::string_view element) {
        found = element == text;
        return !found;
    });
    return found;
}

int IStringReadOnlyCollection::IndexOf(std::string_view text) const
{
    int index = -1;
    Enumerate([&index, text](int position, std::string_view element) {
        if (element != text)
            return true;
        index = position;
        return false;
    });
    return index;
}

} // namespace Zar::Lt::Core

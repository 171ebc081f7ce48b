#pragma once

#include "Zar/Lt/Core/StringCollection/IStringCollection.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace Zar::Lt::Core {

// The owning string list: copies of the appended strings, in insertion order.
class StringCollection : public IStringCollection {
public:
    using IStringCollection::Append;
    using IStringReadOnlyCollection::Enumerate;

    void Enumerate(EnumerateCallback const& callback) const override;
    void Append(char const* data, unsigned length) override;
    virtual void Append(std::initializer_list<std::string_view> const& list);

private:
    std::vector<std::string> _strings;
};

} // namespace Zar::Lt::Core

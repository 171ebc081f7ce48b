#pragma once

#include "Zar/Lt/Core/StringCollection/IStringReadOnlyCollection.h"

#include <string_view>

namespace Zar::Lt::Core {

// A list of strings that can also grow. Only the raw append is left to the concrete collection; the
// other appends go through it.
class IStringCollection : public IStringReadOnlyCollection {
public:
    // Appends a copy of the length bytes at data.
    virtual void Append(char const* data, unsigned length) = 0;
    virtual void Append(std::string_view const& text);
    // Appends every element of other, in order.
    virtual void Append(IStringReadOnlyCollection const& other);
};

} // namespace Zar::Lt::Core

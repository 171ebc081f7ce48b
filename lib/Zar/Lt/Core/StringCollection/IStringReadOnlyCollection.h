#pragma once

#include <functional>
#include <string_view>

namespace Zar::Lt::Core {

// A list of strings that can only be read. Every query is built on the one enumeration primitive, so
// a new kind of collection only has to say how it walks its elements.
class IStringReadOnlyCollection {
public:
    // Called with the position and the string; returning false stops the enumeration.
    using EnumerateCallback = std::function<bool(int, std::string_view)>;

    virtual ~IStringReadOnlyCollection() = default;

    virtual void Enumerate(EnumerateCallback const& callback) const = 0;
    // Skips the first offset elements and numbers the others from 0.
    virtual void Enumerate(int offset, EnumerateCallback const& callback) const;
    virtual int Offset() const;
    virtual int Count() const;
    virtual bool Exists(std::string_view text) const;
    // Position of the first element equal to text, -1 when there is none.
    virtual int IndexOf(std::string_view text) const;
};

} // namespace Zar::Lt::Core

#pragma once

#include <cstdint>
#include <string>

namespace Zar::Lt::Core {

// A version of four 8-bit parts held in one 32-bit value, Major in the most significant byte, so that
// versions compare as plain numbers and store as one word.
class Version32 {
public:
    constexpr Version32() = default;
    constexpr explicit Version32(uint32_t value)
        : _value(value)
    {
    }
    constexpr Version32(uint8_t major, uint8_t minor, uint8_t patch, uint8_t build)
        : _value(static_cast<uint32_t>(major) << 24 | static_cast<uint32_t>(minor) << 16
            | static_cast<uint32_t>(patch) << 8 | build)
    {
    }

    constexpr uint32_t Value() const { return _value; }
    constexpr uint8_t Major() const { return static_cast<uint8_t>(_value >> 24); }
    constexpr uint8_t Minor() const { return static_cast<uint8_t>(_value >> 16); }
    constexpr uint8_t Patch() const { return static_cast<uint8_t>(_value >> 8); }
    constexpr uint8_t Build() const { return static_cast<uint8_t>(_value); }

    // "1.2.3.4".
    std::string Text() const
    {
        return std::to_string(Major()) + "." + std::to_string(Minor()) + "." + std::to_string(Patch()) + "."
            + std::to_string(Build());
    }

    constexpr bool operator==(Version32 const&) const = default;

private:
    uint32_t _value = 0;
};

} // namespace Zar::Lt::Core

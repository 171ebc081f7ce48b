#pragma once
#include <stdint.h>

namespace Zar { namespace RemoteController { namespace Features {
    using ScreenIndex = uint16_t;
}}}

namespace Zar { namespace RemoteButtonsConfiguration {

    using Zar::RemoteController::Features::ScreenIndex;

enum class Screen : ScreenIndex
{
    Splash,
    Settings,
    LowBattery,
};

struct Screens
{
    static constexpr ScreenIndex Last = static_cast<ScreenIndex>(2);
    static constexpr ScreenIndex First = static_cast<ScreenIndex>(0);
    static constexpr ScreenIndex Count = 3;
};

inline bool operator==(ScreenIndex left, Screen right)
{
    return left == static_cast<ScreenIndex>(right);
}

inline bool operator==(Screen left, ScreenIndex right)
{
    return static_cast<ScreenIndex>(left) == right;
}
}}

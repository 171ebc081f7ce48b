#pragma once
#include <stdint.h>

namespace Zar { namespace RemoteController { namespace Features {
    using IconIndex = uint16_t;
}}}

namespace Zar { namespace RemoteButtonsConfiguration {

    using Zar::RemoteController::Features::IconIndex;

enum class Icon : IconIndex
{
    Play = 100,
    Play_Selected,
    Pause,
    Stop,
    Next,
    Previous,
    VolumeUp,
    VolumeDown,
    Battery,
    Signal,
    Menu,
    Menu_Selected,
};

struct Icons
{
    static constexpr IconIndex Last = static_cast<IconIndex>(111);
    static constexpr IconIndex First = static_cast<IconIndex>(100);
    static constexpr IconIndex Count = 12;
};

inline bool operator==(IconIndex left, Icon right)
{
    return left == static_cast<IconIndex>(right);
}

inline bool operator==(Icon left, IconIndex right)
{
    return static_cast<IconIndex>(left) == right;
}
}}

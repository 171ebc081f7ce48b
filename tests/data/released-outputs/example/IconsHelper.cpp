#include "IconHelper.h"
using namespace Zar::RemoteController::Features;

//same order as Icon enumeration
const char* IconsHelper::GetString(uint32_t value)
{
    static const char* names[] = {
        "Play",
        "Play_Selected",
        "Pause",
        "Stop",
        "Next",
        "Previous",
        "VolumeUp",
        "VolumeDown",
        "Battery",
        "Signal",
        "Menu",
        "Menu_Selected",
    };
    return names[value];
}

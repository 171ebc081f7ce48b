#include "IconHelper.h"
using namespace Zar::RemoteController::Features;

//same order as Icon enumeration
const char* IconsHelper::GetString(uint32_t value)
{
    static const char* names[] = {
        "Play",
        "Photo",
    };
    return names[value];
}

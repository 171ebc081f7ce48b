#pragma once
// The firmware's side of the generated IconsHelper.cpp, which includes this header by this name: the
// packager writes the definition, the firmware declares the class.

#include <stdint.h>

namespace Zar::RemoteController::Features {

struct IconsHelper {
    // The name of the icon at this place of the Icon enumeration, counted from 0 for Icons::First.
    static const char* GetString(uint32_t value);
};

} // namespace Zar::RemoteController::Features

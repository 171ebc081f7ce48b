// Stands for the firmware: it names its resources through the generated headers, so it recompiles
// exactly when they change.

#include "Icons.h"
#include "Screens.h"

using namespace Zar::RemoteButtonsConfiguration;

static_assert(static_cast<int>(Icon::Play) == 100, "icons are numbered from (sector - 2) x 10");
static_assert(static_cast<int>(Screen::Splash) == 0, "screens are numbered from 0");

int main() { return static_cast<int>(Icons::Count) >= 2 ? 0 : 1; }

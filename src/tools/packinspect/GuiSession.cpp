#include "GuiSession.h"

#include <QGuiApplication>

namespace Zar::ResourcesLibrary::Tools::Inspect {

void GuiSession::Ensure()
{
    if (QCoreApplication::instance())
        return;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt keeps references to argc and argv for the application's lifetime.
    static int argc = 1;
    static char name[] = "packinspect";
    static char* argv[] = { name, nullptr };
    static QGuiApplication application(argc, argv);
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

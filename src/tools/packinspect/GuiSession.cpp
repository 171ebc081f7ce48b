#include "GuiSession.h"

#include <QGuiApplication>
#include <QString>

namespace {

QtMessageHandler previousHandler = nullptr;

// Qt warns that XDG_RUNTIME_DIR is unset on every start outside a desktop session, which is where
// this tool mostly runs; it needs no runtime folder, so that one warning is dropped.
void DropRuntimeDirWarning(QtMsgType type, QMessageLogContext const& context, QString const& message)
{
    if (type == QtWarningMsg && message.startsWith("QStandardPaths: XDG_RUNTIME_DIR not set"))
        return;
    if (previousHandler)
        previousHandler(type, context, message);
}

} // namespace

namespace Zar::ResourcesLibrary::Tools::Inspect {

void GuiSession::Ensure()
{
    if (QCoreApplication::instance())
        return;
    // The "minimal" platform needs no display and, with its fonts enabled, draws text exactly as the
    // "offscreen" one does; unlike that one it frees all it allocates, which keeps leak checkers quiet.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "minimal:enable_fonts");
    previousHandler = qInstallMessageHandler(DropRuntimeDirWarning);
    // Qt keeps references to argc and argv for the application's lifetime.
    static int argc = 1;
    static char name[] = "packinspect";
    static char* argv[] = { name, nullptr };
    static QGuiApplication application(argc, argv);
}

} // namespace Zar::ResourcesLibrary::Tools::Inspect

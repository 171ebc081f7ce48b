#pragma once

namespace Zar::ResourcesLibrary::Tools::Inspect {

// Drawing text needs fonts, and Qt hands out fonts only while a QGuiApplication exists. This makes
// one on first use, for the whole process, on a platform without a display unless QT_QPA_PLATFORM says
// otherwise, so that rendering works on a machine without a display.
class GuiSession {
public:
    static void Ensure();
};

} // namespace Zar::ResourcesLibrary::Tools::Inspect

#include "GuiSession.h"

#include <QFontDatabase>
#include <QGuiApplication>

#include <gtest/gtest.h>

using Zar::ResourcesLibrary::Tools::Inspect::GuiSession;

TEST(GuiSessionTest, MakesOneApplicationWithFonts)
{
    GuiSession::Ensure();
    auto* const first = QCoreApplication::instance();
    ASSERT_NE(first, nullptr);
    EXPECT_NE(qobject_cast<QGuiApplication*>(first), nullptr);
    GuiSession::Ensure();
    EXPECT_EQ(QCoreApplication::instance(), first);
    EXPECT_FALSE(QFontDatabase().families().isEmpty());
}

#include "Zar/Lt/Logging/LoggingManager.h"

#include "RecordingLogger.h"

#include <LoggingManager.h>

#include <gtest/gtest.h>

#include <memory>

namespace Zar::Lt::Logging {
namespace {

using zar::logging::test::RecordingLogger;
using zar::logging::test::RecordingLoggerFactory;

// The process-wide registry cannot be reset, so its whole life is checked in one test.
TEST(LoggingManagerTest, ForwardsToTheFacadeRegistry)
{
    EXPECT_EQ(nullptr, LoggingManager::GetLoggerPtr("main"));

    auto const logger = std::make_shared<RecordingLogger>();
    auto factory = std::make_unique<RecordingLoggerFactory>(logger);
    auto const* factoryView = factory.get();
    ASSERT_TRUE(zar::logging::LoggingManager::SetFactory(std::move(factory)));

    EXPECT_EQ(logger.get(), LoggingManager::GetLoggerPtr("main"));
    EXPECT_EQ(logger.get(), zar::logging::LoggingManager::GetLoggerPtr("other"));
    EXPECT_EQ((std::vector<std::string> { "main", "other" }), factoryView->RequestedNames());
}

} // namespace
} // namespace Zar::Lt::Logging

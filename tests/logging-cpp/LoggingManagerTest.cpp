#include "LoggingManager.h"

#include "RecordingLogger.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace zar::logging {
namespace {

using test::RecordingLogger;
using test::RecordingLoggerFactory;

std::string const DeprecatedMessage = "You have created the logger main before calling SetFactory. This "
                                      "method is deprecrated: you should call GetLoggerPtr instead.";

template <typename Call> void ExpectRuntimeError(Call call, std::string const& message)
{
    try {
        call();
        FAIL() << "no exception";
    } catch (std::runtime_error const& e) {
        EXPECT_EQ(message, e.what());
    }
}

// The process-wide registry cannot be reset, so its whole life is checked in one test.
TEST(LoggingManagerTest, ProcessRegistryGoesFromNoFactoryToAFixedFactory)
{
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(nullptr, LoggingManager::GetLoggerPtr("main"));
    EXPECT_EQ(nullptr, LoggingManager::GetLoggerSharedPtr("main"));
    EXPECT_EQ(nullptr, LoggingManager::GetNDC());
    ExpectRuntimeError([] { LoggingManager::GetLogger("main"); }, DeprecatedMessage);
    ExpectRuntimeError([] { GetLogger("main"); }, DeprecatedMessage);
    EXPECT_EQ("", ::testing::internal::GetCapturedStderr()) << "warnings are off in the process registry";

    auto const replaced = std::make_shared<RecordingLogger>();
    auto const logger = std::make_shared<RecordingLogger>();
    auto factory = std::make_unique<RecordingLoggerFactory>(logger);
    auto* const factoryView = factory.get();
    EXPECT_TRUE(LoggingManager::SetFactory(std::make_unique<RecordingLoggerFactory>(replaced)));
    EXPECT_TRUE(LoggingManager::SetFactory(std::move(factory)));

    EXPECT_EQ(factoryView->Context(), LoggingManager::GetNDC());
    EXPECT_EQ(logger, LoggingManager::GetLoggerSharedPtr("main"));
    EXPECT_EQ(logger.get(), LoggingManager::GetLoggerPtr("main"));
    EXPECT_EQ(logger.get(), &LoggingManager::GetLogger("main"));
    EXPECT_EQ(logger.get(), &GetLogger("main"));
    EXPECT_FALSE(LoggingManager::SetFactory(std::make_unique<RecordingLoggerFactory>(replaced)));
    EXPECT_EQ(logger.get(), LoggingManager::GetLoggerPtr("main"));
}

} // namespace
} // namespace zar::logging

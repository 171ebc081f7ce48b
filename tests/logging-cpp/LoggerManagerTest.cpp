#include "LoggerManager.h"

#include "RecordingLogger.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace zar::logging {
namespace {

using test::RecordingLogger;
using test::RecordingLoggerFactory;

std::string const LoggerWarning
    = "WARNING: returned logger for main is nullptr while SetFactory is not called\n";
std::string const NdcWarning = "WARNING: returned NDC is nullptr while SetFactory is not called\n";

// A recording factory that tells when it is destroyed.
class TrackedFactory : public RecordingLoggerFactory {
public:
    TrackedFactory(std::shared_ptr<RecordingLogger> logger, bool& destroyed)
        : RecordingLoggerFactory(std::move(logger))
        , _destroyed(destroyed)
    {
        _destroyed = false;
    }
    ~TrackedFactory() override { _destroyed = true; }

private:
    bool& _destroyed;
};

// A back end that knows no logger of any name.
class EmptyFactory : public ILoggerFactory {
public:
    std::shared_ptr<ILogger> GetLogger(std::string const&) override { return nullptr; }
    INestedDiagnosticContext* GetNDC() override { return nullptr; }
};

// Runs `call` and returns what it wrote to standard error.
template <typename Call> std::string StandardErrorOf(Call call)
{
    ::testing::internal::CaptureStderr();
    call();
    return ::testing::internal::GetCapturedStderr();
}

void ExpectDeprecatedGetLoggerFails(LoggerManager& manager, std::string const& name)
{
    try {
        manager.GetLogger(name);
        FAIL() << "no exception";
    } catch (std::runtime_error const& e) {
        EXPECT_EQ("You have created the logger " + name
                + " before calling SetFactory. This method is deprecrated: you should call GetLoggerPtr "
                  "instead.",
            e.what());
    }
}

TEST(LoggerManagerTest, WithoutFactoryThereIsNoLoggerAndNoWarning)
{
    LoggerManager manager;
    EXPECT_EQ("", StandardErrorOf([&] {
        EXPECT_EQ(nullptr, manager.GetLoggerPtr("main"));
        EXPECT_EQ(nullptr, manager.GetLoggerSharedPtr("main"));
        EXPECT_EQ(nullptr, manager.GetNDC());
    }));
}

TEST(LoggerManagerTest, AfterPrintWarningRequestsWithoutFactoryWarn)
{
    LoggerManager manager;
    manager.PrintWarning();
    EXPECT_EQ(LoggerWarning, StandardErrorOf([&] { EXPECT_EQ(nullptr, manager.GetLoggerPtr("main")); }));
    EXPECT_EQ(
        LoggerWarning, StandardErrorOf([&] { EXPECT_EQ(nullptr, manager.GetLoggerSharedPtr("main")); }));
    EXPECT_EQ(NdcWarning, StandardErrorOf([&] { EXPECT_EQ(nullptr, manager.GetNDC()); }));
}

TEST(LoggerManagerTest, WarningNamesTheRequestedLogger)
{
    LoggerManager manager;
    manager.PrintWarning();
    EXPECT_EQ("WARNING: returned logger for  is nullptr while SetFactory is not called\n",
        StandardErrorOf([&] { manager.GetLoggerPtr(""); }));
}

TEST(LoggerManagerTest, DeprecatedGetLoggerWithoutFactoryThrows)
{
    LoggerManager manager;
    ExpectDeprecatedGetLoggerFails(manager, "main");
}

TEST(LoggerManagerTest, DeprecatedGetLoggerWarnsBeforeItThrows)
{
    LoggerManager manager;
    manager.PrintWarning();
    EXPECT_EQ(LoggerWarning, StandardErrorOf([&] { ExpectDeprecatedGetLoggerFails(manager, "main"); }));
}

TEST(LoggerManagerTest, FactoryHandsOutItsLoggersAndContext)
{
    LoggerManager manager;
    auto const logger = std::make_shared<RecordingLogger>();
    auto factory = std::make_unique<RecordingLoggerFactory>(logger);
    auto* const factoryView = factory.get();
    ASSERT_TRUE(manager.SetFactory(std::move(factory)));

    EXPECT_EQ(logger, manager.GetLoggerSharedPtr("a"));
    EXPECT_EQ(logger.get(), manager.GetLoggerPtr("b"));
    EXPECT_EQ(logger.get(), &manager.GetLogger("c"));
    EXPECT_EQ(factoryView->Context(), manager.GetNDC());
    EXPECT_EQ((std::vector<std::string> { "a", "b", "c" }), factoryView->RequestedNames());
}

TEST(LoggerManagerTest, FactoryIsSilentEvenWithWarningsOn)
{
    LoggerManager manager;
    manager.PrintWarning();
    manager.SetFactory(std::make_unique<RecordingLoggerFactory>(std::make_shared<RecordingLogger>()));
    EXPECT_EQ("", StandardErrorOf([&] {
        EXPECT_NE(nullptr, manager.GetLoggerPtr("main"));
        EXPECT_NE(nullptr, manager.GetNDC());
    }));
}

TEST(LoggerManagerTest, FactoryCanBeReplacedUntilALoggerIsHandedOut)
{
    LoggerManager manager;
    auto const first = std::make_shared<RecordingLogger>();
    auto const second = std::make_shared<RecordingLogger>();
    bool firstDestroyed = false;
    bool secondDestroyed = false;

    EXPECT_TRUE(manager.SetFactory(std::make_unique<TrackedFactory>(first, firstDestroyed)));
    EXPECT_TRUE(manager.SetFactory(std::make_unique<TrackedFactory>(second, secondDestroyed)));
    EXPECT_TRUE(firstDestroyed);
    EXPECT_FALSE(secondDestroyed);
    EXPECT_EQ(second.get(), manager.GetLoggerPtr("main"));
}

TEST(LoggerManagerTest, FactoryIsFixedOnceALoggerWasHandedOut)
{
    LoggerManager manager;
    auto const installed = std::make_shared<RecordingLogger>();
    manager.SetFactory(std::make_unique<RecordingLoggerFactory>(installed));
    ASSERT_EQ(installed.get(), manager.GetLoggerPtr("main"));

    bool offeredDestroyed = false;
    EXPECT_FALSE(manager.SetFactory(
        std::make_unique<TrackedFactory>(std::make_shared<RecordingLogger>(), offeredDestroyed)));
    EXPECT_TRUE(offeredDestroyed);
    EXPECT_EQ(installed.get(), manager.GetLoggerPtr("main"));
}

TEST(LoggerManagerTest, AskingForTheContextDoesNotFixTheFactory)
{
    LoggerManager manager;
    manager.SetFactory(std::make_unique<RecordingLoggerFactory>(std::make_shared<RecordingLogger>()));
    manager.GetNDC();
    EXPECT_TRUE(
        manager.SetFactory(std::make_unique<RecordingLoggerFactory>(std::make_shared<RecordingLogger>())));
}

TEST(LoggerManagerTest, RemovingTheFactoryIsAllowedBeforeUse)
{
    LoggerManager manager;
    manager.SetFactory(std::make_unique<RecordingLoggerFactory>(std::make_shared<RecordingLogger>()));
    EXPECT_TRUE(manager.SetFactory(nullptr));
    EXPECT_EQ(nullptr, manager.GetLoggerPtr("main"));
    EXPECT_TRUE(
        manager.SetFactory(std::make_unique<RecordingLoggerFactory>(std::make_shared<RecordingLogger>())));
}

TEST(LoggerManagerTest, FactoryWithoutTheLoggerIsStillUsed)
{
    LoggerManager manager;
    manager.SetFactory(std::make_unique<EmptyFactory>());
    EXPECT_EQ(nullptr, manager.GetLoggerPtr("main"));
    EXPECT_FALSE(manager.SetFactory(std::make_unique<EmptyFactory>()));
    ExpectDeprecatedGetLoggerFails(manager, "absent");
}

TEST(LoggerManagerTest, DestroyingTheManagerDestroysTheFactory)
{
    bool destroyed = false;
    {
        LoggerManager manager;
        manager.SetFactory(std::make_unique<TrackedFactory>(std::make_shared<RecordingLogger>(), destroyed));
        EXPECT_FALSE(destroyed);
    }
    EXPECT_TRUE(destroyed);
}

TEST(LoggerManagerTest, ManyThreadsAskingAtOnceSeeEitherNoLoggerOrTheInstalledOne)
{
    constexpr int kThreadCount = 8;
    constexpr int kRequestsPerThread = 200;
    LoggerManager manager;
    auto const logger = std::make_shared<RecordingLogger>();
    auto factory = std::make_unique<RecordingLoggerFactory>(logger);
    auto* const factoryView = factory.get();

    std::atomic<bool> start = false;
    std::atomic<int> unexpected = 0;
    std::atomic<int> served = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreadCount; ++t) {
        threads.emplace_back([&] {
            while (!start)
                std::this_thread::yield();
            for (int i = 0; i < kRequestsPerThread; ++i) {
                auto const obtained = manager.GetLoggerSharedPtr("worker");
                if (obtained == logger)
                    ++served;
                else if (obtained != nullptr)
                    ++unexpected;
            }
        });
    }
    start = true;
    bool const installed = manager.SetFactory(std::move(factory));
    for (auto& thread : threads)
        thread.join();

    // Installation races with the first requests, but nothing may be handed out before it.
    EXPECT_TRUE(installed);
    EXPECT_EQ(0, unexpected.load());
    EXPECT_EQ(static_cast<std::size_t>(served.load()), factoryView->RequestedNames().size());
    EXPECT_EQ(logger.get(), manager.GetLoggerPtr("after"));
    EXPECT_FALSE(manager.SetFactory(std::make_unique<RecordingLoggerFactory>(logger)));
}

} // namespace
} // namespace zar::logging

#include "Zar/Lt/Logging/ExceptionLogger.h"

#include "RecordingLogger.h"
#include "Zar/Lt/Exceptions/PreCondition.h"
#include "Zar/Lt/Exceptions/Symbol.h"
#include "Zar/ResourcesLibrary/ResourcesLibraryException.h"

#include "StackProbe.h"
#include <gmock/gmock.h>

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// Raisers with exported names, so that their frames can be recognised in the logged stack.
namespace Zar::Lt::Logging::ExceptionProbe {

using Exceptions::SourceInfo;

ZAR_STACK_PROBE void OpenResource()
{
    throw ResourcesLibrary::ResourcesLibraryException(
        SourceInfo { "void OpenResource()", "src/lib/Open", 30 }, "Cannot open x");
}

ZAR_STACK_PROBE void CheckResource()
{
    try {
        OpenResource();
    } catch (...) {
        std::throw_with_nested(Exceptions::PreCondition(
            SourceInfo { "void CheckResource()", "src/lib/Check", 12 }, "PreCondition open"));
    }
}

} // namespace Zar::Lt::Logging::ExceptionProbe

namespace Zar::Lt::Logging {
namespace {

using Exceptions::BaseException;
using Exceptions::SourceInfo;
using Exceptions::Symbol;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using zar::logging::test::LogRecord;
using zar::logging::test::RecordingLogger;

char const* const MainFile = "src/tools/packager/packager";
unsigned const MainLine = 121;

// What main does: catch everything and log it through the exception pointer.
template <typename Raise> std::vector<LogRecord> LogCaught(Raise raise)
{
    RecordingLogger logger;
    try {
        raise();
        ADD_FAILURE() << "no exception";
    } catch (...) {
        ExceptionLogger::LogStack(logger, std::current_exception(), MainFile, MainLine);
    }
    return logger.Records();
}

// Nests one exception in another, as a caller that adds context does.
template <typename Outer, typename Inner> void ThrowNested(Outer const& outer, Inner const& inner)
{
    try {
        throw inner;
    } catch (...) {
        std::throw_with_nested(outer);
    }
}

BaseException MakeBase(char const* message, unsigned line)
{
    return BaseException(SourceInfo { "void Raise()", "src/Raise", line }, message);
}

LogRecord Record(int level, std::string message, std::optional<std::string> file, unsigned line)
{
    return LogRecord { level, std::move(message), std::move(file), line };
}

std::string Printed(Symbol const& symbol, std::string_view suffix, int indent)
{
    std::ostringstream out;
    ExceptionLogger::Print(out, symbol, suffix, indent);
    return out.str();
}

TEST(ExceptionLoggerTest, NestedResourceFailureGivesTwoRecordsAndTheInnerStack)
{
    std::vector<std::string> innerStack;
    auto const records = LogCaught([&innerStack] {
        try {
            ExceptionProbe::CheckResource();
        } catch (BaseException const& e) {
            innerStack = BaseException::MostInnerBase(&e)->CallStack();
            throw;
        }
    });

    ASSERT_EQ(3u + innerStack.size(), records.size());
    EXPECT_EQ(Record(20, "'PreCondition open' in void CheckResource()", "src/lib/Check", 12), records[0]);
    EXPECT_EQ(Record(20, "  'Cannot open x' in void OpenResource()", "src/lib/Open", 30), records[1]);
    EXPECT_EQ(Record(50, "Stack trace:", MainFile, MainLine), records[2]);

    bool raiserFound = false;
    for (std::size_t i = 0; i < innerStack.size(); ++i) {
        auto const& frame = records[3 + i];
        EXPECT_EQ(50, frame.level);
        EXPECT_EQ(std::optional<std::string>(MainFile), frame.file);
        EXPECT_EQ(MainLine, frame.line);
        EXPECT_THAT(frame.message, StartsWith("  0x"));
        EXPECT_EQ(Printed(Symbol(innerStack[i]), "", ExceptionLogger::kFrameIndent), frame.message);
        raiserFound = raiserFound
            || frame.message.find(" lt_logging_tests Zar::Lt::Logging::ExceptionProbe::OpenResource() +0x")
                != std::string::npos;
    }
    EXPECT_TRUE(raiserFound) << "the frames are those of the innermost exception";
}

TEST(ExceptionLoggerTest, UnknownExceptionIsOneInvalidRecordAtTheCallersPlace)
{
    auto const records = LogCaught([] { throw 42; });
    EXPECT_EQ((std::vector<LogRecord> { Record(20, "Invalid exception", MainFile, MainLine) }), records);
}

TEST(ExceptionLoggerTest, EmptyExceptionPointerIsAnInvalidRecord)
{
    RecordingLogger logger;
    ExceptionLogger::LogStack(logger, std::exception_ptr(), MainFile, MainLine);
    EXPECT_EQ(
        (std::vector<LogRecord> { Record(20, "Invalid exception", MainFile, MainLine) }), logger.Records());
}

TEST(ExceptionLoggerTest, StandardExceptionIsItsTextWithoutStack)
{
    auto const records = LogCaught([] { throw std::runtime_error("boom"); });
    EXPECT_EQ((std::vector<LogRecord> { Record(20, "boom", MainFile, MainLine) }), records);
}

TEST(ExceptionLoggerTest, StandardExceptionWithBaseCauseLogsTheCauseButNoStack)
{
    auto const records = LogCaught([] { ThrowNested(std::runtime_error("outer"), MakeBase("inner", 5)); });
    EXPECT_EQ((std::vector<LogRecord> {
                  Record(20, "outer", MainFile, MainLine),
                  Record(20, "  'inner' in void Raise()", "src/Raise", 5),
              }),
        records);
}

TEST(ExceptionLoggerTest, StandardExceptionWithUnknownCause)
{
    auto const records = LogCaught([] { ThrowNested(std::runtime_error("outer"), 7); });
    EXPECT_EQ((std::vector<LogRecord> {
                  Record(20, "outer", MainFile, MainLine),
                  Record(20, "  Invalid exception", std::nullopt, 0),
              }),
        records);
}

TEST(ExceptionLoggerTest, UnknownCauseOfABaseExceptionIsIndentedAndTheStackIsItsOwn)
{
    std::size_t stackSize = 0;
    auto const records = LogCaught([&stackSize] {
        try {
            ThrowNested(MakeBase("outer", 1), 7);
        } catch (BaseException const& e) {
            stackSize = e.CallStack().size();
            throw;
        }
    });
    ASSERT_EQ(3u + stackSize, records.size());
    EXPECT_EQ(Record(20, "'outer' in void Raise()", "src/Raise", 1), records[0]);
    EXPECT_EQ(Record(20, "  Invalid exception", std::nullopt, 0), records[1]);
    EXPECT_EQ(Record(50, "Stack trace:", MainFile, MainLine), records[2]);
}

TEST(ExceptionLoggerTest, StandardCauseInTheMiddleIsWrittenPlainAndItsCauseDeeper)
{
    auto raise = [] {
        try {
            ThrowNested(std::runtime_error("middle"), 7);
        } catch (...) {
            std::throw_with_nested(MakeBase("top", 2));
        }
    };
    auto const records = LogCaught(raise);
    ASSERT_GE(records.size(), 4u);
    EXPECT_EQ(Record(20, "'top' in void Raise()", "src/Raise", 2), records[0]);
    EXPECT_EQ(Record(20, "  middle", std::nullopt, 0), records[1]);
    EXPECT_EQ(Record(20, "    Invalid exception", std::nullopt, 0), records[2]);
    EXPECT_EQ(Record(50, "Stack trace:", MainFile, MainLine), records[3]);
}

// Each level adds its own exception on the way up, so the outermost one is the last made.
void RaiseNestedChain(int depth)
{
    if (depth == 0)
        throw MakeBase("level 0", 0);
    try {
        RaiseNestedChain(depth - 1);
    } catch (...) {
        std::throw_with_nested(
            MakeBase(("level " + std::to_string(depth)).c_str(), static_cast<unsigned>(depth)));
    }
}

TEST(ExceptionLoggerTest, DeepCausesAreIndentedByAtMostSixtyFourBlanks)
{
    auto const records = LogCaught([] { RaiseNestedChain(40); });
    ASSERT_GT(records.size(), 42u);
    for (int cause = 0; cause <= 40; ++cause) {
        int const blanks = std::min(2 * cause, 64);
        std::string const expected = std::string(static_cast<std::size_t>(blanks), ' ') + "'level "
            + std::to_string(40 - cause) + "' in void Raise()";
        EXPECT_EQ(Record(20, expected, "src/Raise", static_cast<unsigned>(40 - cause)),
            records[static_cast<std::size_t>(cause)]);
    }
    EXPECT_EQ(Record(50, "Stack trace:", MainFile, MainLine), records[41]);
}

TEST(ExceptionLoggerTest, BaseExceptionOverloadLogsMessageAndStack)
{
    RecordingLogger logger;
    auto const exception = MakeBase("direct", 3);
    ExceptionLogger::LogStack(logger, exception, nullptr, 0);
    auto const records = logger.Records();
    ASSERT_EQ(2u + exception.CallStack().size(), records.size());
    EXPECT_EQ(Record(20, "'direct' in void Raise()", "src/Raise", 3), records[0]);
    EXPECT_EQ(Record(50, "Stack trace:", std::nullopt, 0), records[1]);
}

TEST(ExceptionLoggerTest, StandardExceptionOverloadLogsTheTextAtTheCallersPlace)
{
    RecordingLogger logger;
    ExceptionLogger::LogStack(logger, std::logic_error("logic"), "here", 9);
    EXPECT_EQ((std::vector<LogRecord> { Record(20, "logic", "here", 9) }), logger.Records());
}

TEST(ExceptionLoggerTest, LogOfABaseExceptionWithoutFunctionHasNoIn)
{
    RecordingLogger logger;
    ExceptionLogger::Log(logger, BaseException(SourceInfo { "", "f", 4 }, "m"), 0);
    ExceptionLogger::Log(logger, BaseException(SourceInfo {}, "n"), 3);
    EXPECT_EQ((std::vector<LogRecord> { Record(20, "'m'", "f", 4), Record(20, "   'n'", std::nullopt, 0) }),
        logger.Records());
}

TEST(ExceptionLoggerTest, LogOfAStandardExceptionHasNoPlace)
{
    RecordingLogger logger;
    ExceptionLogger::Log(logger, std::runtime_error("text"), 2);
    ExceptionLogger::Log(logger, std::runtime_error("wide"), 70);
    ExceptionLogger::Log(logger, std::runtime_error("none"), -2);
    EXPECT_EQ((std::vector<LogRecord> {
                  Record(20, "  text", std::nullopt, 0),
                  Record(20, std::string(64, ' ') + "wide", std::nullopt, 0),
                  Record(20, "none", std::nullopt, 0),
              }),
        logger.Records());
}

TEST(ExceptionLoggerTest, RecurseWithoutCauseLogsNothing)
{
    RecordingLogger logger;
    ExceptionLogger::RecurseLogStack(logger, std::runtime_error("alone"), 4);
    EXPECT_TRUE(logger.Records().empty());
}

TEST(ExceptionLoggerTest, RecurseStartsAtTheGivenIndent)
{
    RecordingLogger logger;
    try {
        ThrowNested(std::runtime_error("outer"), std::runtime_error("cause"));
    } catch (std::exception const& e) {
        ExceptionLogger::RecurseLogStack(logger, e, 6);
    }
    EXPECT_EQ((std::vector<LogRecord> { Record(20, "      cause", std::nullopt, 0) }), logger.Records());
}

TEST(ExceptionLoggerTest, CallStackLinesArePrintedFrames)
{
    RecordingLogger logger;
    ExceptionLogger::LogCallStack(
        logger, { "./packager(main+0x1c) [0x8a4]", "./packager [0x10]" }, "file", 3);
    EXPECT_EQ((std::vector<LogRecord> {
                  Record(50, "Stack trace:", "file", 3),
                  Record(50, "  0x8a4 packager main +0x1c", "file", 3),
                  Record(50, "  0x10  ./packager ", "file", 3),
              }),
        logger.Records());
}

TEST(ExceptionLoggerTest, EmptyCallStackIsOnlyTheHeading)
{
    RecordingLogger logger;
    ExceptionLogger::LogCallStack(logger, {}, nullptr, 0);
    EXPECT_EQ((std::vector<LogRecord> { Record(50, "Stack trace:", std::nullopt, 0) }), logger.Records());
}

TEST(ExceptionLoggerTest, PrintWritesIndentAddressLibrarySignatureOffsetAndSuffix)
{
    EXPECT_EQ("   0x8a4 packager main +0x1c!", Printed(Symbol("./packager(main+0x1c) [0x8a4]"), "!", 3));
    EXPECT_EQ("0x9a0 libzar.so Zar::Lt::Core::Crc16::Next(unsigned char) +0x2a",
        Printed(Symbol("/usr/lib/libzar.so(_ZN3Zar2Lt4Core5Crc164NextEh+0x2a) [0x9a0]"), "", 0));
}

TEST(ExceptionLoggerTest, PrintLeavesOutAnEmptySignatureAndAZeroOffset)
{
    EXPECT_EQ("0x2 lib", Printed(Symbol("lib(+0x0) [0x2]"), "", 0));
    EXPECT_EQ("0x0 ", Printed(Symbol(), "", 0));
}

TEST(ExceptionLoggerTest, PrintWritesANegativeOffsetAsItsMagnitudeAfterAMinus)
{
    EXPECT_EQ("0x1 lib go -0x1", Printed(Symbol("lib(go+0xffffffff) [0x1]"), "", 0));
    EXPECT_EQ("0x1 lib go -0x80000000", Printed(Symbol("lib(go+0x80000000) [0x1]"), "", 0));
}

TEST(ExceptionLoggerTest, PrintWithNegativeIndentHasNoBlanksAndTooLargeIsCapped)
{
    Symbol const symbol("lib(go+0x1) [0x1]");
    EXPECT_EQ("0x1 lib go +0x1", Printed(symbol, "", -5));
    EXPECT_EQ(std::string(64, ' ') + "0x1 lib go +0x1", Printed(symbol, "", 100));
}

TEST(ExceptionLoggerTest, PrintGivesTheStreamItsNumberFormatBack)
{
    std::ostringstream out;
    ExceptionLogger::Print(out, Symbol("lib(go+0x1) [0xff]"), ";", 0);
    out << 255;
    EXPECT_EQ("0xff lib go +0x1;255", out.str());
}

// A logger whose back end has failed.
class FailingLogger : public zar::logging::ILogger {
public:
    void Log(int, std::string const&, char const*, unsigned) override
    {
        throw std::runtime_error("disk full");
    }
};

TEST(ExceptionLoggerTest, FailureOfTheLoggerPassesToTheCaller)
{
    FailingLogger logger;
    auto const exception = MakeBase("x", 1);
    try {
        ExceptionLogger::LogStack(logger, std::make_exception_ptr(exception), MainFile, MainLine);
        FAIL() << "no exception";
    } catch (std::runtime_error const& e) {
        EXPECT_STREQ("disk full", e.what());
    }
    EXPECT_THROW(ExceptionLogger::LogStack(logger, std::make_exception_ptr(1), MainFile, MainLine),
        std::runtime_error);
}

// An exception that claims to nest a cause but was made outside any handler, so it holds none.
class EmptyNested : public std::exception, public std::nested_exception { };

TEST(ExceptionLoggerDeathTest, NestedExceptionWithoutCauseTerminatesAsTheStandardRethrowDoes)
{
    EXPECT_DEATH(
        {
            RecordingLogger logger;
            ExceptionLogger::LogStack(logger, EmptyNested(), MainFile, MainLine);
        },
        "");
}

} // namespace
} // namespace Zar::Lt::Logging

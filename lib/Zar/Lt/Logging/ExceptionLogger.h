#pragma once

#include "ILogger.h"
#include "Zar/Lt/Exceptions/BaseException.h"
#include "Zar/Lt/Exceptions/Symbol.h"

#include <exception>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace Zar::Lt::Logging {

// Writes a caught exception to a logger: its message, each nested cause one step deeper, and the
// call stack of the innermost BaseException of the chain, where the failure began. Exception lines
// are logged at ExceptionLevel and the stack at StackLevel.
class ExceptionLogger {
public:
    static constexpr int kExceptionLevel = 20;
    static constexpr int kStackLevel = 50;
    // How far the frame lines are indented below "Stack trace:".
    static constexpr int kFrameIndent = 2;

    ExceptionLogger() = delete;

    // `file` and `line` name the place that caught the exception.
    static void LogStack(
        zar::logging::ILogger& logger, std::exception_ptr const& exception, char const* file, unsigned line);
    static void LogStack(zar::logging::ILogger& logger, Exceptions::BaseException const& exception,
        char const* file, unsigned line);
    static void LogStack(
        zar::logging::ILogger& logger, std::exception const& exception, char const* file, unsigned line);

    static void Log(zar::logging::ILogger& logger, Exceptions::BaseException const& exception, int indent);
    static void Log(zar::logging::ILogger& logger, std::exception const& exception, int indent);

    // Logs the causes nested below `exception`, the first one at `indent`.
    static void RecurseLogStack(zar::logging::ILogger& logger, std::exception const& exception, int indent);

    static void LogCallStack(zar::logging::ILogger& logger, std::vector<std::string> const& callStack,
        char const* file, unsigned line);

    static void Print(
        std::ostream& out, Exceptions::Symbol const& symbol, std::string_view suffix, int indent);
};

} // namespace Zar::Lt::Logging

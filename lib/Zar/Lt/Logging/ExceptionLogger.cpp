#include "Zar/Lt/Logging/ExceptionLogger.h"

#include "Zar/Lt/Exceptions/StackInfo.h"
#include "Zar/Lt/Logging/Indentation.h"

#include <cstdint>
#include <sstream>

namespace Zar::Lt::Logging {

using Exceptions::BaseException;
using zar::logging::ILogger;

namespace {

std::string const InvalidException = "Invalid exception";

void LogInvalid(ILogger& logger, int indent, char const* file, unsigned line)
{
    logger.Log(ExceptionLogger::kExceptionLevel, std::string(Indentation::Of(indent)) + InvalidException,
        file, line);
}

// Logs the cause nested in `exception`, if any, at `indent` and its own causes below it. A
// std::nested_exception that holds no cause terminates the process, as std::rethrow_if_nested does.
void LogNestedCause(ILogger& logger, std::exception const& exception, int indent)
{
    try {
        std::rethrow_if_nested(exception);
    } catch (BaseException const& cause) {
        ExceptionLogger::Log(logger, cause, indent);
        ExceptionLogger::RecurseLogStack(logger, cause, indent + 2);
    } catch (std::exception const& cause) {
        ExceptionLogger::Log(logger, cause, indent);
        ExceptionLogger::RecurseLogStack(logger, cause, indent + 2);
    } catch (...) {
        LogInvalid(logger, indent, nullptr, 0);
    }
}

} // namespace

void ExceptionLogger::LogStack(
    ILogger& logger, std::exception_ptr const& exception, char const* file, unsigned line)
{
    // Rethrowing an empty pointer is undefined, so it is reported like an unknown exception.
    if (!exception) {
        LogInvalid(logger, 0, file, line);
        return;
    }
    try {
        std::rethrow_exception(exception);
    } catch (BaseException const& e) {
        LogStack(logger, e, file, line);
    } catch (std::exception const& e) {
        LogStack(logger, e, file, line);
    } catch (...) {
        LogInvalid(logger, 0, file, line);
    }
}

void ExceptionLogger::LogStack(
    ILogger& logger, BaseException const& exception, char const* file, unsigned line)
{
    Log(logger, exception, 0);
    LogNestedCause(logger, exception, 2);
    LogCallStack(logger, BaseException::MostInnerBase(&exception)->CallStack(), file, line);
}

void ExceptionLogger::LogStack(
    ILogger& logger, std::exception const& exception, char const* file, unsigned line)
{
    logger.Log(kExceptionLevel, exception.what(), file, line);
    LogNestedCause(logger, exception, 2);
}

void ExceptionLogger::Log(ILogger& logger, BaseException const& exception, int indent)
{
    std::ostringstream message;
    message << Indentation::Of(indent) << "'" << exception.what() << "'";
    auto const& source = exception.Source();
    if (source._function != nullptr && *source._function != '\0')
        message << " in " << source._function;
    logger.Log(kExceptionLevel, message.str(), source._file, source._line);
}

void ExceptionLogger::Log(ILogger& logger, std::exception const& exception, int indent)
{
    logger.Log(kExceptionLevel, std::string(Indentation::Of(indent)) + exception.what(), nullptr, 0);
}

void ExceptionLogger::RecurseLogStack(ILogger& logger, std::exception const& exception, int indent)
{
    LogNestedCause(logger, exception, indent);
}

void ExceptionLogger::LogCallStack(
    ILogger& logger, std::vector<std::string> const& callStack, char const* file, unsigned line)
{
    logger.Log(kStackLevel, "Stack trace:", file, line);
    for (auto const& symbol : Exceptions::StackInfo::Symbols(callStack, 0)) {
        std::ostringstream frame;
        Print(frame, symbol, "", kFrameIndent);
        logger.Log(kStackLevel, frame.str(), file, line);
    }
}

void ExceptionLogger::Print(
    std::ostream& out, Exceptions::Symbol const& symbol, std::string_view suffix, int indent)
{
    // The caller's stream is lent, so its number format is given back as it was.
    auto const flags = out.flags();
    out << Indentation::Of(indent) << "0x" << std::hex << symbol.Address() << " " << symbol.LibraryName();
    if (!symbol.Signature().empty())
        out << " " << symbol.Signature();
    // The magnitude is widened first so that the most negative offset has a positive counterpart.
    auto const offset = static_cast<int64_t>(symbol.Offset());
    if (offset > 0)
        out << " +0x" << offset;
    else if (offset < 0)
        out << " -0x" << -offset;
    out << suffix;
    out.flags(flags);
}

} // namespace Zar::Lt::Logging

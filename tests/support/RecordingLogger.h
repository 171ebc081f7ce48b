#pragma once

// A logging back end for tests: the logger keeps every record it receives, and the factory hands
// out that one logger for every name while remembering which names were asked for.
//
//   auto logger = std::make_shared<zar::logging::test::RecordingLogger>();
//   zar::logging::LoggingManager::SetFactory(std::make_unique<zar::logging::test::RecordingLoggerFactory>(logger));
//   ... code under test logs ...
//   EXPECT_EQ(20, logger->Records().at(0).level);

#include "ILogger.h"
#include "ILoggerFactory.h"
#include "INestedDiagnosticContext.h"

#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace zar::logging::test {

// One call of ILogger::Log; a null file is kept as "no file" so that tests can tell it from "".
struct LogRecord {
    int level = 0;
    std::string message;
    std::optional<std::string> file;
    unsigned line = 0;

    friend bool operator==(LogRecord const&, LogRecord const&) = default;

    // Lets GoogleTest show a record readably when an expectation fails.
    friend std::ostream& operator<<(std::ostream& out, LogRecord const& record)
    {
        return out << "{" << record.level << ", \"" << record.message << "\", "
                   << (record.file ? "\"" + *record.file + "\"" : std::string("null")) << ", " << record.line
                   << "}";
    }
};

class RecordingLogger : public ILogger {
public:
    void Log(int level, std::string const& message, char const* file, unsigned line) override
    {
        std::lock_guard lock(_mutex);
        _records.push_back({ level, message, file ? std::optional<std::string>(file) : std::nullopt, line });
    }

    std::vector<LogRecord> Records() const
    {
        std::lock_guard lock(_mutex);
        return _records;
    }

    void Clear()
    {
        std::lock_guard lock(_mutex);
        _records.clear();
    }

private:
    mutable std::mutex _mutex;
    std::vector<LogRecord> _records;
};

// A context with no behaviour, so that tests can check which context the registry hands out.
class RecordingContext : public INestedDiagnosticContext { };

class RecordingLoggerFactory : public ILoggerFactory {
public:
    explicit RecordingLoggerFactory(std::shared_ptr<RecordingLogger> logger)
        : _logger(std::move(logger))
    {
    }

    std::shared_ptr<ILogger> GetLogger(std::string const& name) override
    {
        std::lock_guard lock(_mutex);
        _requestedNames.push_back(name);
        return _logger;
    }

    INestedDiagnosticContext* GetNDC() override { return &_context; }

    std::vector<std::string> RequestedNames() const
    {
        std::lock_guard lock(_mutex);
        return _requestedNames;
    }

    RecordingContext* Context() { return &_context; }

private:
    mutable std::mutex _mutex;
    std::shared_ptr<RecordingLogger> _logger;
    std::vector<std::string> _requestedNames;
    RecordingContext _context;
};

} // namespace zar::logging::test

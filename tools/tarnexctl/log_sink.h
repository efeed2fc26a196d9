// Files that hold readings over days.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tools/tarnexctl/readings.h"

namespace tarnexctl {

/// A moment: the wall clock, which may be set meanwhile, and the monotonic clock.
struct Moment {
    std::int64_t utcMicroseconds; ///< since 1970
    double seconds;               ///< since the start of the program
};

/// Where and how the readings are taken.
struct LogHead {
    std::string title; ///< identity and resource of the supply
    double interval;   ///< s
};

/// A file that readings are added to. What Add and Event have returned from stays when the process is killed.
class LogSink {
  public:
    LogSink() = default;
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;
    virtual ~LogSink() = default;

    /// On failure: throws Failure with ExitCode::FileFailed; the earlier readings stay in the file.
    virtual void Add(const Moment& moment, const std::vector<Reading>& readings) = 0;

    /// Adds something that is not a reading: kind "start", "resume", "gap", "back" or "end", and a
    /// text.
    /// On failure: as Add.
    virtual void Event(const Moment& moment, const std::string& kind, const std::string& text) = 0;

    /// Notes that the log ended as its user wanted; a log without this was cut off.
    /// On failure: as Add.
    virtual void End(const Moment& moment) = 0;
};

/// Opens a log: an SQLite database when the name ends with .db, .sqlite or .sqlite3, else CSV. `resume` adds to an
/// existing file, after removing an incomplete last line; without it the file must not exist.
/// On failure: throws Failure.
std::unique_ptr<LogSink> OpenLog(const std::string& path, const LogHead& head, const Moment& now, bool resume);

/// The two kinds of files, for OpenLog. An existing file is added to.
std::unique_ptr<LogSink> OpenCsvLog(const std::string& path, const LogHead& head, const Moment& now);
std::unique_ptr<LogSink> OpenSqliteLog(const std::string& path, const LogHead& head, const Moment& now);

} // namespace tarnexctl

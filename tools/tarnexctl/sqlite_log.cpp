#include <sqlite3.h>

#include <unistd.h>

#include <array>
#include <climits>
#include <cstddef>

#include "tools/tarnexctl/log_sink.h"

namespace tarnexctl {

namespace {

constexpr int kBusyMilliseconds = 10000; // other programs may hold the database for a moment

constexpr auto kSchema = R"(
CREATE TABLE IF NOT EXISTS run(id INTEGER PRIMARY KEY, start_us INTEGER NOT NULL, end_us INTEGER, host TEXT NOT NULL,
                               version TEXT NOT NULL, title TEXT NOT NULL, interval_s REAL NOT NULL) STRICT;
CREATE TABLE IF NOT EXISTS sample(run INTEGER NOT NULL REFERENCES run, time_us INTEGER NOT NULL,
                                  monotonic_s REAL NOT NULL, channel TEXT NOT NULL, voltage REAL NOT NULL,
                                  current REAL NOT NULL, power REAL NOT NULL, output INTEGER NOT NULL, mode TEXT,
                                  PRIMARY KEY(run, monotonic_s, channel)) STRICT, WITHOUT ROWID;
CREATE TABLE IF NOT EXISTS event(run INTEGER NOT NULL REFERENCES run, time_us INTEGER NOT NULL,
                                 monotonic_s REAL NOT NULL, kind TEXT NOT NULL, text TEXT NOT NULL) STRICT;
PRAGMA user_version=1;
)";

using Database = std::unique_ptr<sqlite3, decltype(&::sqlite3_close)>;

/// A prepared statement. Each execution binds its parameters in order.
class Statement {
  public:
    Statement(sqlite3* database, const char* text) : statement_(nullptr, &::sqlite3_finalize) {
        sqlite3_stmt* statement = nullptr;
        ::sqlite3_prepare_v2(database, text, -1, &statement, nullptr); // an error returns from sqlite3_step again
        statement_.reset(statement);
    }

    /// Returns whether the statement was executed.
    template <typename... Values>
    bool Execute(const Values&... values) {
        int index = 0;
        (Bind(++index, values), ...);
        const int result = statement_ ? ::sqlite3_step(statement_.get()) : SQLITE_ERROR;
        ::sqlite3_reset(statement_.get());
        return result == SQLITE_DONE;
    }

  private:
    void Bind(int index, std::int64_t value) { ::sqlite3_bind_int64(statement_.get(), index, value); }
    void Bind(int index, double value) { ::sqlite3_bind_double(statement_.get(), index, value); }
    void Bind(int index, const std::string& value) {
        ::sqlite3_bind_text(statement_.get(), index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    void Bind(int index, std::nullptr_t) { ::sqlite3_bind_null(statement_.get(), index); }

    std::unique_ptr<sqlite3_stmt, decltype(&::sqlite3_finalize)> statement_;
};

/// Returns the name of this computer.
std::string HostName() {
    std::array<char, HOST_NAME_MAX + 1> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

class SqliteLog final : public LogSink {
  public:
    /// The database must have the schema.
    SqliteLog(std::string path, Database database)
        : path_(std::move(path)), database_(std::move(database)),
          sample_(database_.get(), "INSERT INTO sample VALUES(?, ?, ?, ?, ?, ?, ?, ?, ?)"),
          event_(database_.get(), "INSERT INTO event VALUES(?, ?, ?, ?, ?)") {}

    void StartRun(const LogHead& head, const Moment& now) {
        Statement run(database_.get(),
                      "INSERT INTO run(start_us, host, version, title, interval_s) VALUES(?, ?, ?, ?, ?)");
        Check(run.Execute(now.utcMicroseconds, HostName(), std::string(TARNEX_VERSION), head.title, head.interval));
        run_ = ::sqlite3_last_insert_rowid(database_.get());
    }

    void Add(const Moment& moment, const std::vector<Reading>& readings) override {
        bool added = Run("BEGIN");
        for (const auto& reading : readings) {
            const auto on = static_cast<std::int64_t>(reading.on);
            const auto add = [&](const auto& mode) {
                return sample_.Execute(run_, moment.utcMicroseconds, moment.seconds, reading.channel, reading.volts,
                                       reading.amperes, reading.watts, on, mode);
            };
            added = added && (reading.mode.empty() ? add(nullptr) : add(reading.mode));
        }
        if (!added || !Run("COMMIT")) {
            const std::string why = ::sqlite3_errmsg(database_.get());
            Run("ROLLBACK");
            throw Failed(why);
        }
    }

    void Event(const Moment& moment, const std::string& kind, const std::string& text) override {
        Check(event_.Execute(run_, moment.utcMicroseconds, moment.seconds, kind, text));
    }

    void End(const Moment& moment) override {
        Statement run(database_.get(), "UPDATE run SET end_us = ? WHERE id = ?");
        Check(run.Execute(moment.utcMicroseconds, run_));
    }

    bool Run(const char* commands) {
        return ::sqlite3_exec(database_.get(), commands, nullptr, nullptr, nullptr) == SQLITE_OK;
    }

    void Check(bool done) const {
        if (!done) {
            throw Failed(::sqlite3_errmsg(database_.get()));
        }
    }

  private:
    [[nodiscard]] Failure Failed(const std::string& why) const {
        return {ExitCode::FileFailed, path_ + " cannot be written: " + why};
    }

    std::string path_;
    Database database_;
    Statement sample_;
    Statement event_;
    std::int64_t run_ = 0;
};

} // namespace

std::unique_ptr<LogSink> OpenSqliteLog(const std::string& path, const LogHead& head, const Moment& now) {
    sqlite3* opened = nullptr;
    const int result = ::sqlite3_open(path.c_str(), &opened);
    Database database(opened, &::sqlite3_close);
    if (result != SQLITE_OK) {
        throw Failure(ExitCode::FileFailed, path + " cannot be written: " + ::sqlite3_errmsg(opened));
    }
    ::sqlite3_busy_timeout(opened, kBusyMilliseconds);
    // A log has the version of its schema, and an empty database has nothing.
    std::string answer;
    const auto ask = [](void* into, int /*columns*/, char** values, char** /*names*/) {
        *static_cast<std::string*>(into) += values[0];
        return 0;
    };
    const bool read = ::sqlite3_exec(opened,
                                     "SELECT user_version || ' ' || (SELECT count(*) FROM sqlite_schema) "
                                     "FROM pragma_user_version",
                                     ask, &answer, nullptr) == SQLITE_OK;
    if (read && answer != "0 0" && !answer.starts_with("1 ")) {
        throw Failure(ExitCode::FileFailed, path + " is not a log of tarnexctl");
    }
    // A commit reaches the disk before it returns (FULL), and readers of the file do not stop it (WAL).
    if (!read ||
        ::sqlite3_exec(opened, "PRAGMA journal_mode=WAL; PRAGMA synchronous=FULL;", nullptr, nullptr, nullptr) !=
            SQLITE_OK ||
        ::sqlite3_exec(opened, kSchema, nullptr, nullptr, nullptr) != SQLITE_OK) {
        throw Failure(ExitCode::FileFailed, path + " cannot be written: " + ::sqlite3_errmsg(opened));
    }
    auto log = std::make_unique<SqliteLog>(path, std::move(database));
    log->StartRun(head, now);
    return log;
}

} // namespace tarnexctl

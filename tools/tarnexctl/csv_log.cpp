#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

#ifndef _WIN32
#include <sys/file.h>
#endif

#include "tools/tarnexctl/log_sink.h"
#include "tools/tarnexctl/number_text.h"
#include "tools/tarnexctl/safe_text.h"

namespace tarnexctl {

namespace {

namespace fs = std::filesystem;

struct Close {
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the unique_ptr owns the file
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, Close>;

Failure CannotWrite(const std::string& path, int error) {
    return {ExitCode::FileFailed, path + " cannot be written: " + std::generic_category().message(error)};
}

/// Quotes a text as a CSV field.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : Printable(text)) {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return quoted + '"';
}

constexpr std::string_view kColumns = "time,monotonic_s,channel,voltage_V,current_A,power_W,output,mode,event,text\n";

/// Returns the size of an existing log without an incomplete last line, which the end of a process can leave.
/// On failure: throws Failure, also for a file that is not a log.
std::uintmax_t SizeOfWholeLines(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        throw Failure(ExitCode::FileFailed, path + " cannot be read");
    }
    std::uintmax_t size = 0;
    std::uintmax_t whole = 0;
    std::string head; // the first two lines: a comment and the columns
    int lines = 0;
    constexpr std::size_t kLongestHead = 4096;
    for (int c = std::getc(file.get()); c != EOF; c = std::getc(file.get())) {
        ++size;
        if (lines < 2 && head.size() < kLongestHead) {
            head += static_cast<char>(c);
        }
        if (c == '\n') {
            ++lines;
            whole = size;
        }
    }
    if (size != 0 && !(head.starts_with("# ") && head.ends_with(kColumns))) {
        throw Failure(ExitCode::FileFailed, path + " is not a log of tarnexctl");
    }
    return whole;
}

#ifndef _WIN32
/// Keeps other logs out of the file until it is closed.
void Reserve(const std::string& path, std::FILE* file) {
    if (::flock(::fileno(file), LOCK_EX | LOCK_NB) != 0) {
        throw Failure(ExitCode::FileFailed, path + ": another program writes into this log");
    }
}
#else
void Reserve(const std::string& /*path*/, std::FILE* /*file*/) {} // the share mode of fopen is the system's
#endif

class CsvLog final : public LogSink {
  public:
    CsvLog(std::string path, File file, std::uintmax_t size)
        : path_(std::move(path)), file_(std::move(file)), size_(size) {}

    void Add(const Moment& moment, const std::vector<Reading>& readings) override {
        std::string lines;
        for (const auto& reading : readings) {
            lines += Times(moment) + reading.channel + ',' + Fixed(reading.volts, 6) + ',' + Fixed(reading.amperes, 6) +
                     ',' + Fixed(reading.watts, 6) + ',' + (reading.on ? "on" : "off") + ',' + reading.mode + ",,\n";
        }
        Write(lines);
    }

    void Event(const Moment& moment, const std::string& kind, const std::string& text) override {
        Write(Times(moment) + ",,,,,," + kind + ',' + Quoted(text) + '\n');
    }

    void End(const Moment& moment) override { Event(moment, "end", ""); }

    void Write(const std::string& lines) {
        if (std::fwrite(lines.data(), 1, lines.size(), file_.get()) != lines.size() || std::fflush(file_.get()) != 0) {
            const int error = errno;
            file_.reset();
            std::error_code ignored;
            fs::resize_file(path_, size_, ignored); // without the part that did fit
            throw CannotWrite(path_, error);
        }
        size_ += lines.size();
    }

  private:
    static std::string Times(const Moment& moment) {
        return UtcText(moment.utcMicroseconds) + ',' + Fixed(moment.seconds, 3) + ',';
    }

    std::string path_;
    File file_;
    std::uintmax_t size_;
};

} // namespace

std::unique_ptr<LogSink> OpenCsvLog(const std::string& path, const LogHead& head, const Moment& now) {
    File file(std::fopen(path.c_str(), "ab"));
    if (!file) {
        throw CannotWrite(path, errno);
    }
    Reserve(path, file.get());
    const auto size = SizeOfWholeLines(path);
    std::error_code error;
    fs::resize_file(path, size, error);
    if (error) {
        throw Failure(ExitCode::FileFailed, path + " cannot be written: " + error.message());
    }
    auto log = std::make_unique<CsvLog>(path, std::move(file), size);
    if (size == 0) {
        log->Write("# " + Printable(head.title) + ", " + UtcText(now.utcMicroseconds) + ", every " +
                   Plain(head.interval) + " s\n" + std::string(kColumns));
    }
    return log;
}

} // namespace tarnexctl

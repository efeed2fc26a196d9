#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

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

Failure CannotWrite(const std::string& path) {
    return {ExitCode::FileFailed, path + " cannot be written: " + std::generic_category().message(errno)};
}

/// Quotes a text as a CSV field.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : Printable(text)) {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return quoted + '"';
}

/// Returns the size of the file without an incomplete last line, which the end of a process can leave.
std::uintmax_t SizeOfWholeLines(const std::string& path) {
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file) {
        throw Failure(ExitCode::FileFailed, path + " cannot be read");
    }
    std::uintmax_t size = 0;
    std::uintmax_t whole = 0;
    for (int c = std::getc(file.get()); c != EOF; c = std::getc(file.get())) {
        ++size;
        whole = c == '\n' ? size : whole;
    }
    return whole;
}

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

    void Write(const std::string& lines) {
        if (std::fwrite(lines.data(), 1, lines.size(), file_.get()) != lines.size() || std::fflush(file_.get()) != 0) {
            const auto failure = CannotWrite(path_);
            file_.reset();
            std::error_code ignored;
            fs::resize_file(path_, size_, ignored); // without the part that did fit
            throw failure;
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
    std::error_code error;
    const bool exists = fs::exists(path, error);
    std::uintmax_t size = 0;
    if (exists) {
        size = SizeOfWholeLines(path);
        fs::resize_file(path, size, error);
        if (error) {
            throw Failure(ExitCode::FileFailed, path + " cannot be written: " + error.message());
        }
    }
    File file(std::fopen(path.c_str(), exists ? "ab" : "wbx"));
    if (!file) {
        throw CannotWrite(path);
    }
    auto log = std::make_unique<CsvLog>(path, std::move(file), size);
    if (size == 0) {
        log->Write("# " + Printable(head.title) + ", " + UtcText(now.utcMicroseconds) + ", every " +
                   Plain(head.interval) + " s\n" +
                   "time,monotonic_s,channel,voltage_V,current_A,power_W,output,mode,event,text\n");
    }
    return log;
}

} // namespace tarnexctl

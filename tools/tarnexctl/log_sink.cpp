#include "tools/tarnexctl/log_sink.h"

#include <filesystem>

namespace tarnexctl {

std::unique_ptr<LogSink> OpenLog(const std::string& path, const LogHead& head, const Moment& now, bool resume) {
    std::error_code error;
    if (!resume && std::filesystem::exists(path, error)) {
        throw Failure(ExitCode::FileFailed, path + " exists; --resume adds to it");
    }
    if (std::filesystem::exists(path, error) && !std::filesystem::is_regular_file(path, error)) {
        throw Failure(ExitCode::FileFailed, path + " is not a file");
    }
    for (const auto* const end : {".db", ".sqlite", ".sqlite3"}) {
        if (path.ends_with(end)) {
#ifdef _WIN32
            throw Failure(ExitCode::Usage,
                          path + ": there are no SQLite logs on Windows; give a name that ends with .csv");
#else
            return OpenSqliteLog(path, head, now);
#endif
        }
    }
    return OpenCsvLog(path, head, now);
}

} // namespace tarnexctl

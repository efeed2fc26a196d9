#include "runtime/config_server/store_location.h"

#include <cstdlib>
#include <filesystem>
#include <mutex>

#include "text/characters.h"

namespace runtime {

namespace {

constexpr std::string_view kStoreFile = "ivi/IviConfigurationStore.xml";

// The calls of getenv are safe: this library does not change the environment.
std::string_view Environment(const char* name) {
    return text::ViewOf(std::getenv(name)); // NOLINT(concurrency-mt-unsafe)
}

/// Returns empty text when the environment does not define a home directory.
std::filesystem::path UserLocation() {
    const std::filesystem::path config(Environment("XDG_CONFIG_HOME"));
    if (config.is_absolute()) { // the XDG base directory rules ignore relative paths
        return config / kStoreFile;
    }
    const auto home = Environment("HOME");
    return home.empty() ? std::filesystem::path() : std::filesystem::path(home) / ".config" / kStoreFile;
}

struct ProcessDefault {
    std::mutex mutex;
    std::string location;
};

ProcessDefault processDefault;

} // namespace

bool FileExists(const std::string& path) {
    std::error_code error;
    return std::filesystem::status(path, error).type() != std::filesystem::file_type::not_found;
}

std::string MasterLocation() {
    if (const auto named = Environment("IVI_CONFIG_STORE"); !named.empty()) {
        return std::string(named);
    }
    const auto user = UserLocation().string();
    const auto system = (std::filesystem::path("/etc") / kStoreFile).string();
    const bool useSystem = user.empty() || (!FileExists(user) && FileExists(system));
    return useSystem ? system : user;
}

std::string ProcessDefaultLocation() {
    const std::lock_guard lock(processDefault.mutex);
    return processDefault.location;
}

void SetProcessDefaultLocation(std::string_view location) {
    const std::lock_guard lock(processDefault.mutex);
    processDefault.location = location;
}

} // namespace runtime

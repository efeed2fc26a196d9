// The locations of the configuration store.
#pragma once

#include <string>
#include <string_view>

namespace runtime {

/// Returns the path of the master store by the rules in platform/config_server.h, evaluated in every call.
std::string MasterLocation();

/// Returns whether something exists at the path, readable or not: an unreadable store is reported, not ignored.
bool FileExists(const std::string& path);

/// The process-default location; empty when none is set. Process-wide.
std::string ProcessDefaultLocation();
void SetProcessDefaultLocation(std::string_view location);

} // namespace runtime

// Where the configuration store of this system and of this process is.
#pragma once

#include <string>
#include <string_view>

namespace runtime {

/// The master store's file name; see platform/config_server.h for how it is found. Looked up anew by every call.
std::string MasterLocation();

/// Whatever is there, readable or not: what cannot be read is to be reported, not passed over.
bool FileExists(const std::string& path);

/// Empty when none is set. Process-wide.
std::string ProcessDefaultLocation();
void SetProcessDefaultLocation(std::string_view location);

} // namespace runtime

// The supply that a user names, and the reason why it cannot be opened.
#pragma once

#include <string>

namespace tarnexctl {

/// Completes a short form of a resource string: "/dev/ttyUSB0", "host:5025", or a host that has a dot, brackets or the
/// name localhost, with port 5025. Other texts, such as resource strings and logical names, stay as they are.
std::string CompleteResource(const std::string& given);

/// Returns the socket resource at the usual port of a word that can be the name of a host, such as "supply-3"; empty
/// for every other text. Such a word can be a logical name of the configuration store as well, which comes first.
std::string HostResource(const std::string& given);

/// Says in one sentence why `resource` cannot be opened, as far as this computer can find out within `seconds`; else
/// returns an empty text.
std::string ExplainFailure(const std::string& resource, double seconds);

} // namespace tarnexctl

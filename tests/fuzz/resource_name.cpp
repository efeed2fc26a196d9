// Resource strings of any bytes: what is accepted can be opened.
#include "runtime/visa/resource_name.h"

#include "tests/fuzz/byte_source.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ByteSource source(data, size);
    const auto text = source.Rest();
    const auto name = runtime::ParseResourceName(text);
    if (!name) {
        return 0;
    }
    fuzz::Require(name->interface != runtime::Interface::kSocket || (name->port != 0 && !name->host.empty()),
                  "a socket has host and port");
    fuzz::Require(name->interface != runtime::Interface::kSerial || !name->device.empty(),
                  "a serial line has a device");
    fuzz::Require(name->host.size() + name->device.size() <= text.size(), "nothing is made up");
    return 0;
}

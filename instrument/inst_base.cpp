#include "instrument/inst_base.h"

#include <cstdio>
#include <utility>

#include "text/numbers.h"

namespace ORVA {

InstBase::InstBase(std::shared_ptr<OpenVisa::VisaIO> connection, std::shared_ptr<Identity> identity)
    : connection_(std::move(connection)), identity_(std::move(identity)) {}

// Both primitives hold a reference to the connection, so that it exists until the end of the exchange.

ViStatus InstBase::Write(std::string_view line) {
    const auto connection = connection_;
    return connection ? connection->write(line) : VI_ERROR_INV_OBJECT;
}

ViStatus InstBase::Query(std::string_view line, std::string& reply) {
    const auto connection = connection_;
    if (!connection) {
        return VI_ERROR_INV_OBJECT;
    }
    const auto status = connection->write(line);
    return status < 0 ? status : connection->read(reply);
}

void InstBase::AnnounceFields(std::size_t expected) {
    const text::IntegerText count(static_cast<std::int64_t>(expected));
    // A closed or full standard output does not fail a query.
    static_cast<void>(std::fwrite(count.View().data(), 1, count.View().size(), stdout));
}

} // namespace ORVA

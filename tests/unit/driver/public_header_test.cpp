// The public header's status codes against those that the driver returns, name by name: the compiler checks them.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "driver/attribute_table.h"
#include "include/TARNEX.h"
#include "status/status.h"

namespace {

struct PublicStatus {
    const char* name;
    ViStatus inHeader;
    ViStatus inDriver;
};

#define SAME_STATUS(prefix, name)                                                                                      \
    PublicStatus { #name, TARNEX_##name, prefix##name }
constexpr std::array kPublicStatuses{
    SAME_STATUS(DRIVER_, ERROR_IO),
    SAME_STATUS(DRIVER_, ERROR_IO_TIMEOUT),
    SAME_STATUS(IVI_, ERROR_CANNOT_RECOVER),
    SAME_STATUS(IVI_, ERROR_INSTRUMENT_STATUS),
    SAME_STATUS(IVI_, ERROR_CANNOT_OPEN_FILE),
    SAME_STATUS(IVI_, ERROR_READING_FILE),
    SAME_STATUS(IVI_, ERROR_WRITING_FILE),
    SAME_STATUS(IVI_, ERROR_INVALID_PATHNAME),
    SAME_STATUS(IVI_, ERROR_INVALID_ATTRIBUTE),
    SAME_STATUS(IVI_, ERROR_ATTR_NOT_WRITABLE),
    SAME_STATUS(IVI_, ERROR_ATTR_NOT_READABLE),
    SAME_STATUS(IVI_, ERROR_INVALID_VALUE),
    SAME_STATUS(IVI_, ERROR_FUNCTION_NOT_SUPPORTED),
    SAME_STATUS(IVI_, ERROR_ATTRIBUTE_NOT_SUPPORTED),
    SAME_STATUS(IVI_, ERROR_VALUE_NOT_SUPPORTED),
    SAME_STATUS(IVI_, ERROR_TYPES_DO_NOT_MATCH),
    SAME_STATUS(IVI_, ERROR_NOT_INITIALIZED),
    SAME_STATUS(IVI_, ERROR_UNKNOWN_CHANNEL_NAME),
    SAME_STATUS(IVI_, ERROR_TOO_MANY_OPEN_FILES),
    SAME_STATUS(IVI_, ERROR_CHANNEL_NAME_REQUIRED),
    SAME_STATUS(IVI_, ERROR_MISSING_OPTION_NAME),
    SAME_STATUS(IVI_, ERROR_MISSING_OPTION_VALUE),
    SAME_STATUS(IVI_, ERROR_BAD_OPTION_NAME),
    SAME_STATUS(IVI_, ERROR_BAD_OPTION_VALUE),
    SAME_STATUS(IVI_, ERROR_OUT_OF_MEMORY),
    SAME_STATUS(IVI_, ERROR_OPERATION_PENDING),
    SAME_STATUS(IVI_, ERROR_NULL_POINTER),
    SAME_STATUS(IVI_, ERROR_UNEXPECTED_RESPONSE),
    SAME_STATUS(IVI_, ERROR_FILE_NOT_FOUND),
    SAME_STATUS(IVI_, ERROR_INVALID_FILE_FORMAT),
    SAME_STATUS(IVI_, ERROR_STATUS_NOT_AVAILABLE),
    SAME_STATUS(IVI_, ERROR_ID_QUERY_FAILED),
    SAME_STATUS(IVI_, ERROR_RESET_FAILED),
    SAME_STATUS(IVI_, ERROR_RESOURCE_UNKNOWN),
    SAME_STATUS(IVI_, ERROR_ALREADY_INITIALIZED),
    SAME_STATUS(IVI_, ERROR_CANNOT_CHANGE_SIMULATION_STATE),
    SAME_STATUS(IVI_, ERROR_INVALID_NUMBER_OF_LEVELS_IN_SELECTOR),
    SAME_STATUS(IVI_, ERROR_INVALID_RANGE_IN_SELECTOR),
    SAME_STATUS(IVI_, ERROR_UNKNOWN_NAME_IN_SELECTOR),
    SAME_STATUS(IVI_, ERROR_BADLY_FORMED_SELECTOR),
    SAME_STATUS(IVI_, ERROR_UNKNOWN_PHYSICAL_IDENTIFIER),
    SAME_STATUS(IVI_, ERROR_INVALID_SESSION_HANDLE),
    SAME_STATUS(DRIVER_, ERROR_NOT_SUPPORTED),
    SAME_STATUS(DRIVER_, ERROR_INVALID_PARAMETER),
    SAME_STATUS(IVIDCPWR_, ERROR_TRIGGER_NOT_SOFTWARE),
    SAME_STATUS(IVI_, WARN_NSUP_ID_QUERY),
    SAME_STATUS(IVI_, WARN_NSUP_RESET),
    SAME_STATUS(IVI_, WARN_NSUP_SELF_TEST),
    SAME_STATUS(IVI_, WARN_NSUP_ERROR_QUERY),
    SAME_STATUS(IVI_, WARN_NSUP_REV_QUERY),
};
#undef SAME_STATUS

constexpr bool IsSame(const PublicStatus& status) { return status.inHeader == status.inDriver; }
static_assert(std::all_of(kPublicStatuses.begin(), kPublicStatuses.end(), IsSame));

TEST(PublicHeader, DefinesEveryStatusThatTheDriverDeclares) {
#define DECLARED_STATUS(name, code, message) ViStatus{name},
    constexpr std::array kDeclared{TARNEX_STATUSES(DECLARED_STATUS)};
#undef DECLARED_STATUS
    for (const auto declared : kDeclared) {
        EXPECT_TRUE(std::any_of(kPublicStatuses.begin(), kPublicStatuses.end(),
                                [=](const PublicStatus& status) { return status.inHeader == declared; }))
            << std::hex << static_cast<std::uint32_t>(declared);
    }
}

TEST(PublicHeader, DefinesNoStatusThatHasNoMessage) {
    for (const auto& status : kPublicStatuses) {
        EXPECT_FALSE(nrt2::MessageOf(status.inHeader).empty()) << status.name;
    }
}

TEST(AttributeTable, IsInAscendingOrder) {
    const auto rows = tarnex::Attributes().Rows();
    for (std::size_t i = 1; i < rows.size(); ++i) {
        EXPECT_LT(rows[i - 1].Id(), rows[i].Id());
    }
}

} // namespace

#include "tests/contract/driver_fixture.h"

#include <array>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

namespace contract {

const void* ExportedAddress(const char* name) {
#ifdef _WIN32
    return reinterpret_cast<const void*>(GetProcAddress(GetModuleHandleA("TARNEX_64.dll"), name));
#else
    return dlsym(RTLD_DEFAULT, name);
#endif
}

DriverTest::DriverTest() {
    doubles::TheScript().Reset();
    doubles::TheSessionService().Reset();
    doubles::TheConfigServer().Reset();
    doubles::TheVisa().Reset();
}

DriverTest::~DriverTest() {
    doubles::TheScript().Reset();
    for (const auto vi : opened_) {
        TARNEX_close(vi); // a test may have closed it already
    }
    EXPECT_EQ(doubles::TheVisa().OpenSessions(), 0U) << "VISA sessions were left open";
    EXPECT_EQ(doubles::TheConfigServer().OpenHandles(), 0U) << "configuration handles were left open";
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0) << "a session lock was left behind";
}

Status DriverTest::TryOpen(const char* optionString, ViSession* vi, ViBoolean idQuery, ViBoolean reset,
                           const char* resource) {
    ViSession opened = 0xFFFFFFFF;
    const auto status = TARNEX_InitWithOptions(const_cast<ViRsrc>(resource), idQuery, reset, optionString, &opened);
    if (opened != VI_NULL) {
        opened_.push_back(opened);
    }
    if (vi != nullptr) {
        *vi = opened;
    }
    return Status(status);
}

ViSession DriverTest::OpenOn(const char* resource, const char* optionString) {
    ViSession vi = VI_NULL;
    const auto status = TryOpen(optionString, &vi, VI_FALSE, VI_FALSE, resource);
    EXPECT_GE(static_cast<ViStatus>(status.code), 0) << testing::PrintToString(status);
    EXPECT_NE(vi, 0U);
    doubles::TheScript().ForgetCalls();
    doubles::TheVisa().ForgetWritten();
    doubles::TheVisa().ForgetSettings();
    doubles::TheSessionService().ForgetRecorded();
    return vi;
}

ViSession DriverTest::Open(const char* optionString) { return OpenOn(kUsbResource, optionString); }

DriverError DriverTest::LastError(ViSession vi) {
    ViStatus code = VI_SUCCESS;
    std::array<ViChar, 1024> description{};
    TARNEX_GetError(vi, &code, static_cast<ViInt32>(description.size()), description.data());
    return {Status(code), description.data()};
}

std::vector<std::string> DriverTest::TakeWritten() {
    auto written = doubles::TheVisa().Written();
    doubles::TheVisa().ForgetWritten();
    return written;
}

} // namespace contract

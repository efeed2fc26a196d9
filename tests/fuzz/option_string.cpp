// Option strings of any bytes: opening ends in a status, and leaves nothing behind when it fails.
#include "include/TARNEX.h"
#include "tests/doubles/config_server_double.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/doubles/visa_double.h"
#include "tests/fuzz/byte_source.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ByteSource source(data, size);
    doubles::TheScript().Reset();
    doubles::TheSessionService().Reset();
    doubles::TheConfigServer().Reset();
    doubles::TheVisa().Reset();
    doubles::TheVisa().Reply("*ESR?", "0\n");
    const auto how = source.Byte();
    const std::string text = source.Rest();
    if ((how & 1U) != 0) { // the store's text goes through the same parser
        doubles::Store store;
        store.driverSession.emplace().driverSetup = text.substr(0, 1000);
        doubles::TheConfigServer().Use(store);
    }
    char resource[] = "USB0::0x1234::0x5678::SN42::INSTR";
    ViSession vi = 7;
    const auto status = TARNEX_InitWithOptions(resource, (how & 2U) != 0 ? VI_TRUE : VI_FALSE, VI_FALSE,
                                               (how & 1U) != 0 ? "" : text.c_str(), &vi);
    fuzz::Require((vi != VI_NULL) == (status >= 0), "a handle exactly when opening succeeds");
    if (status < 0) {
        ViChar description[1024];
        ViStatus recorded = VI_SUCCESS;
        TARNEX_GetError(VI_NULL, &recorded, sizeof description, description);
        fuzz::Require(recorded == status, "the failure is recorded");
    } else {
        fuzz::Require(TARNEX_close(vi) >= 0, "a session closes");
    }
    fuzz::Require(doubles::TheVisa().OpenSessions() == 0, "no VISA session is left");
    fuzz::Require(doubles::TheConfigServer().OpenHandles() == 0, "no configuration handle is left");
    return 0;
}

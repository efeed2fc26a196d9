// Makes a function's call N times over a VISA that does nothing, for a tool that counts instructions: what a second N
// adds is the cost of the calls alone.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "include/TARNEX.h"

namespace {

constexpr const char* kChannel = "OutputChannel1";

struct Function {
    const char* name;
    ViStatus (*call)(ViSession vi);
};

constexpr std::array kFunctions{
    Function{"ConfigureVoltageLevel", [](ViSession vi) { return TARNEX_ConfigureVoltageLevel(vi, kChannel, 3.3); }},
    Function{"Measure",
             [](ViSession vi) {
                 ViReal64 level = 0.0;
                 return TARNEX_Measure(vi, kChannel, TARNEX_VAL_MEASURE_VOLTAGE, &level);
             }},
    Function{"SetAttributeViReal64",
             [](ViSession vi) { return TARNEX_SetAttributeViReal64(vi, kChannel, TARNEX_ATTR_VOLTAGE_LEVEL, 3.3); }},
    Function{"GetAttributeViReal64",
             [](ViSession vi) {
                 ViReal64 level = 0.0;
                 return TARNEX_GetAttributeViReal64(vi, kChannel, TARNEX_ATTR_VOLTAGE_LEVEL, &level);
             }},
};

} // namespace

int main(int argc, char** argv) {
    int calls = 0;
    const auto* function = std::find_if(kFunctions.begin(), kFunctions.end(), [&](const Function& known) {
        return argc == 3 && std::strcmp(known.name, argv[1]) == 0;
    });
    if (function == kFunctions.end() ||
        std::from_chars(argv[2], argv[2] + std::strlen(argv[2]), calls).ec != std::errc()) {
        std::fputs("usage: steady_calls FUNCTION COUNT\n", stderr);
        return 2;
    }
    setenv("IVI_CONFIG_STORE", "/nonexistent/store.xml", 1); // there is one thread
    char resource[] = "TCPIP0::192.0.2.7::5025::SOCKET";
    ViSession vi = VI_NULL;
    if (TARNEX_init(resource, VI_FALSE, VI_FALSE, &vi) < 0) {
        std::fputs("steady_calls: no session\n", stderr);
        return 1;
    }
    for (int call = 0; call < calls; ++call) {
        if (function->call(vi) < 0) {
            std::fprintf(stderr, "steady_calls: %s failed\n", argv[1]);
            return 1;
        }
    }
    return TARNEX_close(vi) < 0 ? 1 : 0;
}

// Closes sessions at the end of the process: in the destructor of a global object that is older than the driver's own
// objects, and in an exit handler.
#include <cstdlib>
#include <string>

#include "include/TARNEX.h"

namespace {

ViSession Open() {
    std::string resource;
    ViSession vi = VI_NULL;
    if (TARNEX_InitWithOptions(resource.data(), VI_FALSE, VI_FALSE, "Simulate=1", &vi) < 0) {
        std::_Exit(3);
    }
    return vi;
}

void CloseOrFail(ViSession vi, int code) {
    if (TARNEX_ConfigureVoltageLevel(vi, "OutputChannel1", 1.0) < 0 || TARNEX_close(vi) < 0) {
        std::_Exit(code);
    }
}

struct ClosesItsSession {
    ClosesItsSession() = default;
    ClosesItsSession(const ClosesItsSession&) = delete;
    ClosesItsSession& operator=(const ClosesItsSession&) = delete;
    ~ClosesItsSession() { CloseOrFail(session, 4); }
    ViSession session = VI_NULL;
} global;

ViSession closedByHandler = VI_NULL;

} // namespace

int main() {
    if (std::atexit([] { CloseOrFail(closedByHandler, 5); }) != 0) {
        return 6;
    }
    global.session = Open();
    closedByHandler = Open();
    const auto leftOpen = Open();
    return TARNEX_ConfigureVoltageLevel(leftOpen, "OutputChannel1", 1.0);
}

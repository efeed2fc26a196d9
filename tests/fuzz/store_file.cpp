// Configuration stores of any bytes, read by the built-in server for a session that is opened: a session or a recorded
// status.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "include/TARNEX.h"
#include "tests/fuzz/byte_source.h"

namespace {

/// A file in memory: on a disk, writing it again and again would take more time than all else.
class Store {
  public:
    Store() : file_(memfd_create("store", MFD_CLOEXEC)) {
        fuzz::Require(file_ >= 0, "there is a file in memory");
        const auto path = "/proc/self/fd/" + std::to_string(file_);
        setenv("IVI_CONFIG_STORE", path.c_str(), 1); // NOLINT(concurrency-mt-unsafe): there is one thread
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store() { close(file_); }

    void Write(const std::uint8_t* data, std::size_t size) const {
        fuzz::Require(ftruncate(file_, 0) == 0 && pwrite(file_, data, size, 0) == static_cast<ssize_t>(size),
                      "the store can be written");
    }

  private:
    int file_;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Store store;
    store.Write(data, size);
    TARNEX_ClearError(VI_NULL);
    char resource[] = "";
    ViSession vi = 7;
    // The option string wins over the store: no instrument is looked for.
    const auto status = TARNEX_InitWithOptions(resource, VI_FALSE, VI_FALSE, "Simulate=1,InterchangeCheck=0", &vi);
    fuzz::Require((vi != VI_NULL) == (status >= 0), "a handle exactly when opening succeeds");
    if (status < 0) {
        ViChar description[1024];
        ViStatus recorded = VI_SUCCESS;
        TARNEX_GetError(VI_NULL, &recorded, sizeof description, description);
        fuzz::Require(recorded == status && description[0] != '\0', "the failure is recorded and described");
        return 0;
    }
    for (const auto* selector : {"OutputChannel1", "Rails", "CH1", "CH2000000000"}) { // virtual names of the corpus
        TARNEX_ConfigureVoltageLevel(vi, selector, 1.0);
    }
    fuzz::Require(TARNEX_close(vi) >= 0, "a session closes");
    return 0;
}

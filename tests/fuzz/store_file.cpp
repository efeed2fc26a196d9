// Configuration stores of any bytes, read by the built-in server for a session that is opened: a session or a recorded
// status.
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "include/TARNEX.h"
#include "tests/fuzz/byte_source.h"

namespace {

/// A file of this process that goes with it.
class Store {
  public:
    Store() {
        char path[] = "/tmp/tarnex-fuzz-XXXXXX";
        const int file = mkstemp(path);
        fuzz::Require(file >= 0, "there is a scratch file");
        close(file);
        path_ = path;
        setenv("IVI_CONFIG_STORE", path, 1); // NOLINT(concurrency-mt-unsafe): there is one thread
    }
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;
    ~Store() { unlink(path_.c_str()); }

    void Write(const std::uint8_t* data, std::size_t size) const {
        std::ofstream file(path_, std::ios::binary);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
        fuzz::Require(file.flush().good(), "the store can be written");
    }

  private:
    std::string path_;
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

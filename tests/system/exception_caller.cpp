// A program that catches the exception of the driver for a reply that is not a number. It may have a C++ runtime of its
// own.
//
// Usage: exception_caller RESOURCE, of a supply that garbles its second and third reply. Exits with 0 on success.
#include <TARNEX.h>

#include <chrono>
#include <cstring>
#include <exception>
#include <future>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace {

int failures = 0;

void Expect(bool condition, const char* what) {
    std::cout << (condition ? "  " : "!! ") << what << '\n';
    failures += condition ? 0 : 1;
}

/// Sets a flag when the stack is unwound through its frame.
struct Unwound {
    explicit Unwound(bool& flag) : flag_(flag) {}
    Unwound(const Unwound&) = delete;
    Unwound& operator=(const Unwound&) = delete;
    ~Unwound() { flag_ = true; }

  private:
    bool& flag_;
};

ViStatus MeasureInAFrameOfItsOwn(ViSession supply, bool& unwound) {
    const Unwound frame(unwound);
    ViReal64 volts = 0.0;
    return TARNEX_Measure(supply, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts);
}

/// Returns whether another thread can lock the session. Exits with 1 when the lock stays taken for `kGuard`.
bool AnotherThreadLocks(ViSession supply) {
    constexpr std::chrono::seconds kGuard{20};
    std::promise<ViStatus> promise;
    auto locked = promise.get_future();
    std::thread other([&promise, supply] {
        const auto status = TARNEX_LockSession(supply, nullptr);
        if (status >= VI_SUCCESS) {
            TARNEX_UnlockSession(supply, nullptr);
        }
        promise.set_value(status);
    });
    if (locked.wait_for(kGuard) != std::future_status::ready) {
        std::cout << "!! another thread waits for the session's lock" << std::endl;
        std::_Exit(1);
    }
    other.join();
    return locked.get() >= VI_SUCCESS;
}

} // namespace

int main(int argc, char* argv[]) {
    ViSession supply = VI_NULL;
    TARNEX_ClearError(VI_NULL);
    if (argc != 2 || TARNEX_init(argv[1], VI_FALSE, VI_FALSE, &supply) < VI_SUCCESS) {
        std::cout << "!! no session\n";
        return 2;
    }

    bool caught = false;
    bool unwound = false;
    try {
        MeasureInAFrameOfItsOwn(supply, unwound);
    } catch (...) {
        caught = true;
        Expect(unwound, "unwinds the caller's frames");
        Expect(AnotherThreadLocks(supply), "another thread can lock the session while the exception is handled");
    }
    Expect(caught, "catch (...) catches");
    Expect(AnotherThreadLocks(supply), "another thread can lock the session afterwards");

    caught = false;
    try {
        MeasureInAFrameOfItsOwn(supply, unwound);
    } catch (const std::invalid_argument& error) {
        caught = std::strcmp(error.what(), "invalid stod argument") == 0;
    } catch (...) {
        Expect(false, "a typed handler is preferred");
    }
    Expect(caught, "catch (const std::invalid_argument&) catches, with its text");
    Expect(AnotherThreadLocks(supply), "another thread can lock the session after that");

    ViReal64 volts = -1.0;
    Expect(TARNEX_Measure(supply, "OutputChannel1", TARNEX_VAL_MEASURE_VOLTAGE, &volts) >= VI_SUCCESS && volts == 0.0,
           "the session measures again");
    Expect(TARNEX_close(supply) >= VI_SUCCESS, "the session closes");
    return failures == 0 ? 0 : 1;
}

// Sequences of the exported functions with arguments, replies and platform failures of a fuzzer's choice: every call
// ends in a status or in one of the documented exceptions, and no resource is left open at the end.
#include <array>
#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "include/TARNEX.h"
#include "tests/doubles/config_server_double.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"
#include "tests/doubles/visa_double.h"
#include "tests/fuzz/byte_source.h"

namespace {

class Play {
  public:
    explicit Play(fuzz::ByteSource& source) : source_(source) {}

    void Run() {
        for (int step = 0; step < 64 && !source_.Empty(); ++step) {
            try {
                Step();
            } catch (const std::invalid_argument&) {
            } catch (const std::out_of_range&) {
            }
        }
        doubles::TheScript().Reset();
        for (const auto& [vi, locks] : sessions_) {
            for (int lock = 0; lock < locks; ++lock) {
                TARNEX_UnlockSession(vi, nullptr);
            }
            fuzz::Require(TARNEX_close(vi) >= 0, "an open session closes");
        }
        fuzz::Require(doubles::TheVisa().OpenSessions() == 0, "no VISA session is left");
        fuzz::Require(doubles::TheConfigServer().OpenHandles() == 0, "no configuration handle is left");
        fuzz::Require(doubles::TheSessionService().LocksHeld() == 0, "no lock is left");
    }

  private:
    void Step() {
        const auto vi = Handle();
        auto* const text = text_.data();
        const auto size = source_.Bits<ViInt16>() % 8192;
        switch (source_.Below(44)) {
        case 0:
            return Open();
        case 1:
            return Close(vi);
        case 2:
            return FailNext();
        case 3:
            return doubles::TheVisa().Reply(Query(), source_.Text());
        case 4:
            return doubles::TheVisa().ReplyToAll(source_.Text());
        case 5:
            TARNEX_reset(vi);
            break;
        case 6:
            TARNEX_ResetWithDefaults(vi);
            break;
        case 7:
            TARNEX_self_test(vi, Maybe(&short_), Maybe(text));
            break;
        case 8:
            TARNEX_error_query(vi, Maybe(&integer_), Maybe(text));
            break;
        case 9:
            TARNEX_error_message(vi, source_.Bits<ViStatus>(), Maybe(text));
            break;
        case 10:
            TARNEX_revision_query(vi, Maybe(text), Maybe(other_.data()));
            break;
        case 11:
            TARNEX_Disable(vi);
            break;
        case 12:
            TARNEX_InvalidateAllAttributes(vi);
            break;
        case 13:
            Lock(vi);
            break;
        case 14:
            Unlock(vi);
            break;
        case 15:
            TARNEX_GetError(vi, Maybe(&status_), size, text);
            break;
        case 16:
            TARNEX_ClearError(vi);
            break;
        case 17:
            TARNEX_GetAttributeViInt32(vi, Channel(), Attribute(), Maybe(&integer_));
            break;
        case 18:
            TARNEX_GetAttributeViReal64(vi, Channel(), Attribute(), Maybe(&real_));
            break;
        case 19:
            TARNEX_GetAttributeViBoolean(vi, Channel(), Attribute(), Maybe(&boolean_));
            break;
        case 20:
            TARNEX_GetAttributeViSession(vi, Channel(), Attribute(), Maybe(&session_));
            break;
        case 21:
            TARNEX_GetAttributeViString(vi, Channel(), Attribute(), size, Maybe(text));
            break;
        case 22:
            TARNEX_SetAttributeViInt32(vi, Channel(), Attribute(), source_.Bits<ViInt32>());
            break;
        case 23:
            TARNEX_SetAttributeViReal64(vi, Channel(), Attribute(), Real());
            break;
        case 24:
            TARNEX_SetAttributeViBoolean(vi, Channel(), Attribute(), source_.Byte());
            break;
        case 25:
            TARNEX_SetAttributeViSession(vi, Channel(), Attribute(), vi);
            break;
        case 26:
            TARNEX_SetAttributeViString(vi, Channel(), Attribute(), Text());
            break;
        case 27:
            TARNEX_ConfigureOutputEnabled(vi, Channel(), source_.Byte());
            break;
        case 28:
            TARNEX_ConfigureVoltageLevel(vi, Channel(), Real());
            break;
        case 29:
            TARNEX_ConfigureCurrentLimit(vi, Channel(), source_.Byte(), Real());
            break;
        case 30:
            TARNEX_ConfigureOVP(vi, Channel(), source_.Byte(), Real());
            break;
        case 31:
            TARNEX_ConfigureOutputRange(vi, Channel(), source_.Byte(), Real());
            break;
        case 32:
            TARNEX_ResetOutputProtection(vi, Channel());
            break;
        case 33:
            TARNEX_GetChannelName(vi, source_.Bits<ViInt32>() % 5, size, Maybe(text));
            break;
        case 34:
            TARNEX_QueryMaxCurrentLimit(vi, Channel(), Real(), Maybe(&real_));
            break;
        case 35:
            TARNEX_QueryMaxVoltageLevel(vi, Channel(), Real(), Maybe(&real_));
            break;
        case 36:
            TARNEX_QueryOutputState(vi, Channel(), source_.Byte() % 7, Maybe(&boolean_));
            break;
        case 37:
            TARNEX_Measure(vi, Channel(), source_.Byte() % 4, Maybe(&real_));
            break;
        case 38:
            return UseStore();
        default:
            return Open();
        }
    }

    void Open() {
        static constexpr std::array kResources{"USB0::0x1234::0x5678::SN42::INSTR", "TCPIP0::192.0.2.7::5025::SOCKET",
                                               "ASRL1::INSTR", "", "nothing"};
        std::string resource = kResources.at(source_.Below(kResources.size()));
        const auto idQuery = static_cast<ViBoolean>(source_.Byte() % 3);
        const auto reset = static_cast<ViBoolean>(source_.Byte() % 3);
        static constexpr std::array kOptions{"", "Simulate=1", "QueryInstrStatus=1", "Simulate=1,QueryInstrStatus=1"};
        const auto chosen = source_.Below(kOptions.size() + 1);
        const auto options = chosen < kOptions.size() ? kOptions.at(chosen) : source_.Text();
        ViSession vi = VI_NULL;
        if (sessions_.size() < 8 &&
            TARNEX_InitWithOptions(source_.Byte() == 1 ? nullptr : resource.data(), idQuery, reset, options.c_str(),
                                   source_.Byte() == 1 ? nullptr : &vi) < 0 &&
            vi == VI_NULL) {
            return;
        }
        if (vi != VI_NULL) {
            sessions_[vi] = 0;
        }
    }

    void Close(ViSession vi) {
        lastClosed_ = vi;
        TARNEX_close(vi);
        // A failed close may leave the handle open. The status of a later call shows whether it did.
        doubles::TheScript().Reset();
        const auto known = sessions_.find(vi);
        ViInt32 count = 0;
        if (known != sessions_.end() && TARNEX_GetAttributeViInt32(vi, "", TARNEX_ATTR_CHANNEL_COUNT, &count) < 0) {
            // When the service could not dispose of the handle, it still has the caller's own locks, which the driver
            // cannot release.
            for (int lock = 0; lock < known->second; ++lock) {
                IviSession_Unlock(vi, nullptr);
            }
            sessions_.erase(known);
        }
    }

    void Lock(ViSession vi) {
        const auto known = sessions_.find(vi);
        if (TARNEX_LockSession(vi, nullptr) >= 0 && known != sessions_.end()) {
            ++known->second;
        }
    }
    void Unlock(ViSession vi) {
        const auto known = sessions_.find(vi);
        if (known != sessions_.end() && known->second > 0) {
            doubles::TheScript().Reset();
            --known->second;
            TARNEX_UnlockSession(vi, nullptr);
        }
    }

    void FailNext() {
        static constexpr std::array<std::uint32_t, 6> kErrors{0xBFFF0015, 0xBFFF003E, 0xBFFA1190,
                                                              0xBFFA1203, 0xBFFA1207, 0xBFFA1222};
        static constexpr std::array<std::uint32_t, 2> kWarnings{0x3FFF0005, 0x3FFF0088};
        // One at a time: a service that fails to dispose of a handle and then fails to clear it as well leaves the
        // driver no way to make the handle harmless.
        doubles::TheScript().Reset();
        // The other platform functions never succeed without writing their output.
        static constexpr std::array kMayWarn{"viRead", "viWrite", "viSetAttribute", "viSetBuf", "viClose"};
        if (source_.Flag()) {
            const auto status = kErrors.at(source_.Below(kErrors.size()));
            doubles::TheScript().FailCall(source_.Below(64) + 1, static_cast<ViStatus>(status));
        } else {
            const auto* const function = kMayWarn.at(source_.Below(kMayWarn.size()));
            const auto status = kWarnings.at(source_.Below(kWarnings.size()));
            doubles::TheScript().Fail(function, static_cast<ViStatus>(status), source_.Below(8) + 1);
        }
    }

    void UseStore() {
        doubles::Store store;
        if (source_.Flag()) {
            auto& session = store.driverSession.emplace();
            session.driverSetup = source_.Text();
            session.virtualNames = {{source_.Text(), source_.Text(), {}},
                                    {"CH", "OutputChannel", {{source_.Bits<ViInt32>(), source_.Bits<ViInt32>(), 1}}}};
            for (auto& flag : session.flags) {
                flag = source_.Byte() % 3;
            }
        }
        doubles::TheConfigServer().Use(store);
    }

    ViSession Handle() {
        if (sessions_.empty() || source_.Below(16) == 0) {
            // A handle that is closed, zero or never issued. No caller gets the handle of a failed creation, which the
            // driver leaves with the service.
            return source_.Flag() ? lastClosed_ : source_.Bits<ViSession>() | 0x40000000U;
        }
        return std::next(sessions_.begin(), static_cast<std::ptrdiff_t>(source_.Below(sessions_.size())))->first;
    }
    const char* Channel() {
        static constexpr std::array kChannels{"OutputChannel1",
                                              "OutputChannel2",
                                              "OutputChannel1,OutputChannel2",
                                              "OutputChannel1-OutputChannel2",
                                              "CH1",
                                              ""};
        const auto chosen = source_.Below(kChannels.size() + 2);
        if (chosen == kChannels.size()) {
            return nullptr;
        }
        return chosen < kChannels.size() ? kChannels.at(chosen) : Text();
    }
    const char* Text() { return (argument_ = source_.Text()).c_str(); }
    ViAttr Attribute() {
        static constexpr std::array<ViAttr, 12> kAttributes{TARNEX_ATTR_QUERY_INSTRUMENT_STATUS,
                                                            TARNEX_ATTR_SIMULATE,
                                                            TARNEX_ATTR_CHANNEL_COUNT,
                                                            TARNEX_ATTR_INSTRUMENT_MODEL,
                                                            TARNEX_ATTR_LOGICAL_NAME,
                                                            TARNEX_ATTR_VOLTAGE_LEVEL,
                                                            TARNEX_ATTR_OVP_ENABLED,
                                                            TARNEX_ATTR_OVP_LIMIT,
                                                            TARNEX_ATTR_CURRENT_LIMIT_BEHAVIOR,
                                                            TARNEX_ATTR_CURRENT_LIMIT,
                                                            TARNEX_ATTR_OUTPUT_ENABLED,
                                                            TARNEX_ATTR_DRIVER_SETUP};
        const auto chosen = source_.Below(kAttributes.size() + 1);
        return chosen < kAttributes.size() ? kAttributes.at(chosen) : source_.Bits<ViAttr>();
    }
    ViReal64 Real() { return source_.Flag() ? source_.Bits<ViReal64>() : source_.Byte() * 0.1; }
    const char* Query() {
        static constexpr std::array kQueries{"*IDN?",        "*ESR?",           ":SOUR1:VOLT?",
                                             ":SOUR1:CURR?", ":OUTP:STAT? CH1", ":SYSTem:ERRor?"};
        return kQueries.at(source_.Below(kQueries.size()));
    }
    /// Null now and then.
    template <typename T>
    T* Maybe(T* pointer) {
        return source_.Below(16) == 0 ? nullptr : pointer;
    }

    fuzz::ByteSource& source_;
    std::map<ViSession, int> sessions_; // how often each is locked
    ViSession lastClosed_ = VI_NULL;
    std::string argument_;
    std::array<ViChar, 8192> text_{};
    std::array<ViChar, 8192> other_{};
    ViInt16 short_ = 0;
    ViInt32 integer_ = 0;
    ViReal64 real_ = 0.0;
    ViBoolean boolean_ = VI_FALSE;
    ViSession session_ = VI_NULL;
    ViStatus status_ = VI_SUCCESS;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    doubles::TheScript().Reset();
    doubles::TheSessionService().Reset();
    doubles::TheConfigServer().Reset();
    doubles::TheVisa().Reset();
    fuzz::ByteSource source(data, size);
    Play(source).Run();
    return 0;
}

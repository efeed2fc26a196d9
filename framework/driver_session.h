// The object behind a session handle: its settings, its configuration and its life cycle.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "framework/error_info.h"
#include "framework/value_cache.h"
#include "framework/virtual_names.h"
#include "platform/config_server.h"
#include "text/option_string.h"

namespace nrt2 {

/// The identity of a driver, common to all its sessions.
struct DriverIdentity {
    std::string_view prefix; ///< also the name that is looked up in the configuration store
    std::string_view vendor;
    std::string_view description;
    std::string_view revision;
    std::string_view groupCapabilities;
    std::string_view supportedModels; ///< separated by commas
    std::string_view defaultSimulationModel;
    bool checksInterchangeability = false;
    std::uint64_t sessionTag = 0; ///< identifies the sessions of this driver among those of all drivers
};

/// A session's handle, with the recording of errors on it.
class IoSession {
  public:
    explicit IoSession(ViSession handle) : handle_(handle) {}
    IoSession(const IoSession&) = delete;
    IoSession& operator=(const IoSession&) = delete;
    virtual ~IoSession() = default;

    [[nodiscard]] ViSession Handle() const { return handle_; }

    template <typename... Arguments>
    ViStatus Record(ViStatus status, const Arguments&... arguments) const {
        return SetErrorInfo(handle_, status, arguments...);
    }
    template <typename... Arguments>
    ViStatus RecordElab(ViStatus status, std::string_view elaboration, const Arguments&... arguments) const {
        return SetErrorInfoElab(handle_, status, elaboration, arguments...);
    }
    /// Records a negative status with its message alone. Returns `status`, or the status of a failed recording.
    ViStatus RecordIfError(ViStatus status) const { return status < 0 ? Record(status) : status; }

  private:
    ViSession handle_;
};

/// The names of a repeated capability in one session. Sessions with names form a linked list.
struct RepCapNames {
    bool ready = false;
    std::vector<std::string> physicalNames;
    ViSession session = VI_NULL;
    RepCapNames* next = nullptr;
};

class DriverSession;

/// The target of a session's data pointer in the session service. A plain C struct, so that another module can
/// recognise a session of this driver before it uses anything else of it.
struct SessionAnchor {
    std::uint64_t tag;      ///< DriverIdentity::sessionTag
    const void* extension;  ///< the driver's own interface for other modules, null without one
    DriverSession* session; ///< for the driver's own frames only
};

/// The base class of a driver's session. The driver implements the operations that reach its instrument.
/// A negative status of a virtual operation has been recorded on the session, unless the operation says otherwise.
class DriverSession : public IoSession {
  public:
    DriverSession(ViSession handle, const DriverIdentity& driver) : IoSession(handle), driver_(driver) {}

    /// Returns what the session service's data pointer has to point to.
    [[nodiscard]] SessionAnchor* Anchor() { return &anchor_; }

    /// Resolves configuration and options, connects and identifies the instrument. Disconnects when a later step fails.
    ViStatus Initialize(std::string resourceName, bool idQuery, bool reset, std::string optionString);
    ViStatus Close() { return CloseIO(); }

    [[nodiscard]] const DriverIdentity& Driver() const { return driver_; }
    [[nodiscard]] const text::InherentOptions& Flags() const { return flags_; }
    /// The flags at the end of the resolution of configuration and options.
    [[nodiscard]] const text::InherentOptions& InitialFlags() const { return initialFlags_; }
    void SetQueryInstrumentStatus(bool on) { flags_.queryInstrumentStatus = on; }
    void SetSimulate(bool on) { flags_.simulate = on; }

    [[nodiscard]] bool IdQueryRequested() const { return idQuery_; }
    [[nodiscard]] bool ResetRequested() const { return reset_; }
    [[nodiscard]] const std::string& GivenOptionString() const { return optionString_; }
    [[nodiscard]] const std::string& ResourceName() const { return resourceName_; }
    /// The resource name if the configuration store has a driver session for this driver, else empty.
    [[nodiscard]] const std::string& LogicalName() const { return logicalName_; }
    [[nodiscard]] const std::string& IoResourceDescriptor() const { return ioResourceDescriptor_; }
    [[nodiscard]] const std::string& DriverSetup() const { return driverSetup_; }
    [[nodiscard]] const std::string& ModelOverride() const { return modelOverride_; }

    [[nodiscard]] const std::string& InstrumentManufacturer() const { return instrumentManufacturer_; }
    [[nodiscard]] const std::string& InstrumentModel() const { return instrumentModel_; }
    [[nodiscard]] const std::string& InstrumentSerialNumber() const { return instrumentSerialNumber_; }
    [[nodiscard]] const std::string& InstrumentFirmwareRevision() const { return instrumentFirmwareRevision_; }
    [[nodiscard]] bool ModelIsSupported() const;

    [[nodiscard]] const VirtualNames& Virtuals() const { return virtualNames_; }
    [[nodiscard]] RepCapNames& RepCap() { return repCapNames_; }
    [[nodiscard]] ValueCaches& Caches() { return caches_; }
    void InvalidateAllAttributes() { caches_.Clear(); }

    /// Reads the instrument's event status register when status checking is on and the session is not simulated.
    virtual ViStatus CheckStatus() = 0;

    /// Resets the instrument. A negative status has not been recorded.
    virtual ViStatus ResetInstrument() = 0;

  protected:
    void SetExtension(const void* extension) { anchor_.extension = extension; }

    /// Creates the instrument object and opens the connection to the resource.
    virtual ViStatus InitializeIO() = 0;
    virtual ViStatus CloseIO() = 0;
    /// Prepares the instrument's status registers for CheckStatus.
    virtual ViStatus ClearStatus() = 0;
    virtual ViStatus QueryIdentity(std::string& manufacturer, std::string& model, std::string& serialNumber,
                                   std::string& firmwareRevision) = 0;

    /// Applies one pair of the DriverSetup text. Called for every occurrence of a name, including a repetition that is
    /// then refused.
    virtual ViStatus ProcessDriverSetupOption(std::string_view name, std::string_view value);

  private:
    // --- Option string (driver_session_options.cpp)
    ViStatus ParseOptionString(std::string_view options);
    ViStatus ParseDriverSetup(std::string setup);
    ViStatus ParseInherentOptions(std::string_view inherent);
    ViStatus ParseBooleanOption(std::string_view value, bool& flag) const;

    // --- Configuration store (driver_session_store.cpp)
    ViStatus ResolveResource();
    ViStatus ResolveFromStore(IviConfigHandle store);
    ViStatus ApplyDriverSession(IviConfigHandle session);
    ViStatus LoadVirtualNames(IviConfigHandle session);
    ViStatus LoadVirtualName(IviConfigHandle names, ViInt32 index);
    ViStatus LoadVirtualRange(IviConfigHandle ranges, ViInt32 index, const std::string& name, const std::string& mapTo);
    ViStatus LoadPhysicalNames(IviConfigHandle softwareModule);
    ViStatus LoadInitialSettings(IviConfigHandle component);
    ViStatus LoadInitialSetting(IviConfigHandle items, ViInt32 index);
    void ApplyModelSetting();
    /// Records a negative status of the configuration server with the server's own error text.
    [[nodiscard]] ViStatus RecordStoreError(ViStatus status) const;
    template <typename Read>
    ViStatus ReadStoreText(Read read, IviConfigHandle handle, ViInt32 id, std::string& value) const;

    const DriverIdentity& driver_;
    SessionAnchor anchor_{driver_.sessionTag, nullptr, this};
    bool idQuery_ = false;
    bool reset_ = false;
    text::InherentOptions flags_;
    text::InherentOptions initialFlags_;
    std::string optionString_;
    std::string resourceName_;
    std::string logicalName_;
    std::string ioResourceDescriptor_;
    std::string driverSetup_;
    std::string modelOverride_;
    std::string instrumentManufacturer_;
    std::string instrumentModel_;
    std::string instrumentSerialNumber_;
    std::string instrumentFirmwareRevision_;
    std::map<std::string, std::string, std::less<>> driverSetupOptions_;
    std::map<std::string, std::string, std::less<>> stringSettings_;
    std::vector<std::pair<std::string, std::string>> physicalNames_; // name and repeated capability, as configured
    VirtualNames virtualNames_;
    RepCapNames repCapNames_;
    ValueCaches caches_;
};

} // namespace nrt2

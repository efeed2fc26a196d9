// A configuration server with a store that the test defines as data.
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/config_server.h"
#include "tests/doubles/script.h"

namespace doubles {

struct StoredVirtualRange {
    ViInt32 minimum;
    ViInt32 maximum;
    ViInt32 startingIndex;
};

struct StoredVirtualName {
    std::string name;
    std::string mapTo;
    std::vector<StoredVirtualRange> ranges;
};

struct StoredPhysicalName {
    std::string name;
    std::string capability;
};

struct StoredSetting {
    std::string name;
    std::string type; ///< "String", "Integer", "Real", "Boolean"
    std::variant<std::string, ViInt32, ViReal64, ViBoolean> value;
};

using StoredSettings = std::optional<std::vector<StoredSetting>>;

struct StoredModule {
    std::vector<StoredPhysicalName> physicalNames;
    StoredSettings initialSettings;
};

struct StoredDriverSession {
    std::string resource = "TCPIP0::store.example::5025::SOCKET";
    std::array<ViBoolean, 6> flags{}; ///< properties 4 to 9
    std::string driverSetup;
    std::vector<StoredVirtualName> virtualNames;
    StoredSettings initialSettings;
};

/// What the server finds under the name "TARNEX".
struct Store {
    std::string processDefaultLocation;
    std::string masterLocation = "/store/master.xml";
    std::optional<StoredDriverSession> driverSession;
    std::optional<StoredModule> module;
};

class ConfigServer {
  public:
    void Reset();
    void Use(Store store);

    /// Handles that are open, including that of the store.
    [[nodiscard]] std::size_t OpenHandles() const;
    /// Handles that were opened since the reset or the last call of this function, including that of the store.
    std::size_t TakeCountOfHandles();
    /// The calls whose arguments tests check, in order: "Deserialize /store/master.xml".
    [[nodiscard]] std::vector<std::string> Details() const;
    /// The text that GetError gives.
    void SetErrorText(std::string text);

    // The objects of handles: pointers into the current store.
    struct TheStore {};
    struct Modules {};
    struct Asset {
        const StoredDriverSession* session;
    };
    template <typename T>
    struct Collection {
        const std::vector<T>* items;
    };
    struct Components {
        const StoredSettings* settings;
    };
    struct Structure {
        const std::vector<StoredSetting>* settings;
    };
    using Object =
        std::variant<TheStore, Modules, Asset, Components, Structure, Collection<StoredVirtualName>,
                     Collection<StoredVirtualRange>, Collection<StoredPhysicalName>, Collection<StoredSetting>,
                     const StoredModule*, const StoredDriverSession*, const StoredVirtualName*,
                     const StoredVirtualRange*, const StoredPhysicalName*, const StoredSetting*>;

    ViStatus GiveOut(Object object, IviConfigHandle* handle);
    ViStatus TakeBack(IviConfigHandle handle);
    [[nodiscard]] const Object* Find(IviConfigHandle handle) const;
    [[nodiscard]] const Store& InUse() const { return store_; }
    [[nodiscard]] const std::string& ErrorText() const { return errorText_; }
    void AddDetail(std::string detail);

  private:
    mutable std::mutex mutex_;
    Store store_;
    std::string errorText_;
    std::vector<std::string> details_;
    std::map<std::size_t, Object> objects_;
    std::size_t next_ = 1;
    std::size_t givenOut_ = 0;
};

ConfigServer& TheConfigServer();

} // namespace doubles

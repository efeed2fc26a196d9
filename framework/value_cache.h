// The cached attribute values of a session, by attribute and repeated-capability name. No accessor fills a cache today.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "platform/vi_types.h"

namespace nrt2 {

template <typename T>
class ValueCache {
  public:
    void Store(ViAttr attribute, std::string_view repCapName, T value) {
        values_[attribute].insert_or_assign(std::string(repCapName), Entry{std::move(value), true});
    }

    /// Returns null when there is no valid value.
    [[nodiscard]] const T* Find(ViAttr attribute, std::string_view repCapName) const {
        const auto names = values_.find(attribute);
        if (names == values_.end()) {
            return nullptr;
        }
        const auto entry = names->second.find(repCapName);
        return entry == names->second.end() || !entry->second.valid ? nullptr : &entry->second.value;
    }

    void Invalidate(ViAttr attribute, bool all, std::string_view repCapName) {
        if (all) {
            values_.erase(attribute);
            return;
        }
        const auto names = values_.find(attribute);
        if (names == values_.end()) {
            return;
        }
        if (const auto entry = names->second.find(repCapName); entry != names->second.end()) {
            entry->second.valid = false;
        }
    }

    void Clear() { values_.clear(); }

  private:
    struct Entry {
        T value;
        bool valid;
    };
    std::map<ViAttr, std::map<std::string, Entry, std::less<>>> values_;
};

/// One cache for each type of attributes.
class ValueCaches {
  public:
    /// Returns the cache of the attributes of type T. Texts are cached by value.
    template <typename T>
    auto& Of() {
        return std::get<ValueCache<std::conditional_t<std::is_same_v<T, ViString>, std::string, T>>>(caches_);
    }

    void Clear() {
        std::apply([](auto&... cache) { (cache.Clear(), ...); }, caches_);
    }

  private:
    std::tuple<ValueCache<ViInt32>, ValueCache<ViReal64>, ValueCache<ViBoolean>, ValueCache<ViSession>,
               ValueCache<std::string>>
        caches_;
};

} // namespace nrt2

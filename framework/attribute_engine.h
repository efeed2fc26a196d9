// Typed access to attributes through one table. The engine finds the row, checks type and direction and calls the row's
// accessor. The accessor takes the session's lock; the engine takes none.
#pragma once

#include <algorithm>
#include <span>
#include <string_view>
#include <variant>

#include "platform/vi_types.h"

namespace nrt2 {

class DriverSession;

template <typename T>
struct Accessors {
    using Getter = ViStatus (*)(ViSession vi, ViConstString repCapName, T* value);
    using Setter = ViStatus (*)(ViSession vi, ViConstString repCapName, T value);
    Getter get;
    Setter set;
};

template <>
struct Accessors<ViString> {
    using Getter = ViStatus (*)(ViSession vi, ViConstString repCapName, ViInt32 bufferSize, ViChar value[]);
    using Setter = ViStatus (*)(ViSession vi, ViConstString repCapName, ViConstString value);
    Getter get;
    Setter set;
};

/// One attribute: write-only without a getter, read-only without a setter.
class AttributeInfo {
  public:
    template <typename T>
    constexpr AttributeInfo(ViAttr id, std::string_view name, Accessors<T> accessors)
        : id_(id), name_(name), accessors_(accessors) {}

    [[nodiscard]] constexpr ViAttr Id() const { return id_; }
    [[nodiscard]] constexpr std::string_view Name() const { return name_; }
    [[nodiscard]] std::string_view TypeName() const;

    /// Invalidates the value that `session` caches for one name, or removes the cached values of all names.
    void Invalidate(DriverSession& session, bool all, std::string_view repCapName) const;

    /// Returns null when the attribute has another type.
    template <typename T>
    [[nodiscard]] const Accessors<T>* AccessorsOf() const {
        return std::get_if<Accessors<T>>(&accessors_);
    }

  private:
    ViAttr id_;
    std::string_view name_;
    std::variant<Accessors<ViInt32>, Accessors<ViReal64>, Accessors<ViBoolean>, Accessors<ViSession>,
                 Accessors<ViString>>
        accessors_;
};

/// Whether the identifiers of the rows ascend and none occurs twice.
constexpr bool AreAscending(std::span<const AttributeInfo> rows) {
    return std::adjacent_find(rows.begin(), rows.end(), [](const AttributeInfo& row, const AttributeInfo& next) {
               return row.Id() >= next.Id();
           }) == rows.end();
}

/// Returns "ViInt32", "ViReal64", "ViBoolean", "ViSession" or "ViString".
template <typename T>
std::string_view TypeNameOf();

class AttributeEngine {
  public:
    /// `rows` must be in ascending order of their identifiers and must outlive the engine.
    constexpr explicit AttributeEngine(std::span<const AttributeInfo> rows) : rows_(rows) {}

    [[nodiscard]] std::span<const AttributeInfo> Rows() const { return rows_; }

    /// Checks `value` for null first; the description then names `function`, the export.
    template <typename T>
    ViStatus Get(std::string_view function, ViSession vi, ViConstString repCapName, ViAttr attribute, T* value) const;

    template <typename T>
    ViStatus Set(ViSession vi, ViConstString repCapName, ViAttr attribute, T value) const;

    ViStatus GetString(ViSession vi, ViConstString repCapName, ViAttr attribute, ViInt32 bufferSize,
                       ViChar value[]) const;
    ViStatus SetString(ViSession vi, ViConstString repCapName, ViAttr attribute, ViConstString value) const;

  private:
    [[nodiscard]] const AttributeInfo* Find(ViAttr attribute) const;

    /// Returns the accessors of `attribute` for the caller's type; null after recording the failure in `status`.
    template <typename T>
    const Accessors<T>* FindTyped(std::string_view direction, ViSession vi, ViAttr attribute, ViStatus& status) const;

    template <typename T>
    ViStatus FindGetter(ViSession vi, ViAttr attribute, typename Accessors<T>::Getter& getter) const;
    template <typename T>
    ViStatus FindSetter(ViSession vi, ViAttr attribute, typename Accessors<T>::Setter& setter) const;

    std::span<const AttributeInfo> rows_;
};

} // namespace nrt2

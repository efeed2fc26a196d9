#include "framework/attribute_engine.h"

#include <algorithm>

#include "framework/driver_session.h"
#include "framework/error_info.h"
#include "framework/string_buffer.h"
#include "text/numbers.h"

namespace nrt2 {

template <>
std::string_view TypeNameOf<ViInt32>() {
    return "ViInt32";
}
template <>
std::string_view TypeNameOf<ViReal64>() {
    return "ViReal64";
}
template <>
std::string_view TypeNameOf<ViBoolean>() {
    return "ViBoolean";
}
template <>
std::string_view TypeNameOf<ViSession>() {
    return "ViSession";
}
template <>
std::string_view TypeNameOf<ViString>() {
    return "ViString";
}

namespace {

template <typename T>
std::string_view TypeNameOfAccessors(const Accessors<T>& /*accessors*/) {
    return TypeNameOf<T>();
}

template <typename T>
auto& CacheOf(DriverSession& session, const Accessors<T>& /*accessors*/) {
    return session.Caches().Of<T>();
}

} // namespace

std::string_view AttributeInfo::TypeName() const {
    return std::visit([](const auto& accessors) { return TypeNameOfAccessors(accessors); }, accessors_);
}

void AttributeInfo::Invalidate(DriverSession& session, bool all, std::string_view repCapName) const {
    std::visit([&](const auto& accessors) { CacheOf(session, accessors).Invalidate(id_, all, repCapName); },
               accessors_);
}

const AttributeInfo* AttributeEngine::Find(ViAttr attribute) const {
    const auto row = std::lower_bound(rows_.begin(), rows_.end(), attribute,
                                      [](const AttributeInfo& info, ViAttr id) { return info.Id() < id; });
    return row != rows_.end() && row->Id() == attribute ? &*row : nullptr;
}

template <typename T>
const Accessors<T>* AttributeEngine::FindTyped(std::string_view direction, ViSession vi, ViAttr attribute,
                                               ViStatus& status) const {
    const auto* info = Find(attribute);
    if (info == nullptr) {
        status = SetErrorInfo(vi, IVI_ERROR_INVALID_ATTRIBUTE, text::IntegerText(attribute).View());
        return nullptr;
    }
    const auto* accessors = info->AccessorsOf<T>();
    if (accessors == nullptr) {
        status =
            SetErrorInfo(vi, IVI_ERROR_TYPES_DO_NOT_MATCH, direction, TypeNameOf<T>(), info->Name(), info->TypeName());
    }
    return accessors;
}

template <typename T>
ViStatus AttributeEngine::FindGetter(ViSession vi, ViAttr attribute, typename Accessors<T>::Getter& getter) const {
    ViStatus status = VI_SUCCESS;
    const auto* accessors = FindTyped<T>("Get", vi, attribute, status);
    if (accessors == nullptr) {
        return status;
    }
    getter = accessors->get;
    return getter == nullptr ? SetErrorInfo(vi, IVI_ERROR_ATTR_NOT_READABLE, Find(attribute)->Name()) : VI_SUCCESS;
}

template <typename T>
ViStatus AttributeEngine::FindSetter(ViSession vi, ViAttr attribute, typename Accessors<T>::Setter& setter) const {
    ViStatus status = VI_SUCCESS;
    const auto* accessors = FindTyped<T>("Set", vi, attribute, status);
    if (accessors == nullptr) {
        return status;
    }
    setter = accessors->set;
    return setter == nullptr ? SetErrorInfo(vi, IVI_ERROR_ATTR_NOT_WRITABLE, Find(attribute)->Name()) : VI_SUCCESS;
}

template <typename T>
ViStatus AttributeEngine::Get(std::string_view function, ViSession vi, ViConstString repCapName, ViAttr attribute,
                              T* value) const {
    auto status = CheckParameters(vi, function, "AttributeValue", {value});
    if (status < 0) {
        return status;
    }
    typename Accessors<T>::Getter getter = nullptr;
    status = FindGetter<T>(vi, attribute, getter);
    return status < 0 ? status : getter(vi, repCapName, value);
}

template <typename T>
ViStatus AttributeEngine::Set(ViSession vi, ViConstString repCapName, ViAttr attribute, T value) const {
    typename Accessors<T>::Setter setter = nullptr;
    const auto status = FindSetter<T>(vi, attribute, setter);
    return status < 0 ? status : setter(vi, repCapName, value);
}

ViStatus AttributeEngine::GetString(ViSession vi, ViConstString repCapName, ViAttr attribute, ViInt32 bufferSize,
                                    ViChar value[]) const {
    Accessors<ViString>::Getter getter = nullptr;
    const auto status = FindGetter<ViString>(vi, attribute, getter);
    if (status < 0) {
        return status;
    }
    if (value == nullptr && bufferSize != 0) {
        // Required: the description names the size parameter although the buffer is null.
        return SetErrorInfo(vi, IVI_ERROR_NULL_POINTER, "GetAttributeViString", "AttributeValueBufferSize");
    }
    return FillTextBuffer(bufferSize, value,
                          [&](ViInt32 size, ViChar buffer[]) { return getter(vi, repCapName, size, buffer); });
}

ViStatus AttributeEngine::SetString(ViSession vi, ViConstString repCapName, ViAttr attribute,
                                    ViConstString value) const {
    Accessors<ViString>::Setter setter = nullptr;
    const auto status = FindSetter<ViString>(vi, attribute, setter);
    return status < 0 ? status : setter(vi, repCapName, value);
}

// The types of attributes.
template ViStatus AttributeEngine::Get(std::string_view, ViSession, ViConstString, ViAttr, ViInt32*) const;
template ViStatus AttributeEngine::Get(std::string_view, ViSession, ViConstString, ViAttr, ViReal64*) const;
template ViStatus AttributeEngine::Get(std::string_view, ViSession, ViConstString, ViAttr, ViBoolean*) const;
template ViStatus AttributeEngine::Get(std::string_view, ViSession, ViConstString, ViAttr, ViSession*) const;
template ViStatus AttributeEngine::Set(ViSession, ViConstString, ViAttr, ViInt32) const;
template ViStatus AttributeEngine::Set(ViSession, ViConstString, ViAttr, ViReal64) const;
template ViStatus AttributeEngine::Set(ViSession, ViConstString, ViAttr, ViBoolean) const;
template ViStatus AttributeEngine::Set(ViSession, ViConstString, ViAttr, ViSession) const;

} // namespace nrt2

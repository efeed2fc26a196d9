// Recording a failure: the status, and a description made of its table message, an elaboration and arguments.
//
// Every function returns what the export is to return: the status, or the status of IviSession_SetError where that
// fails. The handle may be VI_NULL, which records for the calling thread. Descriptions hold at most 1023 bytes.
#pragma once

#include <array>
#include <initializer_list>
#include <span>
#include <string_view>

#include "status/status.h"

namespace nrt2 {

/// The message of `status`, two blanks and the elaboration (when there is one), every %s and %d replaced by the next
/// argument. Arguments are taken literally, whatever they hold; a placeholder without an argument stays as it is.
ViStatus RecordError(ViSession vi, ViStatus status, std::string_view elaboration,
                     std::span<const std::string_view> arguments);

template <typename... Arguments>
ViStatus SetErrorInfo(ViSession vi, ViStatus status, const Arguments&... arguments) {
    const std::array<std::string_view, sizeof...(arguments)> texts{std::string_view(arguments)...};
    return RecordError(vi, status, {}, texts);
}

/// `elaboration` is a format too: text from outside goes into `arguments`.
template <typename... Arguments>
ViStatus SetErrorInfoElab(ViSession vi, ViStatus status, std::string_view elaboration, const Arguments&... arguments) {
    const std::array<std::string_view, sizeof...(arguments)> texts{std::string_view(arguments)...};
    return RecordError(vi, status, elaboration, texts);
}

/// Records IVI_ERROR_NULL_POINTER, naming the parameter at the position of the first null pointer in a list such as
/// "TestResult, TestMessage" ("<unknown parameter>" beyond its end). VI_SUCCESS when no pointer is null.
ViStatus CheckParameters(ViSession vi, std::string_view function, std::string_view parameterNames,
                         std::initializer_list<const void*> pointers);

} // namespace nrt2

// Recording of failures: a status with a description made of the status's message, an elaboration and arguments.
//
// Every function returns the status that the export returns: the recorded status, or that of IviSession_SetError when
// the recording fails. With VI_NULL the record is the calling thread's. A description has at most 1023 bytes.
#pragma once

#include <array>
#include <initializer_list>
#include <span>
#include <string_view>

#include "status/status.h"

namespace nrt2 {

/// Records the message of `status`, then two blanks and the elaboration if there is one. Each %s and %d is replaced by
/// the next argument; one without an argument stays. Arguments are inserted literally and are never read as a format.
ViStatus RecordError(ViSession vi, ViStatus status, std::string_view elaboration,
                     std::span<const std::string_view> arguments);

template <typename... Arguments>
ViStatus SetErrorInfo(ViSession vi, ViStatus status, const Arguments&... arguments) {
    const std::array<std::string_view, sizeof...(arguments)> texts{std::string_view(arguments)...};
    return RecordError(vi, status, {}, texts);
}

/// `elaboration` is a format: pass text from outside in `arguments` only.
template <typename... Arguments>
ViStatus SetErrorInfoElab(ViSession vi, ViStatus status, std::string_view elaboration, const Arguments&... arguments) {
    const std::array<std::string_view, sizeof...(arguments)> texts{std::string_view(arguments)...};
    return RecordError(vi, status, elaboration, texts);
}

/// Returns VI_SUCCESS when no pointer is null. Otherwise records IVI_ERROR_NULL_POINTER with the name at the position
/// of the first null pointer in `parameterNames`, a list such as "TestResult, TestMessage"; "<unknown parameter>"
/// beyond its end.
ViStatus CheckParameters(ViSession vi, std::string_view function, std::string_view parameterNames,
                         std::initializer_list<const void*> pointers);

} // namespace nrt2

// The life of a session with every kind of call.
#pragma once

#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "include/TARNEX.h"

namespace hostile {

/// What one exported function did.
struct Result {
    std::string function;
    ViStatus status = VI_SUCCESS;
    bool outOfMemory = false;       ///< std::bad_alloc left the function
    std::string threw;              ///< the text of another exception that left it
    ViStatus recorded = VI_SUCCESS; ///< the code of TARNEX_GetError afterwards, of session or thread
    bool described = false;         ///< a description came with it
};

struct Life {
    std::vector<Result> results;
    bool gaveHandle = false; ///< creation set *newVi
};

/// Opens a session on `resource` with status checking and an ID query, configures both channels, makes all queries,
/// gets and sets all attributes, reads the errors, switches into simulation, and closes. Closes a second time when the
/// first one fails. Continues after every failure.
Life LiveOnce(const std::string& resource);

} // namespace hostile

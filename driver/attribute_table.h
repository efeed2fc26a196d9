#pragma once

#include "framework/attribute_engine.h"

namespace tarnex {

/// The driver's attributes, shared by all sessions.
const nrt2::AttributeEngine& Attributes();

} // namespace tarnex

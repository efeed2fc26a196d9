// Typed access to attributes. The accessors behind the table take the session's lock.

#include "include/TARNEX.h"

#include "driver/attribute_table.h"

using tarnex::Attributes;

ViStatus _VI_FUNC TARNEX_GetAttributeViInt32(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                             ViInt32* attributeValue) {
    return Attributes().Get("TARNEX_GetAttributeViInt32", vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_GetAttributeViReal64(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViReal64* attributeValue) {
    return Attributes().Get("TARNEX_GetAttributeViReal64", vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_GetAttributeViBoolean(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViBoolean* attributeValue) {
    return Attributes().Get("TARNEX_GetAttributeViBoolean", vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_GetAttributeViSession(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViSession* attributeValue) {
    return Attributes().Get("TARNEX_GetAttributeViSession", vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_GetAttributeViString(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViInt32 attributeValueBufferSize, ViChar attributeValue[]) {
    return Attributes().GetString(vi, repCapName, attributeId, attributeValueBufferSize, attributeValue);
}

ViStatus _VI_FUNC TARNEX_SetAttributeViInt32(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                             ViInt32 attributeValue) {
    return Attributes().Set(vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_SetAttributeViReal64(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViReal64 attributeValue) {
    return Attributes().Set(vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_SetAttributeViBoolean(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViBoolean attributeValue) {
    return Attributes().Set(vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_SetAttributeViSession(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                               ViSession attributeValue) {
    return Attributes().Set(vi, repCapName, attributeId, attributeValue);
}

ViStatus _VI_FUNC TARNEX_SetAttributeViString(ViSession vi, ViConstString repCapName, ViAttr attributeId,
                                              ViConstString attributeValue) {
    return Attributes().SetString(vi, repCapName, attributeId, attributeValue);
}

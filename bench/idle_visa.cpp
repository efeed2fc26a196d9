// A VISA that does nothing, so that only the driver's part of a call is measured. Every query gets the same number.
#include <cstring>
#include <string_view>

#include "platform/visa.h"

namespace {
constexpr std::string_view kIdentity = "Keltor Technology,TX4410,SN1,1.00\n";
constexpr std::string_view kNumber = "3.300000\n";

// The identity query is recognized by its command line. Per thread, because sessions of several threads share nothing.
thread_local bool identityAsked = false;
} // namespace

extern "C" {

ViStatus _VI_FUNC viOpenDefaultRM(ViSession* rm) {
    *rm = 1;
    return VI_SUCCESS;
}

ViStatus _VI_FUNC viOpen(ViSession /*rm*/, ViConstRsrc /*name*/, ViAccessMode /*mode*/, ViUInt32 /*timeoutMs*/,
                         ViSession* vi) {
    *vi = 2;
    return VI_SUCCESS;
}

ViStatus _VI_FUNC viClose(ViObject /*vi*/) { return VI_SUCCESS; }

ViStatus _VI_FUNC viSetAttribute(ViObject /*vi*/, ViAttr /*name*/, ViAttrState /*value*/) { return VI_SUCCESS; }

ViStatus _VI_FUNC viSetBuf(ViSession /*vi*/, ViUInt16 /*mask*/, ViUInt32 /*size*/) { return VI_SUCCESS; }

ViStatus _VI_FUNC viClear(ViSession /*vi*/) { return VI_SUCCESS; }

ViStatus _VI_FUNC viWrite(ViSession /*vi*/, ViConstBuf buf, ViUInt32 count, ViUInt32* written) {
    identityAsked = buf[0] == '*';
    *written = count;
    return VI_SUCCESS;
}

ViStatus _VI_FUNC viRead(ViSession /*vi*/, ViByte* buf, ViUInt32 /*count*/, ViUInt32* got) {
    const auto reply = identityAsked ? kIdentity : kNumber;
    std::memcpy(buf, reply.data(), reply.size());
    *got = static_cast<ViUInt32>(reply.size());
    return VI_SUCCESS;
}

} // extern "C"

#include "instrument/tarnex_supply.h"

#include "text/characters.h"
#include "text/numbers.h"
#include "visa_io/visa_factory.h"

namespace ORVA {

TARNEX::TARNEX() : InstBase(std::make_shared<OpenVisa::VisaIO>(), std::make_shared<Identity>()) {}

ViStatus TARNEX::SetTimeout(ViUInt32 milliseconds) {
    settings_.ioTimeout = milliseconds;
    return IsOpen() ? connection_->setTimeout(milliseconds) : VI_SUCCESS;
}

ViStatus TARNEX::Open(const ConnectionRecord& record) {
    idQuery_ = record.idQuery;
    reset_ = record.reset;
    options_ = ParseOptionFlags(record.options);
    resource_ = record.resource;
    if (OpenVisa::OpenConnection(record.resource, settings_, connection_) < 0) {
        return DRIVER_ERROR_IO;
    }
    const auto status = QueryIdentity();
    return status < 0 ? DRIVER_ERROR_IO : status;
}

ViStatus TARNEX::Close() { return IsOpen() ? connection_->close() : VI_SUCCESS; }

bool TARNEX::IsOpen() const { return connection_ != nullptr && connection_->isOpen(); }

ViStatus TARNEX::WriteRaw(std::string_view command) {
    Write(command);
    return VI_SUCCESS;
}

ViStatus TARNEX::QueryRaw(std::string_view command, std::string& reply) {
    Query(command, reply);
    return VI_SUCCESS;
}

ViStatus TARNEX::QueryIdentity() {
    std::string reply;
    // This query returns VISA's own negative status, not DRIVER_ERROR_IO.
    const auto status = Query("*IDN?", reply);
    if (status < 0) {
        return status;
    }
    return ParseIdentity(reply, *identity_) ? status : VI_ERROR_INV_FMT;
}

bool TARNEX::ParseIdentity(std::string_view reply, Identity& identity) {
    // Not trimmed: a carriage return before the termination character stays in the last field.
    const auto fields = Visa::split(reply, ',', false);
    if (fields.size() != 4) {
        return false;
    }
    identity = {std::string(fields[0]), std::string(fields[1]), std::string(fields[2]), std::string(fields[3])};
    return true;
}

void TARNEX::SetTrace(const OpenVisa::Trace& trace) {
    settings_.trace = trace;
    connection_->setTrace(trace);
}

ViStatus TARNEX::Reopen() {
    Close();
    connection_->setInStep(false);
    const auto status = OpenVisa::OpenConnection(resource_, settings_, connection_);
    return status < 0 ? status : VerifyIdentity();
}

ViStatus TARNEX::VerifyIdentity() {
    // Over a serial line, replies to commands from before a reopening may still arrive, those to earlier checks
    // included.
    constexpr int kMostLateReplies = 100;
    constexpr std::string_view kSerial = "ASRL";
    if (!text::EqualIgnoringCase(std::string_view(resource_).substr(0, kSerial.size()), kSerial)) {
        identitiesDue_ = 0;
    }
    connection_->setInStep(false);
    auto status = Write("*IDN?");
    identitiesDue_ += status >= 0 ? 1 : 0;
    bool same = false;
    bool other = false;
    for (int i = 0; status >= 0 && identitiesDue_ > 0 && i < kMostLateReplies; ++i) {
        std::string reply;
        Identity identity;
        status = connection_->read(reply);
        if (status >= 0 && ParseIdentity(reply, identity)) {
            --identitiesDue_;
            same = identity == *identity_;
            other = !same;
        }
    }
    // After one reply and silence for a whole time-out, those still due were lost when the line was reopened.
    if (same && (identitiesDue_ == 0 || status < 0)) {
        identitiesDue_ = 0;
        connection_->setInStep(true);
        return VI_SUCCESS;
    }
    return other || status >= 0 ? IVI_ERROR_ID_QUERY_FAILED : status;
}

ViStatus TARNEX::QueryEventStatus(std::uint32_t& value) {
    return Ask(
        [&](std::string_view reply) {
            value = static_cast<std::uint32_t>(text::ToLong(Checked(reply, Visa::IsWholeInt)));
        },
        "*ESR?");
}

ViStatus TARNEX::QueryQuestionableCondition(ChannelNumber ch, std::int32_t& value) {
    return Ask([&](std::string_view reply) { value = text::ToInt(Checked(reply, Visa::IsWholeInt)); },
               NumberedHeader{":STATus:QUEStionable:INSTrument:ISUMmary", ch, ":CONDition?"});
}

ViStatus TARNEX::QueryQuestionableEvent(ChannelNumber ch, std::int32_t& value) {
    return Ask([&](std::string_view reply) { value = text::ToInt(Checked(reply, Visa::IsWholeInt)); },
               NumberedHeader{":STATus:QUEStionable:INSTrument:ISUMmary", ch, ":EVENt?"});
}

// Required: the output is written after a failed exchange too and is then the lowest channel.
ViStatus TARNEX::GetSelectedChannel(ChannelNumber& ch) {
    std::string reply;
    const auto status = Get(":INST:SELE?", reply);
    if (status >= 0) {
        Checked(reply, IsKeyword<Channel>);
    }
    ch = static_cast<ChannelNumber>(ValueOf<Channel>(reply));
    return status;
}

ViStatus TARNEX::QueryError(std::int32_t& code, std::string& message) {
    auto result = IVI_ERROR_CANNOT_RECOVER; // Required: a text that contains a comma fails too
    const auto status = Ask(
        [&](std::string_view reply) {
            const auto fields = Visa::split(reply, ',', true);
            if (fields.size() == 2) {
                code = text::ToInt(fields[0]);
                message = fields[1];
                result = VI_SUCCESS;
            }
        },
        ":SYSTem:ERRor?");
    return status < 0 ? status : result;
}

} // namespace ORVA

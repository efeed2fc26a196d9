#include "tests/doubles/visa_double.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace doubles {

void VisaLibrary::Reset() {
    const std::lock_guard lock(mutex_);
    replies_ = {{"*IDN?", "Keltor Technology,TX4410,SN42,1.07\n"}};
    replyToAll_.reset();
    written_.clear();
    opened_.clear();
    settings_.clear();
    reads_.clear();
    managers_.clear();
    instruments_.clear();
}

void VisaLibrary::Reply(const std::string& command, std::string reply) {
    const std::lock_guard lock(mutex_);
    replies_.insert_or_assign(command, std::move(reply));
}

void VisaLibrary::ReplyToAll(std::string reply) {
    const std::lock_guard lock(mutex_);
    replyToAll_ = std::move(reply);
}

std::vector<std::string> VisaLibrary::Written() const {
    const std::lock_guard lock(mutex_);
    return written_;
}

void VisaLibrary::ForgetWritten() {
    const std::lock_guard lock(mutex_);
    written_.clear();
}

std::vector<OpenedResource> VisaLibrary::Opened() const {
    const std::lock_guard lock(mutex_);
    return opened_;
}

std::vector<std::string> VisaLibrary::Settings() const {
    const std::lock_guard lock(mutex_);
    return settings_;
}

void VisaLibrary::ForgetSettings() {
    const std::lock_guard lock(mutex_);
    settings_.clear();
}

std::vector<ReadCall> VisaLibrary::Reads() const {
    const std::lock_guard lock(mutex_);
    return reads_;
}

std::size_t VisaLibrary::OpenSessions() const {
    const std::lock_guard lock(mutex_);
    return managers_.size() + instruments_.size();
}

ViStatus VisaLibrary::OpenDefaultRM(ViSession* rm) {
    const std::lock_guard lock(mutex_);
    *rm = next_++;
    managers_[*rm] = 0;
    return VI_SUCCESS;
}

ViStatus VisaLibrary::Open(ViSession rm, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeout, ViSession* vi) {
    const std::lock_guard lock(mutex_);
    if (managers_.count(rm) == 0) {
        return VI_ERROR_INV_OBJECT;
    }
    opened_.push_back({name, mode, timeout});
    std::string upper(name);
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const bool endsOnTermChar = upper.rfind("ASRL", 0) == 0 || upper.find("SOCKET") != std::string::npos;
    *vi = next_++;
    instruments_[*vi] = {rm, endsOnTermChar, std::nullopt};
    return VI_SUCCESS;
}

ViStatus VisaLibrary::Close(ViObject vi) {
    const std::lock_guard lock(mutex_);
    if (instruments_.erase(vi) == 1) {
        return VI_SUCCESS;
    }
    if (managers_.erase(vi) == 0) {
        return VI_ERROR_INV_OBJECT;
    }
    std::erase_if(instruments_, [vi](const auto& entry) { return entry.second.rm == vi; });
    return VI_SUCCESS;
}

ViStatus VisaLibrary::Set(ViObject vi, std::string setting) {
    const std::lock_guard lock(mutex_);
    settings_.push_back(std::move(setting));
    return instruments_.count(vi) == 1 ? VI_SUCCESS : VI_ERROR_INV_OBJECT;
}

ViStatus VisaLibrary::Write(ViSession vi, const std::string& bytes, ViUInt32* written) {
    const std::lock_guard lock(mutex_);
    const auto instrument = instruments_.find(vi);
    if (instrument == instruments_.end()) {
        return VI_ERROR_INV_OBJECT;
    }
    written_.push_back(bytes);
    *written = static_cast<ViUInt32>(bytes.size());
    if (replyToAll_) {
        instrument->second.pending = replyToAll_;
        return VI_SUCCESS;
    }
    const auto reply = replies_.find(bytes.substr(0, bytes.find('\n')));
    instrument->second.pending = reply == replies_.end() ? std::nullopt : std::optional(reply->second);
    return VI_SUCCESS;
}

ViStatus VisaLibrary::Read(ViSession vi, ViByte* buffer, ViUInt32 count, ViUInt32* got) {
    const std::lock_guard lock(mutex_);
    reads_.push_back({buffer, count});
    *got = 0;
    const auto instrument = instruments_.find(vi);
    if (instrument == instruments_.end()) {
        return VI_ERROR_INV_OBJECT;
    }
    const auto reply = std::exchange(instrument->second.pending, std::nullopt);
    if (!reply) {
        return VI_ERROR_TMO;
    }
    *got = std::min(count, static_cast<ViUInt32>(reply->size()));
    std::copy_n(reply->data(), *got, reinterpret_cast<char*>(buffer));
    if (reply->size() > count) {
        return VI_SUCCESS_MAX_CNT;
    }
    return instrument->second.endsOnTermChar && reply->ends_with('\n') ? VI_SUCCESS_TERM_CHAR : VI_SUCCESS;
}

ViStatus VisaLibrary::Clear(ViSession vi) {
    const std::lock_guard lock(mutex_);
    const auto instrument = instruments_.find(vi);
    if (instrument == instruments_.end()) {
        return VI_ERROR_INV_OBJECT;
    }
    if (instrument->second.endsOnTermChar) {
        return VI_ERROR_NSUP_OPER;
    }
    instrument->second.pending.reset();
    return VI_SUCCESS;
}

VisaLibrary& TheVisa() {
    static VisaLibrary visa;
    return visa;
}

namespace {

template <typename Body>
ViStatus Answer(const char* function, const Body& body) {
    const InsideDouble here;
    const auto ordered = TheScript().Enter(function);
    return ordered != VI_SUCCESS ? ordered : body(TheVisa());
}

} // namespace
} // namespace doubles

using doubles::Answer;
using doubles::VisaLibrary;

ViStatus _VI_FUNC viOpenDefaultRM(ViSession* rm) {
    return Answer("viOpenDefaultRM", [=](VisaLibrary& visa) { return visa.OpenDefaultRM(rm); });
}

ViStatus _VI_FUNC viOpen(ViSession rm, ViConstRsrc name, ViAccessMode mode, ViUInt32 timeoutMs, ViSession* vi) {
    return Answer("viOpen", [=](VisaLibrary& visa) { return visa.Open(rm, name, mode, timeoutMs, vi); });
}

// Closes even when a test lets it fail.
ViStatus _VI_FUNC viClose(ViObject vi) {
    const doubles::InsideDouble here;
    const auto ordered = doubles::TheScript().Enter("viClose");
    const auto status = doubles::TheVisa().Close(vi);
    return ordered != VI_SUCCESS ? ordered : status;
}

ViStatus _VI_FUNC viSetAttribute(ViObject vi, ViAttr name, ViAttrState value) {
    return Answer("viSetAttribute", [=](VisaLibrary& visa) {
        std::ostringstream setting;
        setting << "viSetAttribute " << std::hex << std::uppercase << name << ' ' << std::dec << value;
        return visa.Set(vi, setting.str());
    });
}

ViStatus _VI_FUNC viSetBuf(ViSession vi, ViUInt16 mask, ViUInt32 size) {
    return Answer("viSetBuf", [=](VisaLibrary& visa) {
        std::ostringstream setting;
        setting << "viSetBuf " << mask << ' ' << size;
        return visa.Set(vi, setting.str());
    });
}

ViStatus _VI_FUNC viWrite(ViSession vi, ViConstBuf buf, ViUInt32 count, ViUInt32* written) {
    return Answer("viWrite", [=](VisaLibrary& visa) {
        return visa.Write(vi, std::string(reinterpret_cast<const char*>(buf), count), written);
    });
}

ViStatus _VI_FUNC viClear(ViSession vi) {
    return Answer("viClear", [=](VisaLibrary& visa) { return visa.Clear(vi); });
}

// The bytes that arrived before a failure are in the buffer and counted.
ViStatus _VI_FUNC viRead(ViSession vi, ViByte* buf, ViUInt32 count, ViUInt32* got) {
    const doubles::InsideDouble here;
    const auto ordered = doubles::TheScript().Enter("viRead");
    if (ordered > 0) {
        return ordered;
    }
    const auto status = doubles::TheVisa().Read(vi, buf, count, got);
    return ordered != VI_SUCCESS ? ordered : status;
}

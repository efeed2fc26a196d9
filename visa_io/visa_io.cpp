#include "visa_io/visa_io.h"

#include "status/run_until.h"

namespace OpenVisa {

VisaIO::~VisaIO() {
    if (resourceManager_ != VI_NULL) {
        viClose(resourceManager_); // closes the instrument session too; a destructor cannot report a failure
    }
}

ViStatus VisaIO::open(const std::string& resource) {
    readBuffer_ = std::make_unique<ViByte[]>(kReadBufferSize);
    const auto status = status::RunUntilNegative(
        [&] { return viOpenDefaultRM(&resourceManager_); },
        [&] { return viOpen(resourceManager_, resource.c_str(), VI_NULL, settings_.openTimeout, &instrument_); },
        [&] { return configure(); });
    if (status >= 0) {
        resource_ = resource;
    }
    return status;
}

ViStatus VisaIO::configure() {
    return status::RunUntilNegative([&] { return setAttribute(VI_ATTR_TMO_VALUE, settings_.ioTimeout); },
                                    [&] { return setBuffer(VI_READ_BUF, kReadBufferSize); },
                                    [&] { return setBuffer(VI_WRITE_BUF, kWriteBufferSize); });
}

ViStatus VisaIO::apply(const ConnectionSettings& settings) {
    settings_ = settings;
    return isOpen() ? setAttribute(VI_ATTR_TMO_VALUE, settings_.ioTimeout) : VI_SUCCESS;
}

ViStatus VisaIO::setTimeout(ViUInt32 milliseconds) {
    settings_.ioTimeout = milliseconds;
    return isOpen() ? setAttribute(VI_ATTR_TMO_VALUE, milliseconds) : VI_SUCCESS;
}

ViStatus VisaIO::write(std::string_view command) {
    const char termination = settings_.terminationCharacter;
    if (settings_.appendTermination && (command.empty() || command.back() != termination)) {
        line_.assign(command);
        line_.push_back(termination);
        command = line_;
    }
    ViUInt32 written = 0;
    const auto status = viWrite(instrument_, reinterpret_cast<ViConstBuf>(command.data()),
                                static_cast<ViUInt32>(command.size()), &written);
    finish(VI_TRUE, status, command);
    return status;
}

ViStatus VisaIO::read(std::string& reply) {
    ViUInt32 count = 0;
    const auto status = viRead(instrument_, readBuffer_.get(), kReadBufferSize, &count);
    std::string_view received(reinterpret_cast<const char*>(readBuffer_.get()), count);
    finish(VI_FALSE, status, received);
    if (status < 0 || count == 0) {
        return status;
    }
    if (settings_.stripTermination && received.back() == settings_.terminationCharacter) {
        received.remove_suffix(1);
    }
    reply.assign(received);
    return status;
}

void VisaIO::report(ViBoolean sent, ViStatus status, std::string_view text) const {
    settings_.trace.callback(settings_.trace.context, sent, status, text.data(), static_cast<ViUInt32>(text.size()));
}

ViStatus VisaIO::close() {
    if (!isOpen()) {
        return VI_SUCCESS;
    }
    const auto status = viClose(resourceManager_);
    if (status >= 0) {
        resourceManager_ = VI_NULL;
        instrument_ = VI_NULL;
    }
    return status;
}

bool VisaIO::isOpen() const { return resourceManager_ != VI_NULL && instrument_ != VI_NULL; }

ViStatus VisaIO::setAttribute(ViAttr attribute, ViAttrState value) const {
    return viSetAttribute(instrument_, attribute, value);
}

ViStatus VisaIO::setBuffer(ViUInt16 mask, ViUInt32 size) const { return viSetBuf(instrument_, mask, size); }

ViStatus VisaIO::setTermination() const {
    return status::RunUntilNegative(
        [&] { return setAttribute(VI_ATTR_TERMCHAR, static_cast<ViByte>(settings_.terminationCharacter)); },
        [&] { return setAttribute(VI_ATTR_TERMCHAR_EN, settings_.terminationEnabled ? VI_TRUE : VI_FALSE); });
}

ViStatus VisaIO::setIoBuffers() const {
    return status::RunUntilNegative([&] { return setBuffer(VI_IO_IN_BUF, kReadBufferSize); },
                                    [&] { return setBuffer(VI_IO_OUT_BUF, kWriteBufferSize); });
}

} // namespace OpenVisa

#include "tests/system/supply_fixture.h"

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace system_tests {

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "tarnex-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no scratch folder " + pattern);
    }
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchFolder::Write(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
    return Path(name);
}

SupplyTest::SupplyTest(const virtual_supply::ServerOptions& options) {
    UseStore(scratch_.Path("none.xml"));
    supply_.SetLoad(1, 10.0);
    server_.emplace(supply_, options);
    TARNEX_ClearError(VI_NULL);
}

SupplyTest::~SupplyTest() {
    for (const auto vi : opened_) {
        TARNEX_close(vi); // a test may have closed it already
    }
}

// Called before a test starts threads.
void SupplyTest::UseStore(const std::string& path) {
    setenv("IVI_CONFIG_STORE", path.c_str(), 1); // NOLINT(concurrency-mt-unsafe)
}

ViStatus SupplyTest::TryOpen(const std::string& resource, const std::string& optionString, ViSession& vi,
                             ViBoolean idQuery, ViBoolean reset) {
    std::string name = resource;
    const auto status = TARNEX_InitWithOptions(name.data(), idQuery, reset, optionString.c_str(), &vi);
    if (vi != VI_NULL) {
        opened_.push_back(vi);
    }
    return status;
}

ViSession SupplyTest::Open(const std::string& optionString, ViBoolean idQuery, ViBoolean reset) {
    ViSession vi = VI_NULL;
    const auto status = TryOpen(server_->Resource(), optionString, vi, idQuery, reset);
    EXPECT_GE(status, 0) << LastError(VI_NULL).description;
    return vi;
}

DriverError SupplyTest::LastError(ViSession vi) {
    ViStatus code = VI_SUCCESS;
    std::array<ViChar, 1024> description{};
    TARNEX_GetError(vi, &code, static_cast<ViInt32>(description.size()), description.data());
    return {static_cast<unsigned>(code), description.data()};
}

std::string SupplyTest::GetText(ViSession vi, ViAttr attribute) {
    std::array<ViChar, 1024> text{};
    EXPECT_EQ(TARNEX_GetAttributeViString(vi, "", attribute, static_cast<ViInt32>(text.size()), text.data()), 0);
    return text.data();
}

double SupplyTest::Measure(ViSession vi, const char* channel, ViInt32 type) {
    ViReal64 value = -1.0;
    EXPECT_EQ(TARNEX_Measure(vi, channel, type, &value), kTermChar);
    return value;
}

bool SupplyTest::InState(ViSession vi, const char* channel, ViInt32 state) {
    ViBoolean in = 7;
    EXPECT_GE(TARNEX_QueryOutputState(vi, channel, state, &in), 0);
    EXPECT_NE(in, 7);
    return in == VI_TRUE;
}

double SupplyTest::GetReal(ViSession vi, const char* channel, ViAttr attribute) {
    ViReal64 value = -1.0;
    EXPECT_EQ(TARNEX_GetAttributeViReal64(vi, channel, attribute, &value), kTermChar);
    return value;
}

bool SupplyTest::GetBoolean(ViSession vi, const char* channel, ViAttr attribute) {
    ViBoolean value = 7;
    EXPECT_GE(TARNEX_GetAttributeViBoolean(vi, channel, attribute, &value), 0);
    EXPECT_NE(value, 7);
    return value == VI_TRUE;
}

} // namespace system_tests

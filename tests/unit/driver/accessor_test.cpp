// The null check of the getters. The engine checks first, so only a direct call reaches it.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "driver/attribute_table.h"
#include "driver/tarnex_driver_session.h"
#include "framework/driver_session.h"
#include "tests/doubles/script.h"
#include "tests/doubles/session_service_double.h"

namespace {

class Getter : public testing::Test {
  protected:
    Getter() {
        doubles::TheScript().Reset();
        doubles::TheSessionService().Reset();
        doubles::TheSessionService().New(&vi_);
        session_ = std::make_unique<TARNEXDriverSession>(vi_);
        doubles::TheSessionService().SetDataPtr(vi_, session_->Anchor());
    }

    template <typename T>
    void ExpectRefusal(const nrt2::AttributeInfo& row) {
        if (const auto* accessors = row.AccessorsOf<T>()) {
            ++called_;
            EXPECT_EQ(accessors->get(vi_, "Nowhere", nullptr), static_cast<ViStatus>(0xBFFA0058)) << row.Name();
        }
    }

    ViSession vi_ = VI_NULL;
    std::unique_ptr<TARNEXDriverSession> session_;
    int called_ = 0;
};

TEST_F(Getter, WithANullValueRecordsItsNameAndTheParameter) {
    for (const auto& row : tarnex::Attributes().Rows()) {
        ExpectRefusal<ViInt32>(row);
        ExpectRefusal<ViReal64>(row);
        ExpectRefusal<ViBoolean>(row);
        if (const auto* accessors = row.AccessorsOf<ViString>()) {
            ++called_;
            EXPECT_EQ(accessors->get(vi_, "", 256, nullptr), static_cast<ViStatus>(0xBFFA0058)) << row.Name();
        }
        const std::string shortName(row.Name().substr(std::string("TARNEX_ATTR_").size()));
        const auto recorded = doubles::TheSessionService().Recorded();
        ASSERT_FALSE(recorded.empty());
        EXPECT_EQ(recorded.back().description,
                  "Null pointer passed for function 'TARNEX_get_" + shortName + "', parameter 'AttributeValue'.");
    }
    EXPECT_EQ(called_, std::ssize(tarnex::Attributes().Rows()));
    EXPECT_EQ(doubles::TheSessionService().LocksHeld(), 0);
}

} // namespace

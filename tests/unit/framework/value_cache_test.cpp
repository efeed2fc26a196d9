#include "framework/value_cache.h"

#include "framework/attribute_engine.h"
#include "tests/unit/framework/framework_fixture.h"

namespace unit {
namespace {

constexpr ViAttr kAttribute = 7;
constexpr ViAttr kOther = 8;

TEST(ValueCache, FindsWhatWasStoredUnderItsAttributeAndName) {
    nrt2::ValueCache<ViInt32> cache;
    EXPECT_EQ(cache.Find(kAttribute, "CH1"), nullptr);
    cache.Store(kAttribute, "CH1", 5);
    ASSERT_NE(cache.Find(kAttribute, "CH1"), nullptr);
    EXPECT_EQ(*cache.Find(kAttribute, "CH1"), 5);
    EXPECT_EQ(cache.Find(kAttribute, "CH2"), nullptr);
    EXPECT_EQ(cache.Find(kAttribute, ""), nullptr);
    EXPECT_EQ(cache.Find(kOther, "CH1"), nullptr);
}

TEST(ValueCache, KeepsTheLatestValue) {
    nrt2::ValueCache<ViInt32> cache;
    cache.Store(kAttribute, "CH1", 5);
    cache.Store(kAttribute, "CH1", 6);
    EXPECT_EQ(*cache.Find(kAttribute, "CH1"), 6);
}

TEST(ValueCache, InvalidatesOneNameUntilItIsStoredAgain) {
    nrt2::ValueCache<ViInt32> cache;
    cache.Store(kAttribute, "CH1", 5);
    cache.Store(kAttribute, "CH2", 6);
    cache.Invalidate(kAttribute, false, "CH1");
    EXPECT_EQ(cache.Find(kAttribute, "CH1"), nullptr);
    EXPECT_EQ(*cache.Find(kAttribute, "CH2"), 6);
    cache.Store(kAttribute, "CH1", 7);
    EXPECT_EQ(*cache.Find(kAttribute, "CH1"), 7);
}

TEST(ValueCache, InvalidatesEveryNameOfOneAttribute) {
    nrt2::ValueCache<ViInt32> cache;
    cache.Store(kAttribute, "CH1", 5);
    cache.Store(kAttribute, "CH2", 6);
    cache.Store(kOther, "CH1", 7);
    cache.Invalidate(kAttribute, true, "CH9");
    EXPECT_EQ(cache.Find(kAttribute, "CH1"), nullptr);
    EXPECT_EQ(cache.Find(kAttribute, "CH2"), nullptr);
    EXPECT_EQ(*cache.Find(kOther, "CH1"), 7);
}

TEST(ValueCache, IgnoresTheInvalidationOfAMissingValue) {
    nrt2::ValueCache<ViInt32> cache;
    cache.Store(kAttribute, "CH1", 5);
    cache.Invalidate(kAttribute, false, "CH2");
    cache.Invalidate(kOther, false, "CH1");
    cache.Invalidate(kOther, true, "CH1");
    EXPECT_EQ(*cache.Find(kAttribute, "CH1"), 5);
}

/// One value of each type in the caches of a session.
class SessionCaches : public FrameworkTest {
  protected:
    SessionCaches() {
        auto& caches = session_.Caches();
        caches.Of<ViInt32>().Store(kAttribute, "CH1", 1);
        caches.Of<ViReal64>().Store(kAttribute, "CH1", 2.5);
        caches.Of<ViBoolean>().Store(kAttribute, "CH1", VI_TRUE);
        caches.Of<ViSession>().Store(kAttribute, "CH1", 4U);
        caches.Of<ViString>().Store(kAttribute, "CH1", "five");
    }

    /// Which of the five types are cached for the name: "int real bool session text".
    std::string Cached(std::string_view name = "CH1") {
        auto& caches = session_.Caches();
        std::string cached;
        cached += caches.Of<ViInt32>().Find(kAttribute, name) != nullptr ? "int " : "";
        cached += caches.Of<ViReal64>().Find(kAttribute, name) != nullptr ? "real " : "";
        cached += caches.Of<ViBoolean>().Find(kAttribute, name) != nullptr ? "bool " : "";
        cached += caches.Of<ViSession>().Find(kAttribute, name) != nullptr ? "session " : "";
        cached += caches.Of<ViString>().Find(kAttribute, name) != nullptr ? "text" : "";
        return cached;
    }

    TestSession session_{NewHandle()};
};

TEST_F(SessionCaches, HoldAValueOfEachTypeByValue) {
    auto& caches = session_.Caches();
    EXPECT_EQ(*caches.Of<ViInt32>().Find(kAttribute, "CH1"), 1);
    EXPECT_EQ(*caches.Of<ViReal64>().Find(kAttribute, "CH1"), 2.5);
    EXPECT_EQ(*caches.Of<ViBoolean>().Find(kAttribute, "CH1"), VI_TRUE);
    EXPECT_EQ(*caches.Of<ViSession>().Find(kAttribute, "CH1"), 4U);
    const std::string* text = caches.Of<ViString>().Find(kAttribute, "CH1");
    EXPECT_EQ(*text, "five");
}

TEST_F(SessionCaches, AreEmptiedTogether) {
    session_.InvalidateAllAttributes();
    EXPECT_EQ(Cached(), "");
}

TEST_F(SessionCaches, LoseOneValueThroughTheAttributeOfItsType) {
    const nrt2::AttributeInfo number(kAttribute, "NUMBER", nrt2::Accessors<ViInt32>{});
    number.Invalidate(session_, false, "CH2");
    EXPECT_EQ(Cached(), "int real bool session text");
    number.Invalidate(session_, false, "CH1");
    EXPECT_EQ(Cached(), "real bool session text");
    nrt2::AttributeInfo(kAttribute, "REAL", nrt2::Accessors<ViReal64>{}).Invalidate(session_, false, "CH1");
    EXPECT_EQ(Cached(), "bool session text");
    nrt2::AttributeInfo(kAttribute, "SWITCH", nrt2::Accessors<ViBoolean>{}).Invalidate(session_, false, "CH1");
    EXPECT_EQ(Cached(), "session text");
    nrt2::AttributeInfo(kAttribute, "SESSION", nrt2::Accessors<ViSession>{}).Invalidate(session_, false, "CH1");
    EXPECT_EQ(Cached(), "text");
    nrt2::AttributeInfo(kAttribute, "TEXT", nrt2::Accessors<ViString>{}).Invalidate(session_, false, "CH1");
    EXPECT_EQ(Cached(), "");
}

TEST_F(SessionCaches, LoseTheValuesOfAllNamesThroughTheirAttribute) {
    session_.Caches().Of<ViInt32>().Store(kAttribute, "CH2", 9);
    session_.Caches().Of<ViInt32>().Store(kOther, "CH2", 9);
    nrt2::AttributeInfo(kAttribute, "NUMBER", nrt2::Accessors<ViInt32>{}).Invalidate(session_, true, "");
    EXPECT_EQ(Cached("CH1"), "real bool session text");
    EXPECT_EQ(Cached("CH2"), "");
    EXPECT_NE(session_.Caches().Of<ViInt32>().Find(kOther, "CH2"), nullptr);
}

} // namespace
} // namespace unit

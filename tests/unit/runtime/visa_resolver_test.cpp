#include "runtime/visa/resolver.h"

#include <gtest/gtest.h>
#include <netinet/in.h>

#include <atomic>
#include <chrono>
#include <future>
#include <new>
#include <thread>

namespace {

using runtime::Addresses;
using runtime::Deadline;
using runtime::Resolve;

Addresses Unexpected(const std::string& /*host*/, const std::string& /*service*/) {
    ADD_FAILURE() << "looked a numeric address up";
    return nullptr;
}

TEST(VisaResolver, NumericAddressesAreRecognizedWithoutALookup) {
    ViStatus status = VI_SUCCESS;
    const auto v4 = Resolve("127.0.0.1", 5025, Deadline(VI_TMO_IMMEDIATE), status, Unexpected);
    ASSERT_TRUE(v4);
    ASSERT_EQ(v4->ai_family, AF_INET);
    const auto* address = reinterpret_cast<const sockaddr_in*>(v4->ai_addr);
    EXPECT_EQ(ntohl(address->sin_addr.s_addr), 0x7F000001U);
    EXPECT_EQ(ntohs(address->sin_port), 5025);
    EXPECT_EQ(v4->ai_next, nullptr);

    const auto v6 = Resolve("::1", 5025, Deadline(VI_TMO_IMMEDIATE), status, Unexpected);
    ASSERT_TRUE(v6);
    EXPECT_EQ(v6->ai_family, AF_INET6);
    EXPECT_EQ(status, VI_SUCCESS);
}

TEST(VisaResolver, ANameIsLookedUpWithItsPort) {
    std::string asked;
    const auto lookup = [&](const std::string& host, const std::string& service) {
        asked = host + " " + service;
        return runtime::GetAddressesByName("127.0.0.1", service);
    };
    ViStatus status = VI_SUCCESS;
    const auto addresses = Resolve("supply", 5025, Deadline(VI_TMO_INFINITE), status, lookup);
    ASSERT_TRUE(addresses);
    EXPECT_EQ(asked, "supply 5025");
    EXPECT_EQ(addresses->ai_family, AF_INET);
}

TEST(VisaResolver, AnUnknownNameIsNotFound) {
    ViStatus status = VI_SUCCESS;
    const auto addresses =
        Resolve("supply", 5025, Deadline(20000), status, [](const auto&, const auto&) { return nullptr; });
    EXPECT_FALSE(addresses);
    EXPECT_EQ(status, VI_ERROR_RSRC_NFOUND);
}

TEST(VisaResolver, ALookupWithoutMemoryFindsNothing) {
    ViStatus status = VI_SUCCESS;
    const auto addresses = Resolve("supply", 5025, Deadline(20000), status,
                                   [](const auto&, const auto&) -> Addresses { throw std::bad_alloc(); });
    EXPECT_FALSE(addresses);
    EXPECT_EQ(status, VI_ERROR_RSRC_NFOUND);
}

TEST(VisaResolver, ALookupThatHangsIsDetachedAtTheDeadline) {
    std::promise<void> release;
    std::promise<void> left;
    auto released = release.get_future().share();
    const auto lookup = [&left, released](const std::string& /*host*/, const std::string& service) {
        released.wait();
        auto answer = runtime::GetAddressesByName("127.0.0.1", service);
        left.set_value();
        return answer;
    };
    ViStatus status = VI_SUCCESS;
    const auto before = std::chrono::steady_clock::now();
    EXPECT_FALSE(Resolve("supply", 5025, Deadline(50), status, lookup));
    EXPECT_EQ(status, VI_ERROR_TMO);
    EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(50));
    release.set_value(); // the late answer is discarded
    left.get_future().wait();
}

} // namespace

#include "platform/session_service.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <chrono>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr auto kInvalidHandle = static_cast<ViStatus>(0xBFFA1190);
constexpr auto kNullPointer = static_cast<ViStatus>(0xBFFA0058);
constexpr auto kNotLocked = static_cast<ViStatus>(0xBFFF009C);
constexpr auto kError = static_cast<ViStatus>(0xBFFA0001);
constexpr auto kOtherError = static_cast<ViStatus>(0xBFFA0002);
constexpr ViStatus kWarning = 0x3FFA0065;
constexpr ViStatus kOtherWarning = 0x3FFA0066;

/// Long enough for a thread that is not blocked to finish.
constexpr auto kAWhile = std::chrono::milliseconds(50);

class Session {
  public:
    Session() { EXPECT_EQ(IviSession_New(&handle_), VI_SUCCESS); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { IviSession_Dispose(handle_); }
    operator ViSession() const { return handle_; } // NOLINT: reads like the handle it is

  private:
    ViSession handle_ = VI_NULL;
};

struct Record {
    ViStatus status = -1;
    ViStatus code = -1;
    std::string description;
    bool operator==(const Record&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Record& record) {
    return out << record.status << ' ' << record.code << " \"" << record.description << '"';
}

Record ReadError(ViSession handle) {
    std::array<ViChar, 1024> text{};
    Record record;
    record.status = IviSession_GetError(handle, static_cast<ViInt32>(text.size()), &record.code, text.data());
    record.description = text.data();
    return record;
}

class SessionService : public testing::Test {
  protected:
    SessionService() { IviSession_ClearError(VI_NULL); }
};

// ------------------------------------------------------------------------------------------------------------ handles

TEST_F(SessionService, NewIssuesHandlesThatAreNeverZeroAndNeverIssuedAgain) {
    std::set<ViSession> seen;
    for (int i = 0; i < 5000; ++i) {
        ViSession handle = VI_NULL;
        ASSERT_EQ(IviSession_New(&handle), VI_SUCCESS);
        ASSERT_NE(handle, 0U);
        ASSERT_TRUE(seen.insert(handle).second) << handle;
        ASSERT_EQ(IviSession_Dispose(handle), VI_SUCCESS);
    }
    for (const auto handle : seen) {
        ASSERT_EQ(IviSession_Lock(handle, nullptr), kInvalidHandle);
    }
}

TEST_F(SessionService, TenThousandOpenSessionsKeepTheirOwnData) {
    std::vector<ViSession> handles(10000);
    std::vector<int> data(handles.size());
    for (std::size_t i = 0; i < handles.size(); ++i) {
        ASSERT_EQ(IviSession_New(&handles[i]), VI_SUCCESS);
        ASSERT_EQ(IviSession_SetDataPtr(handles[i], &data[i]), VI_SUCCESS);
    }
    for (std::size_t i = 0; i < handles.size(); ++i) {
        ViAddr found = nullptr;
        ASSERT_EQ(IviSession_GetDataPtr(handles[i], &found), VI_SUCCESS);
        ASSERT_EQ(found, &data[i]);
        ASSERT_EQ(IviSession_Dispose(handles[i]), VI_SUCCESS);
    }
}

TEST_F(SessionService, NewWithANullPointerIsAnError) { EXPECT_EQ(IviSession_New(nullptr), kNullPointer); }

TEST_F(SessionService, EveryFunctionReturnsInvalidSessionHandleForAnUnknownHandle) {
    ViSession disposed = VI_NULL;
    ASSERT_EQ(IviSession_New(&disposed), VI_SUCCESS);
    ASSERT_EQ(IviSession_Dispose(disposed), VI_SUCCESS);
    for (const ViSession handle : {disposed, ViSession{12345}, ViSession{0xFFFFFFFF}, ViSession{0x003FFFFF}}) {
        ViAddr data = &disposed;
        ViBoolean hasLock = VI_FALSE;
        ViStatus code = 7;
        std::array<ViChar, 4> text{'x', 0};
        EXPECT_EQ(IviSession_Dispose(handle), kInvalidHandle);
        EXPECT_EQ(IviSession_SetDataPtr(handle, &data), kInvalidHandle);
        EXPECT_EQ(IviSession_GetDataPtr(handle, &data), kInvalidHandle);
        EXPECT_EQ(IviSession_GetDataPtr(handle, nullptr), kInvalidHandle);
        EXPECT_EQ(IviSession_Lock(handle, &hasLock), kInvalidHandle);
        EXPECT_EQ(IviSession_Unlock(handle, &hasLock), kInvalidHandle);
        EXPECT_EQ(IviSession_SetError(handle, kError, "text"), kInvalidHandle);
        EXPECT_EQ(IviSession_GetError(handle, 4, &code, text.data()), kInvalidHandle);
        EXPECT_EQ(IviSession_ClearError(handle), kInvalidHandle);
        EXPECT_EQ(data, &disposed);
        EXPECT_EQ(hasLock, VI_FALSE);
        EXPECT_EQ(code, 7);
        EXPECT_STREQ(text.data(), "x");
    }
}

TEST_F(SessionService, ZeroIsNotASession) {
    ViAddr data = nullptr;
    EXPECT_EQ(IviSession_Dispose(VI_NULL), kInvalidHandle);
    EXPECT_EQ(IviSession_SetDataPtr(VI_NULL, &data), kInvalidHandle);
    EXPECT_EQ(IviSession_GetDataPtr(VI_NULL, &data), kInvalidHandle);
    EXPECT_EQ(IviSession_Lock(VI_NULL, nullptr), kInvalidHandle);
    EXPECT_EQ(IviSession_Unlock(VI_NULL, nullptr), kInvalidHandle);
}

TEST_F(SessionService, DataPointerIsNullUntilItIsStored) {
    const Session session;
    int value = 0;
    ViAddr data = &value;
    EXPECT_EQ(IviSession_GetDataPtr(session, &data), VI_SUCCESS);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(IviSession_SetDataPtr(session, &value), VI_SUCCESS);
    EXPECT_EQ(IviSession_GetDataPtr(session, &data), VI_SUCCESS);
    EXPECT_EQ(data, &value);
    EXPECT_EQ(IviSession_SetDataPtr(session, nullptr), VI_SUCCESS);
    EXPECT_EQ(IviSession_GetDataPtr(session, &data), VI_SUCCESS);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(IviSession_GetDataPtr(session, nullptr), kNullPointer);
}

TEST_F(SessionService, ANewSessionInheritsNothingFromADisposedOne) {
    ViSession old = VI_NULL;
    int value = 0;
    ASSERT_EQ(IviSession_New(&old), VI_SUCCESS);
    ASSERT_EQ(IviSession_SetDataPtr(old, &value), VI_SUCCESS);
    ASSERT_EQ(IviSession_SetError(old, kError, "old"), VI_SUCCESS);
    ASSERT_EQ(IviSession_Lock(old, nullptr), VI_SUCCESS);
    ASSERT_EQ(IviSession_Dispose(old), VI_SUCCESS);

    const Session session;
    ViAddr data = &value;
    EXPECT_EQ(IviSession_GetDataPtr(session, &data), VI_SUCCESS);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, 0, ""}));
    EXPECT_EQ(IviSession_Unlock(session, nullptr), kNotLocked);
    std::thread([&] {
        EXPECT_EQ(IviSession_Lock(session, nullptr), VI_SUCCESS);
        EXPECT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS);
    }).join();
}

// --------------------------------------------------------------------------------------------------------------- lock

/// A thread that takes a session's lock and reports when it holds it.
class Contender {
  public:
    explicit Contender(ViSession session)
        : thread_([this, session] {
              started_ = true;
              status_ = IviSession_Lock(session, nullptr);
              through_ = true;
              if (status_ == VI_SUCCESS) {
                  IviSession_Unlock(session, nullptr);
              }
          }) {
        while (!started_) {
            std::this_thread::yield();
        }
    }
    Contender(const Contender&) = delete;
    Contender& operator=(const Contender&) = delete;
    ~Contender() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    bool IsWaiting() {
        std::this_thread::sleep_for(kAWhile);
        return !through_;
    }

    ViStatus Status() {
        thread_.join();
        return status_;
    }

  private:
    std::atomic<bool> started_{false};
    std::atomic<bool> through_{false};
    std::atomic<ViStatus> status_{-1};
    std::thread thread_;
};

TEST_F(SessionService, LockExcludesOtherThreads) {
    const Session session;
    constexpr int kRounds = 5000;
    int inside = 0; // not atomic: only the session's lock protects it
    int rounds = 0;
    bool everShared = false;
    const auto work = [&] {
        for (int i = 0; i < kRounds; ++i) {
            IviSession_Lock(session, nullptr);
            everShared = everShared || ++inside != 1;
            ++rounds;
            --inside;
            IviSession_Unlock(session, nullptr);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(work);
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_FALSE(everShared);
    EXPECT_EQ(rounds, 4 * kRounds);
}

TEST_F(SessionService, LockIsHeldUntilEveryLockIsReleased) {
    const Session session;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(IviSession_Lock(session, nullptr), VI_SUCCESS);
    }
    Contender contender(session);
    EXPECT_TRUE(contender.IsWaiting());
    ASSERT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS);
    ASSERT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS);
    EXPECT_TRUE(contender.IsWaiting());
    ASSERT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS);
    EXPECT_EQ(contender.Status(), VI_SUCCESS);
}

TEST_F(SessionService, EveryWaitingThreadGetsTheLock) {
    const Session session;
    ASSERT_EQ(IviSession_Lock(session, nullptr), VI_SUCCESS);
    Contender first(session);
    Contender second(session);
    Contender third(session);
    EXPECT_TRUE(third.IsWaiting());
    ASSERT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS);
    EXPECT_EQ(first.Status(), VI_SUCCESS);
    EXPECT_EQ(second.Status(), VI_SUCCESS);
    EXPECT_EQ(third.Status(), VI_SUCCESS);
}

TEST_F(SessionService, LocksOfDifferentSessionsAreIndependent) {
    const Session one;
    const Session other;
    ASSERT_EQ(IviSession_Lock(one, nullptr), VI_SUCCESS);
    Contender contender(other);
    EXPECT_EQ(contender.Status(), VI_SUCCESS);
    ASSERT_EQ(IviSession_Unlock(one, nullptr), VI_SUCCESS);
}

TEST_F(SessionService, OnlyLockWaitsForTheLock) {
    const Session session;
    ASSERT_EQ(IviSession_Lock(session, nullptr), VI_SUCCESS);
    std::thread([&] {
        ViAddr data = nullptr;
        EXPECT_EQ(IviSession_SetDataPtr(session, &data), VI_SUCCESS);
        EXPECT_EQ(IviSession_GetDataPtr(session, &data), VI_SUCCESS);
        EXPECT_EQ(IviSession_SetError(session, kError, "text"), VI_SUCCESS);
        EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kError, "text"}));
        EXPECT_EQ(IviSession_ClearError(session), VI_SUCCESS);
    }).join();
    EXPECT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS);
}

TEST_F(SessionService, LockSetsAFalseHasLockAndUnlockClearsATrueOne) {
    const Session session;
    ViBoolean hasLock = VI_FALSE;
    EXPECT_EQ(IviSession_Lock(session, &hasLock), VI_SUCCESS);
    EXPECT_EQ(hasLock, VI_TRUE);
    Contender contender(session);
    EXPECT_TRUE(contender.IsWaiting());
    EXPECT_EQ(IviSession_Unlock(session, &hasLock), VI_SUCCESS);
    EXPECT_EQ(hasLock, VI_FALSE);
    EXPECT_EQ(contender.Status(), VI_SUCCESS);
}

TEST_F(SessionService, LockWithATrueHasLockDoesNothing) {
    const Session session;
    ViBoolean hasLock = VI_TRUE;
    EXPECT_EQ(IviSession_Lock(session, &hasLock), VI_SUCCESS);
    EXPECT_EQ(hasLock, VI_TRUE);
    EXPECT_EQ(IviSession_Unlock(session, nullptr), kNotLocked);
}

TEST_F(SessionService, UnlockWithAFalseHasLockDoesNothing) {
    const Session session;
    ASSERT_EQ(IviSession_Lock(session, nullptr), VI_SUCCESS);
    ViBoolean hasLock = VI_FALSE;
    EXPECT_EQ(IviSession_Unlock(session, &hasLock), VI_SUCCESS);
    EXPECT_EQ(hasLock, VI_FALSE);
    EXPECT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS); // it was still held
    EXPECT_EQ(IviSession_Unlock(session, nullptr), kNotLocked);
}

TEST_F(SessionService, UnlockByAThreadThatDoesNotHoldTheLockChangesNothing) {
    const Session session;
    ViBoolean hasLock = VI_TRUE;
    EXPECT_EQ(IviSession_Unlock(session, &hasLock), kNotLocked);
    EXPECT_EQ(hasLock, VI_TRUE);
    ASSERT_EQ(IviSession_Lock(session, nullptr), VI_SUCCESS);
    std::thread([&] { EXPECT_EQ(IviSession_Unlock(session, nullptr), kNotLocked); }).join();
    Contender contender(session);
    EXPECT_TRUE(contender.IsWaiting());
    EXPECT_EQ(IviSession_Unlock(session, nullptr), VI_SUCCESS);
    EXPECT_EQ(contender.Status(), VI_SUCCESS);
}

TEST_F(SessionService, AThreadDoesNotInheritTheLockOfAThreadThatEnded) {
    const Session session;
    std::thread([&] { IviSession_Lock(session, nullptr); }).join();
    std::thread([&] { EXPECT_EQ(IviSession_Unlock(session, nullptr), kNotLocked); }).join();
}

TEST_F(SessionService, ThreadsWaitingForTheLockOfADisposedSessionGetInvalidSessionHandle) {
    ViSession handle = VI_NULL;
    ASSERT_EQ(IviSession_New(&handle), VI_SUCCESS);
    ASSERT_EQ(IviSession_Lock(handle, nullptr), VI_SUCCESS);
    Contender first(handle);
    Contender second(handle);
    EXPECT_TRUE(first.IsWaiting());
    EXPECT_EQ(IviSession_Dispose(handle), VI_SUCCESS);
    EXPECT_EQ(first.Status(), kInvalidHandle);
    EXPECT_EQ(second.Status(), kInvalidHandle);
    EXPECT_EQ(IviSession_Unlock(handle, nullptr), kInvalidHandle);
}

TEST_F(SessionService, SessionsMayComeAndGoWhileOtherThreadsUseTheirHandles) {
    std::atomic<ViSession> current{VI_NULL};
    std::atomic<bool> stop{false};
    const auto use = [&] {
        while (!stop) {
            const ViSession handle = current;
            ViAddr data = nullptr;
            if (IviSession_GetDataPtr(handle, &data) == VI_SUCCESS && data != nullptr) {
                EXPECT_EQ(data, reinterpret_cast<ViAddr>(std::uintptr_t{handle}));
            }
            if (IviSession_Lock(handle, nullptr) == VI_SUCCESS) {
                IviSession_SetError(handle, kError, "a description that does not fit into the string itself");
                IviSession_Unlock(handle, nullptr);
            }
        }
    };
    std::thread one(use);
    std::thread other(use);
    for (int i = 0; i < 3000; ++i) {
        ViSession handle = VI_NULL;
        ASSERT_EQ(IviSession_New(&handle), VI_SUCCESS);
        ASSERT_EQ(IviSession_SetDataPtr(handle, reinterpret_cast<ViAddr>(std::uintptr_t{handle})), VI_SUCCESS);
        current = handle;
        ASSERT_EQ(IviSession_Dispose(handle), VI_SUCCESS);
    }
    stop = true;
    one.join();
    other.join();
}

// ------------------------------------------------------------------------------------------------------ error records

TEST_F(SessionService, RecordIsEmptyAtFirst) {
    const Session session;
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, 0, ""}));
    EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, 0, ""}));
}

TEST_F(SessionService, SetErrorWritesTheRecordsOfTheSessionAndOfTheThread) {
    const Session session;
    const Session other;
    EXPECT_EQ(IviSession_SetError(session, kError, "first"), VI_SUCCESS);
    EXPECT_EQ(ReadError(other), (Record{VI_SUCCESS, 0, ""}));
    std::thread([] { EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, 0, ""})); }).join();
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kError, "first"}));
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, 0, ""}));
    EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, kError, "first"}));
    EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, 0, ""}));
}

TEST_F(SessionService, SetErrorWithAZeroHandleWritesOnlyTheThreadsRecord) {
    const Session session;
    EXPECT_EQ(IviSession_SetError(VI_NULL, kError, "thread"), VI_SUCCESS);
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, 0, ""}));
    EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, kError, "thread"}));
}

TEST_F(SessionService, SetErrorWithAnUnknownHandleWritesTheThreadsRecord) {
    EXPECT_EQ(IviSession_SetError(0xFFFFFFFF, kError, "unknown"), kInvalidHandle);
    EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, kError, "unknown"}));
}

TEST_F(SessionService, RecordOfASessionIsTheSameForEveryThread) {
    const Session session;
    std::thread([&] { IviSession_SetError(session, kError, "from another thread"); }).join();
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kError, "from another thread"}));
    EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, 0, ""}));
}

TEST_F(SessionService, OnlyAMoreSevereCodeReplacesTheRecord) {
    struct Case {
        ViStatus first = VI_SUCCESS;
        ViStatus second = VI_SUCCESS;
        Record expected;
    };
    const Case cases[] = {
        {kError, kOtherError, {0, kError, "first"}},       {kError, kWarning, {0, kError, "first"}},
        {kError, VI_SUCCESS, {0, kError, "first"}},        {kWarning, kError, {0, kError, "second"}},
        {kWarning, kOtherWarning, {0, kWarning, "first"}}, {kWarning, VI_SUCCESS, {0, kWarning, "first"}},
        {VI_SUCCESS, kWarning, {0, kWarning, "second"}},   {VI_SUCCESS, kError, {0, kError, "second"}},
        {VI_SUCCESS, VI_SUCCESS, {0, VI_SUCCESS, "first"}}};
    for (const auto& [first, second, expected] : cases) {
        const Session session;
        IviSession_ClearError(VI_NULL);
        EXPECT_EQ(IviSession_SetError(session, first, "first"), VI_SUCCESS);
        EXPECT_EQ(IviSession_SetError(session, second, "second"), VI_SUCCESS);
        EXPECT_EQ(ReadError(session), expected) << first << ' ' << second;
        EXPECT_EQ(ReadError(VI_NULL), expected) << first << ' ' << second;
    }
}

TEST_F(SessionService, AnEmptyDescriptionIsFilledInByTheSameCodeOnly) {
    const Session session;
    IviSession_SetError(session, kError, "");
    IviSession_SetError(session, kOtherError, "other");
    IviSession_SetError(session, kError, "late");
    IviSession_SetError(session, kError, "too late");
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kError, "late"}));
}

TEST_F(SessionService, AReplacedCodeDropsTheOldDescription) {
    const Session session;
    IviSession_SetError(session, kWarning, "warning");
    IviSession_SetError(session, kError, nullptr);
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kError, ""}));
}

TEST_F(SessionService, ClearErrorClearsOneRecord) {
    const Session session;
    IviSession_SetError(session, kError, "text");
    EXPECT_EQ(IviSession_ClearError(session), VI_SUCCESS);
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, 0, ""}));
    EXPECT_EQ(IviSession_SetError(session, kOtherError, "again"), VI_SUCCESS);
    EXPECT_EQ(IviSession_ClearError(VI_NULL), VI_SUCCESS);
    EXPECT_EQ(ReadError(VI_NULL), (Record{VI_SUCCESS, 0, ""}));
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kOtherError, "again"}));
}

TEST_F(SessionService, GetErrorWithSizeZeroReturnsTheRequiredSizeAndClearsNothing) {
    const Session session;
    IviSession_SetError(session, kError, "four");
    ViStatus code = 0;
    EXPECT_EQ(IviSession_GetError(session, 0, &code, nullptr), 5);
    EXPECT_EQ(code, kError);
    EXPECT_EQ(IviSession_GetError(session, 0, nullptr, nullptr), 5);
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kError, "four"}));
    EXPECT_EQ(IviSession_GetError(session, 0, nullptr, nullptr), 1);
}

TEST_F(SessionService, GetErrorTruncatesTextThatDoesNotFitAndClearsTheRecord) {
    const Session session;
    IviSession_SetError(session, kError, "0123456789");
    std::array<ViChar, 8> text{};
    text.fill('#');
    EXPECT_EQ(IviSession_GetError(session, 5, nullptr, text.data()), 11);
    EXPECT_EQ(std::string(text.data(), text.size()), std::string("0123\0###", 8));
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, 0, ""}));
}

TEST_F(SessionService, GetErrorWithSizeOneWritesOnlyTheNul) {
    const Session session;
    IviSession_SetError(session, kError, "text");
    std::array<ViChar, 2> text{'#', '#'};
    EXPECT_EQ(IviSession_GetError(session, 1, nullptr, text.data()), 5);
    EXPECT_EQ(text[0], '\0');
    EXPECT_EQ(text[1], '#');
}

TEST_F(SessionService, GetErrorFillsABufferOfExactlyTheRequiredSize) {
    const Session session;
    IviSession_SetError(session, kError, "0123456789");
    std::array<ViChar, 11> text{};
    EXPECT_EQ(IviSession_GetError(session, 11, nullptr, text.data()), VI_SUCCESS);
    EXPECT_STREQ(text.data(), "0123456789");
}

TEST_F(SessionService, GetErrorWithANegativeSizeCopiesEverything) {
    const Session session;
    const std::string description(1 << 20, 'x');
    IviSession_SetError(session, kError, description.c_str());
    std::vector<ViChar> text(description.size() + 1, '#');
    ViStatus code = 0;
    EXPECT_EQ(IviSession_GetError(session, 0, nullptr, nullptr), (1 << 20) + 1);
    EXPECT_EQ(IviSession_GetError(session, -1, &code, text.data()), VI_SUCCESS);
    EXPECT_EQ(code, kError);
    EXPECT_EQ(text.data(), description);
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, 0, ""}));
}

TEST_F(SessionService, GetErrorWithoutABufferIsANullPointerErrorAndClearsNothing) {
    const Session session;
    IviSession_SetError(session, kError, "text");
    ViStatus code = 7;
    EXPECT_EQ(IviSession_GetError(session, 10, &code, nullptr), kNullPointer);
    EXPECT_EQ(IviSession_GetError(session, -1, &code, nullptr), kNullPointer);
    EXPECT_EQ(code, 7);
    EXPECT_EQ(ReadError(session), (Record{VI_SUCCESS, kError, "text"}));
}

struct ReportsWhenDestroyed {
    std::atomic<ViStatus>* result = nullptr;
    ReportsWhenDestroyed() = default;
    ReportsWhenDestroyed(const ReportsWhenDestroyed&) = delete;
    ReportsWhenDestroyed& operator=(const ReportsWhenDestroyed&) = delete;
    ~ReportsWhenDestroyed() {
        if (result != nullptr) {
            *result = IviSession_SetError(VI_NULL, kError, "a description that does not fit into the string itself");
        }
    }
};
thread_local ReportsWhenDestroyed reportsWhenDestroyed;

TEST_F(SessionService, AThreadThatIsEndingHasNoRecord) {
    std::atomic<ViStatus> result{0};
    std::thread([&] {
        reportsWhenDestroyed.result = &result; // constructed before the thread's record, so destroyed after it
        IviSession_SetError(VI_NULL, kError, "text");
    }).join();
    EXPECT_EQ(result, static_cast<ViStatus>(0xBFFA11A0));
}

} // namespace

#include "platform/threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "platform/clock.h"
#include "support/bounded_wait.h"

namespace platform_tests {
namespace {

using test_support::kLongWait;

std::string MutexName(const char* name) {
    return std::string(name) + std::to_string(platform::CurrentProcessId());
}

TEST(Threads, RunTheirRoutineWithTheArgument) {
    std::atomic<int> value = 0;
    const auto thread =
        platform::StartThread([](void* argument) { *static_cast<std::atomic<int>*>(argument) = 42; }, &value);
    ASSERT_NE(thread, platform::kNoThread);
    EXPECT_TRUE(platform::WaitThread(thread, kLongWait));
    EXPECT_TRUE(platform::WaitThread(thread, 0)) << "an ended thread stays ended";
    platform::CloseThread(thread);
    EXPECT_EQ(value, 42);
}

TEST(Threads, WaitEndsWhenTheTimeIsUp) {
    const auto event = platform::CreateManualEvent();
    const auto routine = [](void* argument) {
        platform::WaitEvent(*static_cast<const platform::EventHandle*>(argument), kLongWait);
    };
    auto argument = event;
    const auto thread = platform::StartThread(routine, &argument);
    EXPECT_FALSE(platform::WaitThread(thread, 20));
    platform::SignalEvent(event);
    EXPECT_TRUE(platform::WaitThread(thread, kLongWait));
    platform::CloseThread(thread);
    platform::CloseEvent(event);
}

TEST(Threads, MayBeLeftAlone) {
    struct Shared {
        platform::EventHandle go, done;
    } shared = {platform::CreateManualEvent(), platform::CreateManualEvent()};
    const auto routine = [](void* argument) {
        const Shared events = *static_cast<Shared*>(argument);
        platform::WaitEvent(events.go, kLongWait);
        platform::SignalEvent(events.done);
    };
    platform::CloseThread(platform::StartThread(routine, &shared));
    platform::SignalEvent(shared.go);
    EXPECT_TRUE(platform::WaitEvent(shared.done, kLongWait));
    platform::CloseEvent(shared.go);
    platform::CloseEvent(shared.done);
}

TEST(Threads, HaveIdsOfTheirOwn) {
    std::atomic<std::uint32_t> id = 0;
    const auto routine = [](void* argument) {
        *static_cast<std::atomic<std::uint32_t>*>(argument) = platform::CurrentThreadId();
    };
    const auto thread = platform::StartThread(routine, &id);
    EXPECT_TRUE(platform::WaitThread(thread, kLongWait));
    platform::CloseThread(thread);
    EXPECT_NE(id, 0u);
    EXPECT_NE(id, platform::CurrentThreadId());
    EXPECT_EQ(platform::CurrentThreadId(), platform::CurrentThreadId());
    EXPECT_NE(platform::CurrentProcessId(), 0u);
}

TEST(Events, StaySignalled) {
    const auto event = platform::CreateManualEvent();
    ASSERT_NE(event, 0);
    EXPECT_FALSE(platform::WaitEvent(event, 0));
    EXPECT_FALSE(platform::WaitEvent(event, 10));
    platform::SignalEvent(event);
    EXPECT_TRUE(platform::WaitEvent(event, 0));
    EXPECT_TRUE(platform::WaitEvent(event, 0));
    platform::CloseEvent(event);
}

// Takes a mutex on a thread of its own and keeps it until told otherwise.
class OtherOwner {
  public:
    OtherOwner(const std::string& name, bool releases)
        : mutex_(platform::CreateNamedMutex(name.c_str())), releases_(releases) {
        thread_ = platform::StartThread([](void* self) { static_cast<OtherOwner*>(self)->Run(); }, this);
        EXPECT_TRUE(platform::WaitEvent(tried_, kLongWait));
    }
    ~OtherOwner() {
        LetGo();
        platform::CloseThread(thread_);
        platform::CloseMutex(mutex_);
        platform::CloseEvent(tried_);
        platform::CloseEvent(finish_);
    }
    void LetGo() {
        platform::SignalEvent(finish_);
        EXPECT_TRUE(platform::WaitThread(thread_, kLongWait));
    }
    bool HasTaken() const { return taken_; }

  private:
    void Run() {
        taken_ = platform::TakeMutex(mutex_, 50);
        platform::SignalEvent(tried_);
        platform::WaitEvent(finish_, kLongWait);
        if (taken_ && releases_) platform::ReleaseMutex(mutex_);
    }
    platform::MutexHandle mutex_;
    bool releases_;
    std::atomic<bool> taken_ = false;
    platform::EventHandle tried_ = platform::CreateManualEvent();
    platform::EventHandle finish_ = platform::CreateManualEvent();
    platform::ThreadHandle thread_ = platform::kNoThread;
};

TEST(NamedMutexes, AreSharedByTheirName) {
    const std::string name = MutexName("ZarnShared");
    const auto mutex = platform::CreateNamedMutex(name.c_str());
    ASSERT_NE(mutex, 0);
    OtherOwner other(name, true);
    ASSERT_TRUE(other.HasTaken());
    EXPECT_FALSE(platform::TakeMutex(mutex, 20));
    other.LetGo();
    EXPECT_TRUE(platform::TakeMutex(mutex, kLongWait));
    platform::ReleaseMutex(mutex);
    platform::CloseMutex(mutex);
}

TEST(NamedMutexes, OfOtherNamesAreIndependent) {
    const auto mutex = platform::CreateNamedMutex(MutexName("ZarnOne").c_str());
    ASSERT_TRUE(platform::TakeMutex(mutex, 0));
    const OtherOwner other(MutexName("ZarnTwo"), true);
    EXPECT_TRUE(other.HasTaken());
    platform::ReleaseMutex(mutex);
    platform::CloseMutex(mutex);
}

TEST(NamedMutexes, CanBeTakenAgainByTheirOwner) {
    const std::string name = MutexName("ZarnTwice");
    const auto mutex = platform::CreateNamedMutex(name.c_str());
    const auto sameMutex = platform::CreateNamedMutex(name.c_str());
    EXPECT_TRUE(platform::TakeMutex(mutex, 0));
    EXPECT_TRUE(platform::TakeMutex(sameMutex, 0));
    platform::ReleaseMutex(mutex);
    EXPECT_FALSE(OtherOwner(name, true).HasTaken()) << "taken twice, released once";
    platform::ReleaseMutex(sameMutex);
    EXPECT_TRUE(OtherOwner(name, true).HasTaken());
    platform::CloseMutex(mutex);
    platform::CloseMutex(sameMutex);
}

TEST(NamedMutexes, ComeFreeWhenTheirOwnerEnds) {
    const std::string name = MutexName("ZarnAbandoned");
    const auto mutex = platform::CreateNamedMutex(name.c_str());
    OtherOwner other(name, false);
    ASSERT_TRUE(other.HasTaken());
    other.LetGo();
    EXPECT_TRUE(platform::TakeMutex(mutex, kLongWait));
    platform::ReleaseMutex(mutex);
    platform::CloseMutex(mutex);
}

}  // namespace
}  // namespace platform_tests

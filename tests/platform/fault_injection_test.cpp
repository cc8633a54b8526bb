// The faults that the native build can order, checked on the calls themselves.
#ifndef _WIN32

#include "host/fault_injection.h"

#include <gtest/gtest.h>

#include <string_view>

#include "platform/files.h"
#include "platform/registry.h"
#include "platform/socket_fixtures.h"
#include "platform/system.h"
#include "support/host_registry.h"

namespace platform_tests {
namespace {

using fault_injection::Call;

class FaultInjection : public SocketTest {
  protected:
    void TearDown() override {
        fault_injection::Reset();
        SocketTest::TearDown();
    }
};

TEST_F(FaultInjection, TheNthWriteFailsAndNoOther) {
    const std::string path = platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "flt");
    const auto file =
        platform::OpenFile(path.c_str(), {platform::FileAccess::Write, platform::FileDisposition::OpenExisting, false});
    {
        const fault_injection::Scope scope(Call::WriteFile, 2, platform::kErrorDiskFull);
        EXPECT_TRUE(platform::WriteFile(file, std::string_view("1")));
        EXPECT_FALSE(scope.Fired());
        EXPECT_FALSE(platform::WriteFile(file, std::string_view("2")));
        EXPECT_EQ(platform::LastSystemError(), platform::kErrorDiskFull);
        EXPECT_TRUE(scope.Fired());
        EXPECT_TRUE(platform::WriteFile(file, std::string_view("3")));
        EXPECT_EQ(fault_injection::CallCount(Call::WriteFile), 3);
    }
    EXPECT_TRUE(platform::WriteFile(file, std::string_view("4")));
    platform::CloseFile(file);
    EXPECT_TRUE(platform::DeleteFilePath(path.c_str()));
}

TEST_F(FaultInjection, FailFromKeepsFailing) {
    fault_injection::FailFrom(Call::OpenFile, 1, platform::kErrorAccessDenied);
    for (int time = 0; time < 3; ++time) {
        EXPECT_EQ(platform::OpenFile("/dev/null", {}), platform::kNoFile);
        EXPECT_EQ(platform::LastSystemError(), platform::kErrorAccessDenied);
    }
}

TEST_F(FaultInjection, SocketCallsFailWithTheGivenNumber) {
    const ConnectedPair pair = ConnectPair();
    fault_injection::FailCall(Call::Send, 1, 10054);
    fault_injection::FailCall(Call::Receive, 1, 10053);
    fault_injection::FailCall(Call::CreateSocket, 1, 10055);
    EXPECT_EQ(platform::Send(pair.client.Get(), std::string_view("x")), -1);
    EXPECT_EQ(platform::LastSocketError(), 10054);
    char buffer[4];
    EXPECT_EQ(platform::Receive(pair.client.Get(), buffer), -1);
    EXPECT_EQ(platform::LastSocketError(), 10053);
    EXPECT_EQ(platform::CreateSocket(platform::SocketKind::Stream), platform::kNoSocket);
    EXPECT_EQ(platform::LastSocketError(), 10055);
    EXPECT_EQ(platform::Send(pair.client.Get(), std::string_view("x")), 1);
}

TEST_F(FaultInjection, RegistryCanRefuseWritesAndBeCleared) {
    auto key = platform::RegistryKey::Create(platform::RegistryRoot::CurrentUser, "FaultTest", nullptr);
    host_registry::RefuseWrites(5);
    EXPECT_EQ(key.WriteNumber("n", 1), 5);
    host_registry::RefuseWrites(0);
    EXPECT_EQ(key.WriteNumber("n", 1), 0);
    host_registry::Clear();
    EXPECT_FALSE(platform::RegistryKeyExists(platform::RegistryRoot::CurrentUser, "FaultTest"));
    EXPECT_EQ(key.WriteNumber("n", 1), 1018);
}

}  // namespace
}  // namespace platform_tests

#endif

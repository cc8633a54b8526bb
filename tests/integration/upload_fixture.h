// Tests that send into the folder for uploads of the real servers, which each leaves as it found it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ftp/worker/result_codes.h"
#include "integration/real_server.h"

inline constexpr char kUploads[] = "/incoming";

class UploadFixture : public RealServer {
  protected:
    void SetUp() override {
        RealServer::SetUp();
        Connect();
        ASSERT_EQ(Open(kUploads), FTP_COMPLETE);
        before = NamesOnDisk(kUploads);
    }
    void TearDown() override { EXPECT_EQ(NamesOnDisk(kUploads), before); }

    static std::string OnServer(const std::string& name) { return std::string(kUploads) + "/" + name; }
    // The same bytes in every run, without a pattern that a lost or doubled piece could fit.
    static std::string SomeBytes(std::size_t count) {
        std::string bytes(count, '\0');
        std::uint32_t state = 959;
        for (char& byte : bytes) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<char>(state >> 24);
        }
        return bytes;
    }

    std::vector<std::string> before;
};

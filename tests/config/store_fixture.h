// A store of its own for each test, away from a user's, removed when the test ends; the settings start as those of a
// program that has read nothing. Also the shell's classes that tests register, and values of the wrong kind.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/site.h"
#include "platform/registry.h"
#include "support/recording_view.h"

class StoreTest : public testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // A key below the test's root, made if need be.
    static platform::RegistryKey Key(const std::string& subkey);
    static platform::RegistryKey Open(const std::string& subkey);
    static bool Exists(const std::string& subkey);
    static std::vector<std::string> Subkeys(const std::string& subkey);
    // Key names below the root exactly as stored.
    static bool HasSubkey(const std::string& subkey, const std::string& exactName);

    // From here on every trace line is recorded as a console line.
    static void RecordTraces();

    // A class of the shell for `extension`; false where the system does not let a test do that.
    bool GiveClass(const std::string& extension, const std::string& className);
    bool SetClassText(const std::string& key, const std::string& text);

    RecordingView view_;

  private:
    std::vector<std::string> classKeys_;
};

SitePtr MakeSite(const char* name, const char* host = "host.example", const char* user = "kim");

// What tests of traced functions share: switches off before and after, a recording view, texts of one's own.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/log_file.h"
#include "foundation/trace.h"
#include "platform/system.h"
#include "platform/threads.h"
#include "support/recording_view.h"

class TracedTest : public testing::Test {
  protected:
    void SetUp() override { AllOff(); }
    void TearDown() override {
        AllOff();
        SetLogFileName(nullptr);
        SetCatalogueSource(nullptr);
        Texts().clear();
    }

    // Every trace line reaches the recorded console.
    static void TraceToConsole() {
        gTrace.verbose = true;
        gTrace.debug = true;
    }
    static void AllOff() {
        gTrace.logging = false;
        gTrace.verbose = false;
        gTrace.debug = false;
    }
    // From now on the catalogue holds only texts given here.
    static void SetText(unsigned id, const std::string& text) {
        Texts()[id] = text;
        SetCatalogueSource([](unsigned wanted, std::size_t longest, std::string& out) {
            const auto found = Texts().find(wanted);
            if (found == Texts().end()) {
                platform::SetLastSystemError(1814);
                return false;
            }
            out = found->second.substr(0, longest);
            return true;
        });
    }

    // What every stamped line of this thread begins with.
    static std::string Stamp() {
        char stamp[64];
        std::snprintf(stamp, sizeof stamp, "Zarn:(%x,%x) ", static_cast<unsigned>(platform::CurrentProcessId()),
                      static_cast<unsigned>(platform::CurrentThreadId()));
        return stamp;
    }

    RecordingView view;

  private:
    static std::map<unsigned, std::string>& Texts() {
        static std::map<unsigned, std::string> texts;
        return texts;
    }
};

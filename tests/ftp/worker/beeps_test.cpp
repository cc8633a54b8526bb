// The native build records the beeps; under Windows they would only be heard.
#ifndef _WIN32

#include "ftp/worker/beeps.h"

#include <gtest/gtest.h>

#include "host/recorded_calls.h"
#include "support/session_harness.h"

namespace {

using Beeps = std::vector<platform::Beep>;

TEST(Beeps, OneSoundForAFailureAndOneForTheEnd) {
    SessionHarness h;
    gZarn.BELL = 1;
    const recorded_calls::Recording recording;
    BeepOnFailure();
    BeepAtEnd();
    EXPECT_EQ(recording.Beeps(), (Beeps{platform::Beep::Exclamation, platform::Beep::Asterisk}));
}

TEST(Beeps, WithoutTheSettingNothingIsHeard) {
    SessionHarness h;
    gZarn.BELL = 0;
    const recorded_calls::Recording recording;
    BeepOnFailure();
    BeepAtEnd();
    EXPECT_TRUE(recording.Beeps().empty());
}

TEST(Beeps, AQuietOperationIsQuietToItsEndOnly) {
    SessionHarness h;
    gZarn.BELL = 1;
    const recorded_calls::Recording recording;
    {
        const QuietBeeps outer;
        {
            const QuietBeeps inner;
            BeepAtEnd();
        }
        BeepOnFailure();
    }
    EXPECT_TRUE(recording.Beeps().empty());
    BeepAtEnd();
    EXPECT_EQ(recording.Beeps(), (Beeps{platform::Beep::Asterisk}));
}

TEST(Beeps, AnotherThreadsOperationIsNotQuiet) {
    SessionHarness h;
    gZarn.BELL = 1;
    const QuietBeeps quiet;
    Beeps heard;
    OtherThread([&] {
        const recorded_calls::Recording recording;
        BeepAtEnd();
        heard = recording.Beeps();
    }).Join();
    EXPECT_EQ(heard, (Beeps{platform::Beep::Asterisk}));
}

}  // namespace

#endif

// A session engine at its starting state for one test, with a scripted server to talk to, recording views, and on wish
// the window's time-out timer in a thread of its own.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "config/settings.h"
#include "config/site.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"
#include "platform/threads.h"
#include "support/recording_session_view.h"
#include "support/recording_view.h"
#include "support/scripted_server.h"

// Starts sockets once for the program; settings, flags and totals as after start-up; verbose, so that messages are
// seen.
class SessionHarness {
  public:
    SessionHarness();
    ~SessionHarness();  // stops a worker that is left, restores settings and switches
    SessionHarness(const SessionHarness&) = delete;
    SessionHarness& operator=(const SessionHarness&) = delete;

    // A site on the scripted server, not connected; also the active site.
    Site* MakeSite(const char* host = "127.0.0.1", const char* user = "user", const char* password = "secret");
    // A site on which a log-in has been done, with the current directory "/".
    Site* ConnectedSite();
    // Bytes of a local file.
    static std::string LocalBytes(const std::string& path);
    // Path of a file in this test's own folder, which is removed with everything in it.
    std::string LocalPath(const std::string& name);

    ScriptedServer server;
    RecordingView console;
    RecordingSessionView view;
    char replyText[kReplySize] = {};
    ReplyBuffer reply{replyText};

  private:
    ZarnSettings before_;
    std::vector<SitePtr> sites_;
    std::string folder_;
};

// Fires the time-out timer as the window does, every few milliseconds, while the object lives.
class TimeOutTimer {
  public:
    TimeOutTimer();
    ~TimeOutTimer();
    TimeOutTimer(const TimeOutTimer&) = delete;
    TimeOutTimer& operator=(const TimeOutTimer&) = delete;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

// Runs a function in a thread of its own; joins at the end.
class OtherThread {
  public:
    explicit OtherThread(std::function<void()> function);
    ~OtherThread() { Join(); }
    OtherThread(const OtherThread&) = delete;
    OtherThread& operator=(const OtherThread&) = delete;
    void Join();

  private:
    std::function<void()> function_;
    platform::ThreadHandle thread_;
};

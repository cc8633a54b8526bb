// What the session engine asks of the windows. There is one current instance: the windows fill it in at
// start-up, a test installs a recording one. Entries that are not filled in do nothing. Calls may come from the worker;
// the windows carry them to their own thread.
#pragma once

#include <cstdint>
#include <string>

#include "config/site.h"
#include "platform/threads.h"

struct TextQuestion {
    std::string caption;
    std::string prompt;
    bool isSecret = false;
    std::size_t longest = 80;  // bytes
};

struct SessionView {
    // First part of the status bar; an empty text clears it.
    void (*setStatusText)(const char* text) = [](const char*) {};
    // Asks for a text (password, account, name). False when the user cancelled.
    bool (*askText)(const TextQuestion& question, std::string& answer) = [](const TextQuestion&, std::string&) {
        return false;
    };
    // The modal server-error dialog for an operation code (650..662) and the server's reply.
    void (*showServerError)(int operation, const char* reply) = [](int, const char*) {};
    // A busy, connecting or aborting flag changed, or the connection did: title, toolbar, status bar, cursor.
    void (*refreshWindow)() = [] {};
    // True when the tree has a node for the site.
    bool (*siteHasNode)(const Site* site) = [](const Site*) { return true; };
    // A connect succeeded: add `directory` under the site's node and select it (which lists it).
    void (*showFirstDirectory)(Site* site, const char* directory) = [](Site*, const char*) {};
    // A site was disconnected: empty the list, collapse and reset its node, select it.
    void (*showDisconnected)(Site* site) = [](Site*) {};
    // Post the disconnect command for the site; returns at once.
    void (*postDisconnect)(Site* site) = [](Site*) {};
    // Close the program's window (exit command).
    void (*closeProgram)() = [] {};
    // Save the configuration (save on exit).
    void (*saveConfiguration)() = [] {};
    // Progress of the file being transferred, at most 20 times a second; total 0 when it is unknown.
    void (*setTransferProgress)(std::uint64_t done, std::uint64_t total) = [](std::uint64_t, std::uint64_t) {};
    // Waits for a thread while serving the messages that it sends; true when it ended in time.
    bool (*waitForThread)(platform::ThreadHandle thread, std::uint32_t milliseconds) = platform::WaitThread;
};
extern SessionView gSessionView;

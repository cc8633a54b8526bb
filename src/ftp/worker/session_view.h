// What the session engine asks of the windows. One current instance; the windows fill it in at start-up, a test fills
// in a recording one. Every call may come from the worker: the windows carry it to their own thread.
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
    void (*setStatusText)(const char* text) = nullptr;
    // Asks for a text (password, account, name). False when the user cancelled.
    bool (*askText)(const TextQuestion& question, std::string& answer) = nullptr;
    // The modal server-error dialog for an operation code (650..662) and the server's reply.
    void (*showServerError)(int operation, const char* reply) = nullptr;
    // A busy, connecting or aborting flag changed, or the connection did: title, toolbar, status bar, cursor.
    void (*refreshWindow)() = nullptr;
    // True when the site stands in the tree.
    bool (*siteHasNode)(const Site* site) = nullptr;
    // A connect ended well: add `directory` under the site's node and select it (which lists it).
    void (*showFirstDirectory)(Site* site, const char* directory) = nullptr;
    // A site was disconnected: empty the list, collapse and reset its node, select it.
    void (*showDisconnected)(Site* site) = nullptr;
    // Post the disconnect command for the site; returns at once.
    void (*postDisconnect)(Site* site) = nullptr;
    // Close the program's window (exit command).
    void (*closeProgram)() = nullptr;
    // Save the configuration (save on exit).
    void (*saveConfiguration)() = nullptr;
    // Progress of the file being transferred, at most 20 times a second; total 0 when it is unknown.
    void (*setTransferProgress)(std::uint64_t done, std::uint64_t total) = nullptr;
    // Waits for a thread while serving messages that it sends; true when it ended in time. Null: a plain wait.
    bool (*waitForThread)(platform::ThreadHandle thread, std::uint32_t milliseconds) = nullptr;
};
extern SessionView gSessionView;

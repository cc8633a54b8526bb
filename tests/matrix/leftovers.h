// What a program holds of the system: its sockets and threads, and a temporary folder of its own, so that a test can
// say that nothing is left.
#pragma once

#include <string>

namespace matrix {

// Sockets of this process that are open; -1 when the system cannot say.
int OpenSockets();
// Threads of the engine that run (native: of the process); -1 when the system cannot say.
int RunningThreads();

struct Holdings {
    int sockets;
    int threads;
    static Holdings Now() { return {OpenSockets(), RunningThreads()}; }
};
// Waits, within bounds, until no more is held than before (threads end a little after their work). Empty then, else
// what is left, in words.
std::string WhatIsLeft(const Holdings& before);

// Makes an empty folder the process's temporary one, once.
void UseOwnTemporaryFolder();

}  // namespace matrix

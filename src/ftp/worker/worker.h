// Who may run a remote operation, on which thread, and how that thread is stopped: flag, cancelled socket call, a
// bounded wait that serves the worker's messages. The commands that stop it are login/stop.h.
#pragma once

#include <cstdint>
#include <functional>

// Runs `job` on the worker thread. False, with message 6003, when an operation is running already. The busy flag is
// set before the thread starts and cleared when it ends.
bool StartWorker(const char* name, std::function<void()> job);
bool WorkerRunning();
// Cancels what the worker waits on and waits for its end; true when it ended within the time. UI thread only.
bool StopWorker(std::uint32_t milliseconds);
// The usual time that a worker gets.
inline constexpr std::uint32_t kWorkerEndMs = 5000;

// Until the next StopWorker ends, the worker shows no box and leaves a connection's end to the thread that stops it.
// Called before the first flag that makes the worker stop.
void AnnounceStop();
bool StoppingWorker();
// The worker closed a lost connection while it was being stopped; whoever stops it tells the user.
void DeferLossReport();
// True when the worker did so since the last call.
bool TakeDeferredLoss();

// Who may run a remote operation, on which thread, and how it is stopped: by Abort, exit, disconnect or the time-out.
// Stopping is cooperative: flag, cancelled socket call, a bounded wait that serves the worker's messages.
#pragma once

#include <cstdint>
#include <functional>

#include "config/site.h"

// Runs `job` on the worker thread. False, with message 6003, when an operation is running already. The busy flag is
// set before the thread starts and cleared when it ends.
bool StartWorker(const char* name, std::function<void()> job);
bool WorkerRunning();
// Cancels what the worker waits on and waits for its end; true when it ended within the time. UI thread only.
bool StopWorker(std::uint32_t milliseconds);

// The Abort command: ends the local side only, no ABOR is sent.
void Zarn_Abort();
void Zarn_IdmDisconnect(Site* site);
inline constexpr unsigned kExitCommand = 40027;
// Exit (kExitCommand) or closing a site from the menu.
void Zarn_IdmExit(Site* site, unsigned commandId);
// The server dropped the connection: tells the user (7318) and disconnects.
void Zarn_HandleFtpReset(const char* callerName, Site* site);
// The box of Zarn_HandleFtpReset and the disconnect command, whatever is left of the connection.
void TellServerReset(const char* callerName, Site* site);
// From here to the end of the next StopWorker: the worker leaves boxes and the connection's end to the thread that
// stops it. Called before the first flag that makes the worker stop.
void AnnounceStop();
bool StoppingWorker();
// The worker closed a lost connection and left the telling to the thread that stops it.
void LeaveLossUntold();
// True when it did so since the last call.
bool TakeUntoldLoss();

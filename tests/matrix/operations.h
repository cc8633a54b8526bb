// The one table of what a user can ask of a server, for the matrices of this folder: how each operation is run through
// the engine against the scripted server, which steps of the protocol it goes through, and how what it returns is made
// of a step's outcome. What is done to the steps: faults.h and the two matrices.
#pragma once

#include <string>
#include <vector>

#include "matrix/scene.h"

namespace matrix {

// Where in the protocol a fault strikes.
enum class Part {
    Reply,        // the answer to a command
    Preliminary,  // the first answer to a transfer command
    Opening,      // after it, before the data connection
    Copying,      // in the middle of the bytes
    Final,        // the last answer to a transfer command
};

// Which failures of a step's answer do not end the operation.
enum class Tolerates { Nothing, AnyReply, AllButPermanent };

struct Step {
    const char* verb;  // kWelcome for the greeting
    int nth;           // which command of that verb, from 1
    Part part;
    const char* good;  // what the server says when all is well, without a line end
    Tolerates tolerates = Tolerates::Nothing;
    bool textCounts = false;  // the reply's text, not only its class, makes the result
    const char* data = "";    // what a download sends before it fails in the middle
    // Of a step that tolerates: what a lost connection does to it.
    enum class Loss { GoesOn, Ends, EndsLater } loss = Loss::GoesOn;
};

struct Operation {
    const char* name;
    bool connects;   // makes its connection itself
    bool tellsUser;  // a failure is shown in a box, a server-error dialog, or by the disconnect command
    std::vector<Step> steps;
    void (*arrange)(Scene& scene);  // the last preparation of a run
    int (*run)(Scene& scene);       // on the worker; FTP_COMPLETE when it went well
    bool (*done)(Scene& scene);     // the effect of a success is there
    // What the operation returns when `step` comes to `raw`; `lost` when the server is gone or the time is over.
    int (*resultOf)(const Step& step, int raw, bool lost);
};

const std::vector<Operation>& Operations();
// Its name as a part of a test's name.
std::string TestName(const Operation& operation);

}  // namespace matrix

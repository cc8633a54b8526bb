// The ways in which a server fails at one step of an operation, as scripts of the scripted server, and what the
// operation must return then.
#pragma once

#include <vector>

#include "matrix/operations.h"
#include "support/scripted_server.h"

namespace matrix {

enum class Way {
    Close,
    Reset,
    Stall,
    Garbage,
    Transient,       // 4xx
    Permanent,       // 5xx
    Unavailable,     // 550
    ClosingDown,     // 421, and the connection ends
    NoLineFeedEnd,   // the right answer without its line feed, and the connection ends
    NoLineFeedWait,  // the same, then silence
    Lines,           // the right answer as a reply of several lines, each in a packet of its own
    TwoPackets,      // the right answer, cut behind its code
    BytePackets,     // the right answer in packets of one byte
};
inline constexpr Way kWays[] = {Way::Close,         Way::Reset,          Way::Stall,       Way::Garbage,
                                Way::Transient,     Way::Permanent,      Way::Unavailable, Way::ClosingDown,
                                Way::NoLineFeedEnd, Way::NoLineFeedWait, Way::Lines,       Way::TwoPackets,
                                Way::BytePackets};
const char* WayName(Way way);
const char* PartName(Part part);

// Between the two answers of a transfer there is no answer to cut.
bool Applies(Way way, const Step& step);
// The connection is of no use afterwards.
bool EndsConnection(Way way);
// Somebody has to wait until the time is over.
bool WaitsForTimeOut(Way way, const Step& step);
// Has the server fail so when the operation comes to its step.
void Arrange(ScriptedServer& server, const Step& step, Way way);
// Every result that the operation may have; more than one where the network decides.
std::vector<int> ExpectedResults(const Operation& operation, std::size_t step, Way way);

}  // namespace matrix

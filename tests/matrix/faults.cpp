#include "matrix/faults.h"

#include <string>

#include "ftp/worker/result_codes.h"

namespace matrix {
namespace {

using Results = std::vector<int>;

bool IsReplyPart(Part part) {
    return part == Part::Reply || part == Part::Preliminary || part == Part::Final;
}

bool IsUpload(const Step& step) {
    return std::string(step.verb) == "STOR" || std::string(step.verb) == "STOU";
}

// What the server does instead of its answer.
ServerScript FaultyAnswer(const Step& step, Way way) {
    const std::string good = step.good;
    switch (way) {
        case Way::Close:
            return {CloseControl()};
        case Way::Reset:
            return {ResetControl()};
        case Way::Stall:
            return {Stall()};
        case Way::Garbage:
            return {Say("?? what is this\r\n")};
        case Way::Transient:
            return {Say("450 not now\r\n")};
        case Way::Permanent:
            return {Say("553 not so\r\n")};
        case Way::Unavailable:
            return {Say("550 not at all\r\n")};
        case Way::ClosingDown:
            return {Say("421 closing down\r\n"), CloseControl()};
        case Way::NoLineFeedEnd:
            return {Say(good), CloseControl()};
        case Way::NoLineFeedWait:
            return {Say(good), Stall()};
        case Way::Lines:
        case Way::TwoPackets:
        case Way::BytePackets:
            break;
    }
    return {};
}

// The data connection as a failing server leaves it.
ServerScript FaultyData(Way way) {
    switch (way) {
        case Way::Reset:
            return {ResetData()};
        case Way::Stall:
        case Way::Close:
            return {};
        default:
            return {CloseData()};
    }
}

void Append(ServerScript& script, const ServerScript& more) {
    script.insert(script.end(), more.begin(), more.end());
}

ServerScript WholeData(const Step& step) {
    return IsUpload(step) ? ServerScript{OpenData(), ReadData(), CloseData()}
                          : ServerScript{OpenData(), DataBytes(step.data), CloseData()};
}

ServerScript ScriptOf(const Step& step, Way way) {
    const int line = step.part == Part::Final ? 2 : 1;
    if (way == Way::Lines) return {AnswerInPieces(ReplyPieces::Lines, line)};
    if (way == Way::TwoPackets) return {AnswerInPieces(ReplyPieces::Two, line)};
    if (way == Way::BytePackets) return {AnswerInPieces(ReplyPieces::Bytes, line)};
    ServerScript script;
    const bool begun = step.part == Part::Opening || step.part == Part::Copying || step.part == Part::Final;
    if (begun) script.push_back(Say("150 Opening data connection.\r\n"));
    if (step.part == Part::Copying) {
        script.push_back(OpenData());
        if (!IsUpload(step)) script.push_back(DataBytes(step.data));
        Append(script, FaultyData(way));
    }
    if (step.part == Part::Final) Append(script, WholeData(step));
    Append(script, FaultyAnswer(step, way));
    return script;
}

int CodeOf(Way way) {
    switch (way) {
        case Way::Transient:
        case Way::ClosingDown:
            return kReplyTransientFailure;
        case Way::Permanent:
            return FTP_ERROR;
        case Way::Unavailable:
            return kFileUnavailable;
        default:
            return kNoUsableReply;
    }
}

// What the engine's functions make of the fault where it strikes.
int RawResult(Part part, Way way) {
    const bool lost = way == Way::Close || way == Way::Reset;
    const bool stalled = way == Way::Stall;
    switch (part) {
        case Part::Preliminary:
            return stalled ? FTP_ERROR : 0;
        case Part::Opening:
            // Anything but a refusal may have overtaken the data connection, which is then waited for.
            if (stalled || way == Way::Garbage) return FTP_ERROR;
            return lost ? SOCKET_ERROR : CodeOf(way);
        case Part::Copying:
            if (stalled) return FTP_ERROR;
            return lost ? SOCKET_ERROR : CodeOf(way);
        case Part::Reply:
        case Part::Final:
            break;
    }
    return lost || stalled ? SOCKET_ERROR : CodeOf(way);
}

bool Tolerated(const Step& step, Way way) {
    switch (step.tolerates) {
        case Tolerates::Nothing:
            return false;
        case Tolerates::AnyReply:
            return true;
        case Tolerates::AllButPermanent:
            return way != Way::Permanent;
    }
    return false;
}

void Add(Results& results, const Results& more) {
    results.insert(results.end(), more.begin(), more.end());
}

// The connection was lost before the operation came to this step.
Results AfterLoss(const Operation& operation, std::size_t index) {
    if (index == operation.steps.size()) return {FTP_COMPLETE};
    const Step& step = operation.steps[index];
    const bool waiting = step.part == Part::Preliminary;
    const int first = waiting ? 0 : SOCKET_ERROR;
    const int second = waiting || step.part != Part::Reply ? first : FTP_CLOSE;
    Results results = {operation.resultOf(step, first, true), operation.resultOf(step, second, true)};
    if (step.tolerates != Tolerates::Nothing && step.loss == Step::Loss::GoesOn) return AfterLoss(operation, index + 1);
    return results;
}

Results AfterSplit(const Operation& operation, std::size_t index, Way way) {
    const Step& step = operation.steps[index];
    Results results = {FTP_COMPLETE};
    if (way == Way::Lines) return results;
    // A line that comes in two packets is read as two, so the first alone must do.
    if (way == Way::BytePackets || step.textCounts) Add(results, ExpectedResults(operation, index, Way::Garbage));
    // Its rest may be taken for the next answer where no command comes between them.
    if (step.part == Part::Preliminary)
        for (std::size_t next = index + 1; next <= index + 3 && next < operation.steps.size(); ++next)
            if (operation.steps[next].part != Part::Reply) Add(results, ExpectedResults(operation, next, Way::Garbage));
    const bool another = index + 1 < operation.steps.size() && operation.steps[index + 1].part == Part::Reply;
    if (way == Way::BytePackets && another) Add(results, ExpectedResults(operation, index + 1, Way::Garbage));
    return results;
}

}  // namespace

const char* WayName(Way way) {
    static constexpr const char* kNames[] = {"close",
                                             "reset",
                                             "stall",
                                             "garbage",
                                             "450",
                                             "553",
                                             "550",
                                             "421",
                                             "no line feed, end",
                                             "no line feed, silence",
                                             "several lines",
                                             "two packets",
                                             "packets of one byte"};
    return kNames[static_cast<int>(way)];
}

const char* PartName(Part part) {
    static constexpr const char* kNames[] = {"reply", "first reply", "data connection", "data", "last reply"};
    return kNames[static_cast<int>(part)];
}

bool Applies(Way way, const Step& step) {
    return IsReplyPart(step.part) || way <= Way::ClosingDown;
}

bool EndsConnection(Way way) {
    return way == Way::Close || way == Way::Reset || way == Way::Stall || way == Way::ClosingDown ||
           way == Way::NoLineFeedEnd || way == Way::NoLineFeedWait;
}

bool WaitsForTimeOut(Way way, const Step& step) {
    return way == Way::Stall || way == Way::NoLineFeedWait || (way == Way::Garbage && step.part == Part::Opening);
}

void Arrange(ScriptedServer& server, const Step& step, Way way) {
    for (int earlier = 1; earlier < step.nth; ++earlier) server.Once(step.verb, {Answer()});
    server.Once(step.verb, ScriptOf(step, way));
}

Results ExpectedResults(const Operation& operation, std::size_t index, Way way) {
    if (index == operation.steps.size()) return {FTP_COMPLETE};
    const Step& step = operation.steps[index];
    const bool lost = way == Way::Close || way == Way::Reset || way == Way::Stall;
    switch (way) {
        case Way::Lines:
        case Way::TwoPackets:
        case Way::BytePackets:
            return AfterSplit(operation, index, way);
        case Way::NoLineFeedEnd:
            return AfterLoss(operation, index + 1);
        case Way::NoLineFeedWait:
            if (index + 1 == operation.steps.size()) return {FTP_COMPLETE};
            return ExpectedResults(operation, index + 1, Way::Stall);
        default:
            break;
    }
    if (lost && step.tolerates != Tolerates::Nothing && step.loss == Step::Loss::GoesOn)
        return AfterLoss(operation, index + 1);
    // A data connection that is over at once may be gone before it is accepted.
    if (way == Way::Reset && step.part == Part::Copying)
        return {operation.resultOf(step, SOCKET_ERROR, true),
                operation.resultOf(operation.steps[index - 1], SOCKET_ERROR, true)};
    if (lost || !Tolerated(step, way)) return {operation.resultOf(step, RawResult(step.part, way), lost)};
    if (way != Way::ClosingDown) return {FTP_COMPLETE};
    if (step.loss == Step::Loss::EndsLater) return {operation.resultOf(step, SOCKET_ERROR, true)};
    return AfterLoss(operation, index + 1);
}

}  // namespace matrix

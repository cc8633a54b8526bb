// A FTP server inside the test program, for everything that real ones will not do: a small tree of folders and files
// with ordinary manners, and for any command a script instead. On 127.0.0.1, active data connections only (RFC 959).
// Not for measuring.
//
//     ScriptedServer server;
//     server.AddFile("/pub/a.txt", "hello\r\n");
//     server.On("RETR", {Say("150 here it comes\r\n"), OpenData(), DataBytes("hel"), ResetData(), Say("426
//     lost\r\n")});
//     ...operation against server.Port()...
//     EXPECT_EQ(server.Commands().back(), "RETR a.txt");
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sockets.h"

// How a line of an answer is cut into packets.
enum class ReplyPieces {
    Whole,
    Bytes,  // one byte in each
    Two,    // the code and its blank, then the text
    Lines,  // a reply of three lines, one in each; the first and the last are the answer's own
};

// One thing that the server does in answer to a command.
struct ServerStep {
    enum class Kind {
        Answer,          // what it would have done without a script
        AnswerInPieces,  // the same, with one line of its answer sent piece by piece
        Say,             // bytes on the control connection, in one piece
        OpenData,        // connects to the address of PORT; `text` is the local address to come from, empty for any
        DataBytes,       // bytes on the data connection
        CloseData,       // in order
        ResetData,       // not in order
        ReadData,        // reads until the client closes; stored as LastUpload()
        WaitDataClosed,  // until the client closes its data connection, in whatever way; reads nothing away
        Hold,            // until the test calls Release()
        Stall,           // does nothing more on this connection until the client closes it
        Close,           // closes the control connection in order
        Reset,           // closes it not in order
    };
    Kind kind;
    std::string text;
    ReplyPieces pieces = ReplyPieces::Whole;
    int line = 1;  // which of the answer's lines is sent in pieces
};
using ServerScript = std::vector<ServerStep>;

inline ServerStep Answer() {
    return {ServerStep::Kind::Answer, {}};
}
inline ServerStep AnswerInPieces(ReplyPieces pieces, int line) {
    return {ServerStep::Kind::AnswerInPieces, {}, pieces, line};
}
inline ServerStep Say(std::string bytes) {
    return {ServerStep::Kind::Say, std::move(bytes)};
}
inline ServerStep OpenData() {
    return {ServerStep::Kind::OpenData, {}};
}
inline ServerStep OpenDataFrom(std::string address) {
    return {ServerStep::Kind::OpenData, std::move(address)};
}
inline ServerStep DataBytes(std::string bytes) {
    return {ServerStep::Kind::DataBytes, std::move(bytes)};
}
inline ServerStep CloseData() {
    return {ServerStep::Kind::CloseData, {}};
}
inline ServerStep ResetData() {
    return {ServerStep::Kind::ResetData, {}};
}
inline ServerStep ReadData() {
    return {ServerStep::Kind::ReadData, {}};
}
inline ServerStep WaitDataClosed() {
    return {ServerStep::Kind::WaitDataClosed, {}};
}
inline ServerStep Hold() {
    return {ServerStep::Kind::Hold, {}};
}
inline ServerStep Stall() {
    return {ServerStep::Kind::Stall, {}};
}
inline ServerStep CloseControl() {
    return {ServerStep::Kind::Close, {}};
}
inline ServerStep ResetControl() {
    return {ServerStep::Kind::Reset, {}};
}

// The verb under which a script for the greeting of a connection is given.
inline constexpr char kWelcome[] = "(welcome)";

class ScriptedServer {
  public:
    ScriptedServer();
    ~ScriptedServer();  // ends every connection
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    std::uint16_t Port() const;

    // --- Manners. Verbs in capitals; a script stays in force until Forget(). ---
    void On(std::string verb, ServerScript script);
    // For the next such command only; several are used in their order, before what On() said.
    void Once(std::string verb, ServerScript script);
    void Forget(const std::string& verb);
    void SetWelcome(std::string lines);  // with line ends; "220 ready\r\n" until then
    // Passwords other than this one are answered with 530; every one is right until then.
    void SetPassword(std::string password);
    // "PASS" asks for an account.
    void AskAccount(bool ask);
    // Directory after the log-in, "/" until then, and the character between components.
    void SetHome(std::string path);

    // --- The tree. Paths begin with "/". Missing parents are made. ---
    void AddFolder(const std::string& path);
    void AddFile(const std::string& path, std::string bytes);
    void Remove(const std::string& path);
    // LIST of this folder sends exactly these bytes, whatever it holds.
    void SetListing(const std::string& path, std::string bytes);
    bool Exists(const std::string& path) const;
    std::string FileBytes(const std::string& path) const;

    // --- What happened. ---
    // Every command line of every connection in order of arrival, without line ends.
    std::vector<std::string> Commands() const;
    int CountCommands(std::string_view verb) const;
    void ForgetCommands();
    bool WaitForCommand(std::string_view verb) const;  // bounded; true when it has come
    int Connections() const;                           // accepted so far
    int OpenConnections() const;
    bool WaitForConnections(int open) const;  // bounded; true when so many are open
    std::string LastUpload() const;

    // --- Hold(). ---
    bool WaitUntilHeld() const;  // bounded; true when a connection waits at a Hold()
    void Release();              // lets one Hold() go on, now or when it is reached

  private:
    struct State;
    std::unique_ptr<State> state_;
};

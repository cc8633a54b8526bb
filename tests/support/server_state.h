// What the scripted server's threads share, and the body of one of its connections. Only for scripted_server.cpp and
// server_connection.cpp.
#pragma once

#include <atomic>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/threads.h"
#include "support/scripted_server.h"
#include "support/server_tree.h"

struct ServerConnection {
    explicit ServerConnection(platform::Socket socket) : control(socket) {}
    std::atomic<platform::Socket> control;
    std::atomic<platform::Socket> data{platform::kNoSocket};
    std::atomic<bool> sendingData{false};  // then nobody else reads the control connection
    std::atomic<bool> ended{false};
    platform::ThreadHandle thread = platform::kNoThread;
    // Of the connection's own thread.
    platform::Endpoint dataPeer;
    std::string folder = "/";
    std::string user;
    std::string renameFrom;
    std::string received;  // bytes after the last whole line
    int uniqueNumber = 0;
    ReplyPieces pieces = ReplyPieces::Whole;
    int linesBeforePieces = 0;
};

// The peer has closed it, or it is broken.
bool IsClosed(platform::Socket socket);

// Faults that a test makes strike the program, not its server.
void SpareThisThreadFromFaults();

struct ScriptedServer::State {
    platform::Socket listener = platform::kNoSocket;
    std::uint16_t port = 0;
    platform::ThreadHandle thread = platform::kNoThread;
    std::atomic<bool> stopping{false};

    mutable std::mutex lock;  // everything below
    ServerTree tree;
    std::map<std::string, ServerScript> scripts;
    std::map<std::string, std::deque<ServerScript>> onceScripts;
    std::string welcome = "220 ready\r\n";
    std::string password;
    std::string home = "/";
    bool askAccount = false;
    std::vector<std::string> commands;
    std::string lastUpload;
    int accepted = 0;
    int held = 0;
    int releases = 0;
    std::vector<std::unique_ptr<ServerConnection>> connections;

    static void AcceptConnections(void* state);
    void EndLostSends();
    void Serve(ServerConnection& connection);
    // False when the connection is over.
    bool RunCommand(ServerConnection& connection, const std::string& line);
    bool RunScript(ServerConnection& connection, const ServerScript& script, const std::string& verb,
                   const std::string& argument);
    bool RunStep(ServerConnection& connection, const ServerStep& step, const std::string& verb,
                 const std::string& argument);
    bool AnswerCommand(ServerConnection& connection, const std::string& verb, const std::string& argument);
    bool SendListing(ServerConnection& connection, const std::string& verb, const std::string& argument);
    bool SendFile(ServerConnection& connection, const std::string& argument);
    bool TakeFile(ServerConnection& connection, const std::string& verb, const std::string& argument);
    bool ChangeTree(ServerConnection& connection, const std::string& verb, const std::string& argument);
    bool SendOverData(ServerConnection& connection, const std::string& bytes);
    bool NextLine(ServerConnection& connection, std::string& line);
    ServerScript TakeScript(const std::string& verb);
    bool WaitForRelease();
    std::string ReceiveUpload(ServerConnection& connection);
};

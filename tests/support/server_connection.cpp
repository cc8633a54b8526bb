// One connection of the scripted server: reads its commands, runs scripts, has ordinary manners otherwise.
#include <array>
#include <charconv>

#ifndef _WIN32
#include "host/fault_injection.h"
#endif
#include "support/bound_connect.h"
#include "support/server_state.h"

namespace {

constexpr std::uint32_t kSliceMilliseconds = 20;

bool SendAll(platform::Socket socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const int sent = platform::Send(socket, bytes);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

bool SendData(ServerConnection& connection, std::string_view bytes) {
    connection.sendingData = true;
    const bool sent = SendAll(connection.data, bytes);
    connection.sendingData = false;
    return sent;
}

// Long enough for the client to read what it has before the next piece comes.
constexpr std::uint32_t kBetweenPieces = 10;
constexpr std::uint32_t kBetweenBytes = 1;

bool SendInPieces(ServerConnection& connection, const std::vector<std::string>& pieces, std::uint32_t pause) {
    for (const std::string& piece : pieces) {
        if (!SendAll(connection.control, piece)) return false;
        platform::SleepMilliseconds(pause);
    }
    return true;
}

// One line of an answer with its line end, cut as the script of the running command wants it.
bool SendLine(ServerConnection& connection, const std::string& line) {
    constexpr std::size_t kCode = 3;
    if (connection.pieces == ReplyPieces::Whole || connection.linesBeforePieces-- > 0 || line.size() <= kCode)
        return SendAll(connection.control, line);
    const ReplyPieces how = connection.pieces;
    connection.pieces = ReplyPieces::Whole;
    std::vector<std::string> bytes;
    switch (how) {
        case ReplyPieces::Bytes:
            for (const char c : line) bytes.emplace_back(1, c);
            return SendInPieces(connection, bytes, kBetweenBytes);
        case ReplyPieces::Two:
            return SendInPieces(connection, {line.substr(0, kCode + 1), line.substr(kCode + 1)}, kBetweenPieces);
        case ReplyPieces::Lines:
            return SendInPieces(connection,
                                {line.substr(0, kCode) + "-" + line.substr(kCode + 1), " a line between\r\n", line},
                                kBetweenPieces);
        case ReplyPieces::Whole:
            break;
    }
    return SendAll(connection.control, line);
}

bool Tell(ServerConnection& connection, const std::string& line) {
    return SendLine(connection, line + "\r\n");
}

void Close(std::atomic<platform::Socket>& stored) {
    const platform::Socket socket = stored.exchange(platform::kNoSocket);
    if (socket != platform::kNoSocket) platform::CloseSocket(socket);
}

void Reset(std::atomic<platform::Socket>& stored) {
    if (stored != platform::kNoSocket) platform::SetLinger(stored, 0);
    Close(stored);
}

std::string Upper(std::string text) {
    for (char& c : text)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return text;
}

bool ParsePort(std::string_view text, platform::Endpoint& endpoint) {
    std::uint32_t numbers[6] = {};
    for (std::uint32_t& number : numbers) {
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || number > 255) return false;
        text.remove_prefix(static_cast<std::size_t>(end - text.data()));
        if (!text.empty() && text.front() == ',') text.remove_prefix(1);
    }
    endpoint.address = numbers[0] << 24 | numbers[1] << 16 | numbers[2] << 8 | numbers[3];
    endpoint.port = static_cast<std::uint16_t>(numbers[4] * 256 + numbers[5]);
    return text.empty();
}

bool Connect(ServerConnection& connection, const std::string& from) {
    Close(connection.data);
    platform::Socket socket = platform::kNoSocket;
    if (!from.empty()) {
        socket = ConnectFrom(from, connection.dataPeer);
    } else {
        socket = platform::CreateSocket(platform::SocketKind::Stream);
        if (!platform::ConnectSocket(socket, connection.dataPeer)) {
            platform::CloseSocket(socket);
            socket = platform::kNoSocket;
        }
    }
    connection.data = socket;
    return socket != platform::kNoSocket;
}

}  // namespace

bool IsClosed(platform::Socket socket) {
    char byte[1];
    const int readable = platform::WaitReadable(socket, 0);
    return readable < 0 || (readable > 0 && platform::Peek(socket, byte) <= 0);
}

ServerScript ScriptedServer::State::TakeScript(const std::string& verb) {
    const std::lock_guard guard(lock);
    const auto once = onceScripts.find(verb);
    if (once != onceScripts.end() && !once->second.empty()) {
        ServerScript script = std::move(once->second.front());
        once->second.pop_front();
        return script;
    }
    const auto always = scripts.find(verb);
    return always != scripts.end() ? always->second : ServerScript{::Answer()};
}

bool ScriptedServer::State::NextLine(ServerConnection& connection, std::string& line) {
    for (;;) {
        const std::size_t lineFeed = connection.received.find('\n');
        if (lineFeed != std::string::npos) {
            line = connection.received.substr(0, lineFeed);
            connection.received.erase(0, lineFeed + 1);
            if (!line.empty() && line.back() == '\r') line.pop_back();
            const std::lock_guard guard(lock);
            commands.push_back(line);
            return true;
        }
        if (stopping) return false;
        const int readable = platform::WaitReadable(connection.control, kSliceMilliseconds);
        if (readable == 0) continue;
        std::array<char, 4096> bytes;
        const int count = readable < 0 ? -1 : platform::Receive(connection.control, bytes);
        if (count <= 0) return false;
        connection.received.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

void SpareThisThreadFromFaults() {
#ifndef _WIN32
    fault_injection::SpareThisThread();
#endif
}

void ScriptedServer::State::Serve(ServerConnection& connection) {
    SpareThisThreadFromFaults();
    std::string line;
    bool open = RunScript(connection, TakeScript(kWelcome), kWelcome, "");
    while (open && NextLine(connection, line)) open = RunCommand(connection, line);
    Close(connection.data);
    Close(connection.control);
    connection.ended = true;
}

bool ScriptedServer::State::RunCommand(ServerConnection& connection, const std::string& line) {
    const std::size_t blank = line.find(' ');
    const std::string verb = Upper(line.substr(0, blank));
    const std::string argument = blank == std::string::npos ? "" : line.substr(blank + 1);
    if (verb == "PORT") ParsePort(argument, connection.dataPeer);
    return RunScript(connection, TakeScript(verb), verb, argument);
}

bool ScriptedServer::State::RunScript(ServerConnection& connection, const ServerScript& script, const std::string& verb,
                                      const std::string& argument) {
    for (const ServerStep& step : script)
        if (stopping || !RunStep(connection, step, verb, argument)) return false;
    return true;
}

bool ScriptedServer::State::RunStep(ServerConnection& connection, const ServerStep& step, const std::string& verb,
                                    const std::string& argument) {
    using Kind = ServerStep::Kind;
    std::string ignored;
    switch (step.kind) {
        case Kind::Answer:
            return AnswerCommand(connection, verb, argument);
        case Kind::AnswerInPieces: {
            connection.pieces = step.pieces;
            connection.linesBeforePieces = step.line - 1;
            const bool open = AnswerCommand(connection, verb, argument);
            connection.pieces = ReplyPieces::Whole;
            return open;
        }
        case Kind::Say:
            return SendAll(connection.control, step.text);
        case Kind::OpenData:
            Connect(connection, step.text);
            return true;
        case Kind::DataBytes:
            SendData(connection, step.text);
            return true;
        case Kind::CloseData:
            Close(connection.data);
            return true;
        case Kind::ResetData:
            Reset(connection.data);
            return true;
        case Kind::ReadData: {
            std::string bytes = ReceiveUpload(connection);
            const std::lock_guard guard(lock);
            lastUpload = std::move(bytes);
            return true;
        }
        case Kind::WaitDataClosed: {
            char byte[1];
            for (;;) {
                if (stopping || connection.data == platform::kNoSocket) return true;
                const int readable = platform::WaitReadable(connection.data, kSliceMilliseconds);
                if (readable < 0 || (readable > 0 && platform::Peek(connection.data, byte) <= 0)) return true;
                if (readable > 0) platform::SleepMilliseconds(1);
            }
        }
        case Kind::Hold:
            return WaitForRelease();
        case Kind::Stall:
            while (NextLine(connection, ignored)) {
            }
            return false;
        case Kind::Close:
            return false;
        case Kind::Reset:
            Reset(connection.control);
            return false;
    }
    return false;
}

bool ScriptedServer::State::WaitForRelease() {
    {
        const std::lock_guard guard(lock);
        ++held;
    }
    for (;;) {
        {
            const std::lock_guard guard(lock);
            if (stopping || releases > 0) {
                --held;
                --releases;
                return !stopping;
            }
        }
        platform::SleepMilliseconds(1);
    }
}

std::string ScriptedServer::State::ReceiveUpload(ServerConnection& connection) {
    std::string bytes;
    std::array<char, 16384> piece;
    for (;;) {
        // A client that went before it accepted can leave a data connection that only looks alive.
        const int readable = platform::WaitReadable(connection.data, kSliceMilliseconds);
        if (readable == 0 && (stopping || IsClosed(connection.control))) return bytes;
        if (readable == 0) continue;
        const int count = platform::Receive(connection.data, piece);
        if (count <= 0) return bytes;
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    }
}

bool ScriptedServer::State::SendOverData(ServerConnection& connection, const std::string& bytes) {
    if (!Tell(connection, "150 Opening data connection.")) return false;
    if (!Connect(connection, "")) return Tell(connection, "425 Cannot open data connection.");
    const bool sent = SendData(connection, bytes);
    Close(connection.data);
    return Tell(connection, sent ? "226 Transfer complete." : "426 Connection closed; transfer aborted.");
}

bool ScriptedServer::State::SendListing(ServerConnection& connection, const std::string& verb,
                                        const std::string& argument) {
    const std::string path = ServerTree::Resolve(connection.folder, argument);
    std::string listing;
    {
        const std::lock_guard guard(lock);
        const bool isFile = verb == "LIST" && tree.IsFile(path);
        if (!isFile && !tree.IsFolder(path)) return Tell(connection, "550 " + path + ": No such file or directory.");
        listing = verb == "NLST" ? tree.NameList(path) : isFile ? tree.Line(path, argument) : tree.Listing(path);
    }
    return SendOverData(connection, listing);
}

bool ScriptedServer::State::SendFile(ServerConnection& connection, const std::string& argument) {
    const std::string path = ServerTree::Resolve(connection.folder, argument);
    std::string bytes;
    {
        const std::lock_guard guard(lock);
        if (!tree.IsFile(path)) return Tell(connection, "550 " + argument + ": No such file or directory.");
        bytes = tree.Bytes(path);
    }
    return SendOverData(connection, bytes);
}

bool ScriptedServer::State::TakeFile(ServerConnection& connection, const std::string& verb,
                                     const std::string& argument) {
    std::string path = ServerTree::Resolve(connection.folder, argument);
    if (verb == "STOU") {
        const std::lock_guard guard(lock);
        while (tree.Exists(path)) path += "." + std::to_string(++connection.uniqueNumber);
    }
    if (!Tell(connection, "150 FILE: " + path)) return false;
    if (!Connect(connection, "")) return Tell(connection, "425 Cannot open data connection.");
    std::string bytes = ReceiveUpload(connection);
    Close(connection.data);
    {
        const std::lock_guard guard(lock);
        lastUpload = bytes;
        tree.AddFile(path, std::move(bytes));
    }
    return Tell(connection, "226 Transfer complete.");
}

// MKD, RMD, DELE, RNFR, RNTO.
bool ScriptedServer::State::ChangeTree(ServerConnection& connection, const std::string& verb,
                                       const std::string& argument) {
    const std::string path = ServerTree::Resolve(connection.folder, argument);
    const std::string missing = "550 " + argument + ": No such file or directory.";
    const std::lock_guard guard(lock);
    if (verb == "MKD") {
        if (tree.Exists(path)) return Tell(connection, "550 " + argument + ": File exists.");
        tree.AddFolder(path);
        return Tell(connection, "257 \"" + path + "\" created.");
    }
    if (verb == "RNTO") {
        const bool renamed = tree.Rename(connection.renameFrom, path);
        return Tell(connection, renamed ? "250 Renamed." : "550 Rename failed.");
    }
    if (!tree.Exists(path)) return Tell(connection, missing);
    if (verb == "RNFR") {
        connection.renameFrom = path;
        return Tell(connection, "350 Ready for RNTO.");
    }
    if (verb == "RMD" && (!tree.IsFolder(path) || !tree.IsEmpty(path)))
        return Tell(connection, "550 " + argument + ": Directory not empty.");
    tree.Remove(path);
    return Tell(connection, "250 Done.");
}

bool ScriptedServer::State::AnswerCommand(ServerConnection& connection, const std::string& verb,
                                          const std::string& argument) {
    if (verb == kWelcome) {
        std::string lines;
        {
            const std::lock_guard guard(lock);
            lines = welcome;
        }
        return SendLine(connection, lines);
    }
    if (verb == "LIST" || verb == "NLST") return SendListing(connection, verb, argument);
    if (verb == "RETR") return SendFile(connection, argument);
    if (verb == "STOR" || verb == "STOU") return TakeFile(connection, verb, argument);
    if (verb == "MKD" || verb == "RMD" || verb == "DELE" || verb == "RNFR" || verb == "RNTO")
        return ChangeTree(connection, verb, argument);
    if (verb == "QUIT") {
        Tell(connection, "221 Goodbye.");
        return false;
    }
    if (verb == "USER") {
        connection.user = argument;
        return Tell(connection, "331 Password required.");
    }
    if (verb == "PASS" || verb == "ACCT") {
        const std::lock_guard guard(lock);
        if (verb == "PASS" && !password.empty() && argument != password)
            return Tell(connection, "530 Login incorrect.");
        if (verb == "PASS" && askAccount) return Tell(connection, "332 Account required.");
        return Tell(connection, "230 Logged on.");
    }
    if (verb == "CWD") {
        const std::string path = ServerTree::Resolve(connection.folder, argument);
        const std::lock_guard guard(lock);
        if (!tree.IsFolder(path)) return Tell(connection, "550 " + argument + ": No such file or directory.");
        connection.folder = path;
        return Tell(connection, "250 Directory changed.");
    }
    static const std::map<std::string, std::string> kPlainAnswers = {
        {"TYPE", "200 Type set."},     {"NOOP", "200 OK."},        {"SYST", "215 UNIX Type: L8"},
        {"HELP", "214 No help here."}, {"SITE", "200 Connected."}, {"PORT", "200 PORT command successful."},
    };
    if (verb == "PWD") return Tell(connection, "257 \"" + connection.folder + "\" is the current directory.");
    if (verb == "STAT") return Tell(connection, "211-Status\r\n all is well\r\n211 End");
    const auto plain = kPlainAnswers.find(verb);
    return Tell(connection, plain != kPlainAnswers.end() ? plain->second : "502 Command not implemented.");
}

#include "support/scripted_server.h"

#include <algorithm>

#include "support/bounded_wait.h"
#include "support/server_state.h"

namespace {

constexpr std::uint32_t kSliceMilliseconds = 20;
constexpr int kBacklog = 16;

bool Begins(const std::string& line, std::string_view verb) {
    return line.starts_with(verb) && (line.size() == verb.size() || line[verb.size()] == ' ');
}

}  // namespace

void ScriptedServer::State::AcceptConnections(void* argument) {
    struct Start {
        State* state;
        ServerConnection* connection;
    };
    SpareThisThreadFromFaults();
    auto* state = static_cast<State*>(argument);
    while (!state->stopping) {
        if (platform::WaitReadable(state->listener, kSliceMilliseconds) != 1) {
            state->EndLostSends();
            continue;
        }
        const platform::Socket socket = platform::AcceptSocket(state->listener, nullptr);
        if (socket == platform::kNoSocket) continue;
        auto connection = std::make_unique<ServerConnection>(socket);
        auto* start = new Start{state, connection.get()};
        const std::lock_guard guard(state->lock);
        connection->folder = state->home;
        ++state->accepted;
        connection->thread = platform::StartThread(
            [](void* given) {
                const std::unique_ptr<Start> begun(static_cast<Start*>(given));
                begun->state->Serve(*begun->connection);
            },
            start);
        state->connections.push_back(std::move(connection));
    }
}

// A send that waits for room does not always notice that its peer has gone (seen under Wine).
void ScriptedServer::State::EndLostSends() {
    const std::lock_guard guard(lock);
    for (const auto& connection : connections)
        if (connection->sendingData && IsClosed(connection->control)) platform::CancelSocket(connection->data);
}

ScriptedServer::ScriptedServer() : state_(std::make_unique<State>()) {
    std::string description;
    platform::StartSockets(description);
    state_->listener = platform::CreateSocket(platform::SocketKind::Stream);
    platform::Endpoint bound;
    // Any address: a test may reach the server as 127.0.0.2 too.
    platform::BindAnyAddress(state_->listener, 0);
    platform::ListenSocket(state_->listener, kBacklog);
    platform::GetLocalEndpoint(state_->listener, bound);
    state_->port = bound.port;
    state_->thread = platform::StartThread(State::AcceptConnections, state_.get());
}

ScriptedServer::~ScriptedServer() {
    state_->stopping = true;
    while (!platform::WaitThread(state_->thread, kSliceMilliseconds)) platform::CancelSocket(state_->listener);
    platform::CloseThread(state_->thread);
    platform::CloseSocket(state_->listener);
    // No new connection can come any more, so that the list is this thread's.
    for (const auto& connection : state_->connections) {
        while (!platform::WaitThread(connection->thread, kSliceMilliseconds)) {
            for (const platform::Socket socket : {connection->control.load(), connection->data.load()})
                if (socket != platform::kNoSocket) platform::CancelSocket(socket);
        }
        platform::CloseThread(connection->thread);
    }
}

std::uint16_t ScriptedServer::Port() const {
    return state_->port;
}

void ScriptedServer::On(std::string verb, ServerScript script) {
    const std::lock_guard guard(state_->lock);
    state_->scripts[std::move(verb)] = std::move(script);
}

void ScriptedServer::Once(std::string verb, ServerScript script) {
    const std::lock_guard guard(state_->lock);
    state_->onceScripts[std::move(verb)].push_back(std::move(script));
}

void ScriptedServer::Forget(const std::string& verb) {
    const std::lock_guard guard(state_->lock);
    state_->scripts.erase(verb);
    state_->onceScripts.erase(verb);
}

void ScriptedServer::SetWelcome(std::string lines) {
    const std::lock_guard guard(state_->lock);
    state_->welcome = std::move(lines);
}

void ScriptedServer::SetPassword(std::string password) {
    const std::lock_guard guard(state_->lock);
    state_->password = std::move(password);
}

void ScriptedServer::AskAccount(bool ask) {
    const std::lock_guard guard(state_->lock);
    state_->askAccount = ask;
}

void ScriptedServer::SetHome(std::string path) {
    const std::lock_guard guard(state_->lock);
    state_->home = std::move(path);
}

void ScriptedServer::AddFolder(const std::string& path) {
    const std::lock_guard guard(state_->lock);
    state_->tree.AddFolder(path);
}

void ScriptedServer::AddFile(const std::string& path, std::string bytes) {
    const std::lock_guard guard(state_->lock);
    state_->tree.AddFile(path, std::move(bytes));
}

void ScriptedServer::Remove(const std::string& path) {
    const std::lock_guard guard(state_->lock);
    state_->tree.Remove(path);
}

void ScriptedServer::SetListing(const std::string& path, std::string bytes) {
    const std::lock_guard guard(state_->lock);
    state_->tree.SetListing(path, std::move(bytes));
}

bool ScriptedServer::Exists(const std::string& path) const {
    const std::lock_guard guard(state_->lock);
    return state_->tree.Exists(path);
}

std::string ScriptedServer::FileBytes(const std::string& path) const {
    const std::lock_guard guard(state_->lock);
    return state_->tree.IsFile(path) ? state_->tree.Bytes(path) : std::string();
}

std::vector<std::string> ScriptedServer::Commands() const {
    const std::lock_guard guard(state_->lock);
    return state_->commands;
}

int ScriptedServer::CountCommands(std::string_view verb) const {
    const std::lock_guard guard(state_->lock);
    return static_cast<int>(std::count_if(state_->commands.begin(), state_->commands.end(),
                                          [&](const std::string& line) { return Begins(line, verb); }));
}

void ScriptedServer::ForgetCommands() {
    const std::lock_guard guard(state_->lock);
    state_->commands.clear();
}

bool ScriptedServer::WaitForCommand(std::string_view verb) const {
    return test_support::WaitUntil([&] { return CountCommands(verb) > 0; });
}

int ScriptedServer::Connections() const {
    const std::lock_guard guard(state_->lock);
    return state_->accepted;
}

int ScriptedServer::OpenConnections() const {
    const std::lock_guard guard(state_->lock);
    return static_cast<int>(std::count_if(state_->connections.begin(), state_->connections.end(),
                                          [](const auto& connection) { return !connection->ended; }));
}

bool ScriptedServer::WaitForConnections(int open) const {
    return test_support::WaitUntil([&] { return OpenConnections() == open; });
}

std::string ScriptedServer::LastUpload() const {
    const std::lock_guard guard(state_->lock);
    return state_->lastUpload;
}

bool ScriptedServer::WaitUntilHeld() const {
    return test_support::WaitUntil([&] {
        const std::lock_guard guard(state_->lock);
        return state_->held > 0;
    });
}

void ScriptedServer::Release() {
    const std::lock_guard guard(state_->lock);
    ++state_->releases;
}

#include "bare_ftp.h"

#include <winsock2.h>

#include <cstdio>
#include <vector>

namespace {

std::int64_t Failed(const char* what) {
    std::fprintf(stderr, "bare loop: %s failed, error %d\n", what, WSAGetLastError());
    return -1;
}

std::int64_t Copy(SOCKET data, HANDLE file, std::uint32_t bufferSize) {
    std::vector<char> buffer(bufferSize);
    std::int64_t total = 0;
    while (true) {
        const int count = recv(data, buffer.data(), static_cast<int>(buffer.size()), 0);
        if (count < 0) return Failed("recv");
        if (count == 0) return total;
        DWORD written = 0;
        if (!WriteFile(file, buffer.data(), static_cast<DWORD>(count), &written, nullptr)) return Failed("WriteFile");
        total += count;
    }
}

}  // namespace

BareFtp::~BareFtp() {
    if (control_ != INVALID_SOCKET) closesocket(control_);
}

bool BareFtp::Reply(char expected) {
    while (true) {
        const std::size_t end = received_.find("\r\n");
        if (end != std::string::npos) {
            const std::string line = received_.substr(0, end);
            received_.erase(0, end + 2);
            if (line.size() > 3 && line[3] == '-') continue;
            if (line[0] == expected) return true;
            std::fprintf(stderr, "bare loop: the server says \"%s\"\n", line.c_str());
            return false;
        }
        char block[512];
        const int count = recv(control_, block, sizeof(block), 0);
        if (count <= 0) return Failed("recv of a reply") == 0;
        received_.append(block, static_cast<std::size_t>(count));
    }
}

bool BareFtp::Command(const std::string& line, char expected) {
    const std::string bytes = line + "\r\n";
    if (send(control_, bytes.data(), static_cast<int>(bytes.size()), 0) != static_cast<int>(bytes.size())) {
        return Failed("send") == 0;
    }
    return Reply(expected);
}

bool BareFtp::Connect(std::uint16_t port) {
    control_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    server.sin_port = htons(port);
    if (connect(control_, reinterpret_cast<sockaddr*>(&server), sizeof(server)) != 0) return Failed("connect") == 0;
    return Reply('2') && Command("USER bench", '3') && Command("PASS bench", '2') && Command("TYPE I", '2');
}

BareFtp::Handle BareFtp::Listen() {
    SOCKET listener = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof(local);
    if (bind(listener, reinterpret_cast<sockaddr*>(&local), size) != 0 || listen(listener, 1) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&local), &size) != 0) {
        Failed("making the listener");
        closesocket(listener);
        return INVALID_SOCKET;
    }
    const unsigned port = ntohs(local.sin_port);
    if (Command("PORT 127,0,0,1," + std::to_string(port / 256) + "," + std::to_string(port % 256), '2'))
        return listener;
    closesocket(listener);
    return INVALID_SOCKET;
}

std::int64_t BareFtp::Retrieve(const char* remoteName, const char* localFile, std::uint32_t bufferSize) {
    SOCKET listener = Listen();
    if (listener == INVALID_SOCKET) return -1;
    const bool begun = Command(std::string("RETR ") + remoteName, '1');
    SOCKET data = begun ? accept(listener, nullptr, nullptr) : INVALID_SOCKET;
    closesocket(listener);
    if (data == INVALID_SOCKET) return Failed("accept");
    HANDLE file = CreateFileA(localFile, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    const std::int64_t total = file == INVALID_HANDLE_VALUE ? Failed("CreateFile") : Copy(data, file, bufferSize);
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    closesocket(data);
    return Reply('2') ? total : -1;
}

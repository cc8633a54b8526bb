// A connected site with a file to receive into, and what the tests of data connections ask about both.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

#include "ftp/control/control_connection.h"
#include "ftp/data/data_accept.h"
#include "ftp/data/data_connection.h"
#include "ftp/data/transfer_node.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "support/session_harness.h"

inline const std::atomic<bool> kNoAbort{false};

// Bytes in which a lost, doubled or misplaced piece shows.
inline std::string Pattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>((i * 31 + i / 251) & 0xFF);
    return bytes;
}

// A file on the server of that size, as a listing gave it.
inline TransferNode Node(const char* remote, std::uint32_t size) {
    TransferNode node;
    node.pszRemoteName = OwnedText::Copy(remote);
    node.NodeType = kNodeFile;
    node.iSize = size;
    return node;
}

struct Connected {
    Connected() : site(h.ConnectedSite()), file(h.LocalPath("out.bin")) {}
    int Retrieve(const char* commandText, char type = 'I') {
        return RetrieveFile(site, h.reply, commandText, file.c_str(), type, kNoAbort);
    }
    // The data connection of a transfer command, without the copy that follows it.
    bool OpenDataFor(const char* commandLine) {
        return GetFTPListenSocket(site, h.reply) == FTP_COMPLETE &&
               OpenDataConnection("test", site, h.reply, commandLine, kNoAbort).open;
    }
    // What is left to do after the copy.
    int CloseAndReadFinalReply(CloseHow how) {
        CloseStoredSocket(site->pSock->data_skt, how);
        return ReadFinalReply("test", site, h.reply);
    }
    // The connection is in step when the next command gets its own reply.
    bool InStep() { return command(site, h.reply, "NOOP") == FTP_COMPLETE && std::string(h.replyText) == "200 OK."; }
    bool NoTransferSockets() const {
        return site->pSock->data_skt == platform::kNoSocket && site->pSock->listen_skt == platform::kNoSocket;
    }
    SessionHarness h;
    Site* site;
    std::string file;
};

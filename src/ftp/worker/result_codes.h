// The one code space that every remote operation returns: reply classes (RFC 959, section 4.2) and local results.
#pragma once

inline constexpr int SOCKET_ERROR = -1;  // control socket invalid, a receive failed, or the peer closed
inline constexpr int kNoUsableReply = 0;
inline constexpr int kReplyPreliminary = 1;
inline constexpr int FTP_COMPLETE = 2;
inline constexpr int kReplyMoreNeeded = 3;
inline constexpr int kReplyTransientFailure = 4;
inline constexpr int FTP_ERROR = 5;  // local failure, and reply class 5: callers treat both alike
inline constexpr int FTP_CLOSE = 6;  // sending failed: the connection must be closed
inline constexpr int kLocalAccessDenied = 8;
inline constexpr int FTP_NOTCONNECTED = 10;
inline constexpr int kReservedName = 11;
inline constexpr int FTP_INSUFFICIENT_BUFFER = 12;  // a reply line was cut to the caller's buffer
// Quirk: "file unavailable" keeps its whole code so that callers can tell it from other permanent failures, kept.
inline constexpr int kFileUnavailable = 550;

// Bytes that a caller's reply buffer must hold at least.
inline constexpr int kReplySize = 260;

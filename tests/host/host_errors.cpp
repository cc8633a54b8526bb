#include "host_errors.h"

#include <cerrno>

#include "platform/sockets.h"
#include "platform/system.h"

namespace host {
namespace {

thread_local std::uint32_t lastError = 0;

struct Pair {
    int systemNumber;
    int windowsNumber;
};

constexpr Pair kFileErrors[] = {
    {ENOENT, 2},   {ENOTDIR, 3},        {EMFILE, 4},      {ENFILE, 4},  {EACCES, 5},   {EPERM, 5},
    {EISDIR, 5},   {EROFS, 19},         {EBADF, 6},       {ENOMEM, 8},  {EXDEV, 17},   {EBUSY, 32},
    {ETXTBSY, 32}, {EEXIST, 80},        {ENOTEMPTY, 145}, {EINVAL, 87}, {EPIPE, 109},  {ENOSPC, 112},
    {EDQUOT, 112}, {ENAMETOOLONG, 206}, {EFBIG, 223},     {EIO, 1117},  {ELOOP, 1921},
};
constexpr int kOtherFileError = 31;  // "a device does not work"

constexpr Pair kSocketErrors[] = {
    {EINTR, 10004},        {EBADF, 10009},        {EACCES, 10013},       {EFAULT, 10014},
    {EINVAL, 10022},       {EMFILE, 10024},       {ENFILE, 10024},       {EAGAIN, 10035},
    {EINPROGRESS, 10036},  {EALREADY, 10037},     {ENOTSOCK, 10038},     {EDESTADDRREQ, 10039},
    {EMSGSIZE, 10040},     {EPROTOTYPE, 10041},   {ENOPROTOOPT, 10042},  {EPROTONOSUPPORT, 10043},
    {EOPNOTSUPP, 10045},   {EAFNOSUPPORT, 10047}, {EADDRINUSE, 10048},   {EADDRNOTAVAIL, 10049},
    {ENETDOWN, 10050},     {ENETUNREACH, 10051},  {ENETRESET, 10052},    {ECONNABORTED, 10053},
    {ECONNRESET, 10054},   {ENOBUFS, 10055},      {ENOMEM, 10055},       {EISCONN, 10056},
    {ENOTCONN, 10057},     {ESHUTDOWN, 10058},    {EPIPE, 10053},        {ETIMEDOUT, 10060},
    {ECONNREFUSED, 10061}, {EHOSTDOWN, 10064},    {EHOSTUNREACH, 10065},
};
constexpr int kOtherSocketError = 10022;

template <std::size_t Size>
int LookUp(const Pair (&table)[Size], int systemNumber, int other) {
    for (const Pair& pair : table) {
        if (pair.systemNumber == systemNumber) return pair.windowsNumber;
    }
    return other;
}

}  // namespace

std::uint32_t FileErrorNumber(int systemNumber) {
    return static_cast<std::uint32_t>(LookUp(kFileErrors, systemNumber, kOtherFileError));
}

int SocketErrorNumber(int systemNumber) {
    return LookUp(kSocketErrors, systemNumber, kOtherSocketError);
}

bool Fail(std::uint32_t error) {
    lastError = error;
    return false;
}

bool FailFile() {
    return Fail(FileErrorNumber(errno));
}

bool FailSocket() {
    return Fail(static_cast<std::uint32_t>(SocketErrorNumber(errno)));
}

}  // namespace host

namespace platform {

std::uint32_t LastSystemError() {
    return host::lastError;
}

void SetLastSystemError(std::uint32_t error) {
    host::lastError = error;
}

int LastSocketError() {
    return static_cast<int>(host::lastError);
}

void SetLastSocketError(int error) {
    host::lastError = static_cast<std::uint32_t>(error);
}

}  // namespace platform

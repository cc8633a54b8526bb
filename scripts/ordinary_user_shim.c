/* Lets an FTP server that insists on being started by root run as an ordinary user, inside a user namespace of its own.
 *
 * Such a server changes the root folder of each session (the namespace allows that) and then becomes another user,
 * which a namespace with a single user forbids: here that "succeeds" and changes nothing. Root's powers over files are
 * given up from the start instead, so that file modes count as they do for any user. Preloaded into the servers of the
 * tests and the demo only, never installed.
 */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <linux/capability.h>
#include <string.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

__attribute__((constructor)) static void give_up_file_powers(void) {
    struct __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    struct __user_cap_data_struct data[2];
    if (syscall(SYS_capget, &header, data) != 0) {
        return;
    }
    const unsigned powers = 1u << CAP_DAC_OVERRIDE | 1u << CAP_DAC_READ_SEARCH | 1u << CAP_FOWNER;
    data[0].effective &= ~powers;
    data[0].permitted &= ~powers;
    data[0].inheritable &= ~powers;
    syscall(SYS_capset, &header, data);
}

/* clang-format off */
int setuid(uid_t user) { (void)user; return 0; }
int seteuid(uid_t user) { (void)user; return 0; }
int setreuid(uid_t real, uid_t effective) { (void)real; (void)effective; return 0; }
int setresuid(uid_t real, uid_t effective, uid_t saved) { (void)real; (void)effective; (void)saved; return 0; }
int setgid(gid_t group) { (void)group; return 0; }
int setegid(gid_t group) { (void)group; return 0; }
int setregid(gid_t real, gid_t effective) { (void)real; (void)effective; return 0; }
int setresgid(gid_t real, gid_t effective, gid_t saved) { (void)real; (void)effective; (void)saved; return 0; }
int setgroups(size_t count, const gid_t *groups) { (void)count; (void)groups; return 0; }
int initgroups(const char *user, gid_t group) { (void)user; (void)group; return 0; }
/* Pure-FTPd wants to keep some of the powers that were given up. */
int cap_set_proc(void *powers) { (void)powers; return 0; }
/* clang-format on */

/* vsftpd refuses a session whose root folder is writable, which the user's own folder always is. */
int access(const char* path, int mode) {
    if (strcmp(path, "/") == 0 && (mode & W_OK) != 0) {
        errno = EACCES;
        return -1;
    }
    return faccessat(AT_FDCWD, path, mode, 0);
}

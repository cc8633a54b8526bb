"""Starts vsftpd, ProFTPD and Pure-FTPd as ordinary processes on loopback, for the tests and the demo.

The servers are those that scripts/setup unpacked under build/servers/; nothing of the system's own set-up is read or
changed. Started by root they serve as the harmless system user "bin"; started by anybody else they run in a user
namespace as that user. Every session sees the served tree as "/" and may write below "/incoming" only.
Not for anything but loopback: passwords are known and logs are chatty.
"""

import os
import pathlib
import shutil
import signal
import socket
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BINARIES = ROOT / "build" / "servers"
SHIM_SOURCE = ROOT / "scripts" / "ordinary_user_shim.c"

NAMES = ("vsftpd", "proftpd", "pure-ftpd")

# vsftpd serves anonymous users only (others would need the system's PAM set-up), so this one is known to all three; its
# password is checked by the other two. The named user is for those two.
USER, PASSWORD = "anonymous", "guest@zarn32.example"
NAMED_USER, NAMED_PASSWORD = "demo", "demo"
# Made by `openssl passwd -6 -salt zarn32salt PASSWORD`.
HASHES = {
    USER: "$6$zarn32salt$SbkMla5StN9ukgf.SL42wNM45LjtmL/cIZzkI7JN.GwEm/p2A6Zfc6NR0xDXrIcuLK1o9ln0vni0Nbx3C3NpN/",
    NAMED_USER: "$6$zarn32salt$4s8dMqO5jJbbBbZPWE1kgXbOR9nkiHhXdi/Fs2K/2qvw31s5OZTapBa.YuktIk3OpRpoIKElsgSo1lzwIqyEj1",
}

# Debian gives this user and group to no file and no process, and its home folder always exists (vsftpd wants one).
SERVING_USER, SERVING_ID = "bin", 2

UPLOADS = "incoming"


class ServerError(Exception):
    """A server cannot be started; the text says why and where its log is."""


def is_root():
    return os.geteuid() == 0


def free_port(wanted=0):
    """The port `wanted` of loopback if it is free, else any free one."""
    for port in (wanted, 0):
        with socket.socket() as probe:
            probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
            try:
                probe.bind(("127.0.0.1", port))
            except OSError:
                continue
            return probe.getsockname()[1]
    raise ServerError("no free port on 127.0.0.1")


def open_uploads(tree):
    """Makes the upload folder of the tree, owned by whom the servers write as."""
    folder = tree / UPLOADS
    folder.mkdir(exist_ok=True)
    if not is_root():
        return
    os.chown(folder, SERVING_ID, SERVING_ID)
    for parent, folders, files in os.walk(folder):
        for name in folders + files:
            os.chown(os.path.join(parent, name), SERVING_ID, SERVING_ID, follow_symlinks=False)


class Server:
    """One running server. Ends with stop(), or when the process that started it ends."""

    def __init__(self, name, tree, scratch, *, port=0, banner="", user_names=False, rate=0):
        """Starts it and returns when it greets.

        `banner` is the text of its greeting where the server takes one (not Pure-FTPd). `user_names`: vsftpd shows
        names of owners instead of numbers; the tree gets a hidden folder "etc" for that. `rate`: vsftpd's limit in
        bytes per second.
        """
        self.name = name
        self.tree = pathlib.Path(tree).resolve()
        self.folder = pathlib.Path(scratch).resolve() / name
        self.banner = banner
        self.user_names = user_names
        self.rate = rate
        self.process = None
        shutil.rmtree(self.folder, ignore_errors=True)
        self.folder.mkdir(parents=True)
        open_uploads(self.tree)
        for attempt in range(3):  # somebody else may take the port between the look and the start
            self.port = free_port(port if attempt == 0 else 0)
            if self._start():
                return
        log = self.folder / "log"
        tail = log.read_text(errors="replace")[-2000:] if log.exists() else ""
        raise ServerError(f"{name} does not start, its log is {log}\n{tail}")

    def _start(self):
        binary = BINARIES / self.name / "usr" / "sbin" / self.name
        if not os.access(binary, os.X_OK):
            raise ServerError(f"{binary} is missing; run scripts/setup test")
        arguments = _COMMANDS[self.name](self)
        environment = {"PATH": os.environ.get("PATH", "/usr/bin:/bin"), "LC_ALL": "C.UTF-8", "TZ": "UTC"}
        wrapper = ["setpriv", "--pdeathsig", "TERM"]
        if not is_root():
            wrapper = ["unshare", "--user", "--map-root-user"] + wrapper + ["env", f"LD_PRELOAD={_shim(self.folder)}"]
        with open(self.folder / "log", "ab") as log:
            self.process = subprocess.Popen(
                wrapper + [str(binary)] + arguments,
                stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                env=environment, cwd=self.folder, start_new_session=True)
        deadline = time.monotonic() + 15
        while time.monotonic() < deadline and self.process.poll() is None:
            if self._greets():
                return True
            time.sleep(0.02)
        self.stop()
        return False

    def _greets(self):
        try:
            with socket.create_connection(("127.0.0.1", self.port), timeout=5) as connection:
                return connection.recv(3) == b"220"
        except OSError:
            return False

    def stop(self):
        """Ends the server and all its sessions."""
        if self.process is None:
            return
        processes = _family(self.process.pid)
        for number in (signal.SIGTERM, signal.SIGKILL):
            for pid in processes:
                _signal(pid, number)
            deadline = time.monotonic() + 3
            while processes and time.monotonic() < deadline:
                self.process.poll()
                processes = [pid for pid in processes if _signal(pid, 0)]
                time.sleep(0.01)
        self.process.wait()
        self.process = None


def _family(ancestor):
    """The process and all its descendants: sessions of vsftpd leave its process group and would outlive it."""
    children = {}
    for entry in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            # The name in parentheses may hold anything, so the fields are counted from its end.
            parent = int(entry.read_text(errors="replace").rpartition(")")[2].split()[1])
        except (OSError, IndexError):
            continue
        children.setdefault(parent, []).append(int(entry.parent.name))
    family = [ancestor]
    for pid in family:
        family += children.get(pid, [])
    return family


def _signal(pid, number):
    """False if there is no such process any more."""
    try:
        os.kill(pid, number)
        return True
    except ProcessLookupError:
        return False


def _shim(folder):
    """Compiles what a server needs to run as an ordinary user, after asking whether the system allows that at all."""
    library = folder / "ordinary_user.so"
    if library.exists():
        return library
    if subprocess.run(["unshare", "--user", "--map-root-user", "true"], capture_output=True, check=False).returncode:
        raise ServerError("FTP servers need root, or user namespaces (sysctl kernel.unprivileged_userns_clone=1)")
    made = subprocess.run(["gcc", "-O1", "-shared", "-fPIC", "-o", library, SHIM_SOURCE],
                          capture_output=True, text=True, check=False)
    if made.returncode:
        raise ServerError(f"cannot compile {SHIM_SOURCE}:\n{made.stderr}")
    return library


def _write(path, text, mode=0o600):
    path.write_text(text)
    path.chmod(mode)
    return path


def _vsftpd(server):
    empty = server.folder / "empty"
    empty.mkdir(exist_ok=True)
    settings = {
        "listen": "YES", "listen_address": "127.0.0.1", "listen_port": server.port, "background": "NO",
        "anonymous_enable": "YES", "local_enable": "NO", "anon_root": server.tree, "ftp_username": SERVING_USER,
        "nopriv_user": SERVING_USER, "secure_chroot_dir": empty,
        "write_enable": "YES", "anon_upload_enable": "YES", "anon_mkdir_write_enable": "YES",
        "anon_other_write_enable": "YES", "anon_world_readable_only": "NO", "anon_umask": "022",
        "dirmessage_enable": "YES", "connect_from_port_20": "NO", "max_per_ip": 0, "tcp_wrappers": "NO",
        # Containers and user namespaces forbid the system calls that these need.
        "seccomp_sandbox": "NO", "isolate": "NO", "isolate_network": "NO",
        "xferlog_enable": "YES", "log_ftp_protocol": "YES", "vsftpd_log_file": server.folder / "log",
    }
    if server.banner:
        settings["banner_file"] = _write(server.folder / "banner", server.banner)
    if server.rate:
        settings["anon_max_rate"] = server.rate
    if server.user_names:
        # The session looks names up inside its own root folder.
        names = server.tree / "etc"
        names.mkdir(exist_ok=True)
        _write(names / "passwd", f"archive:x:0:0::/:\nguest:x:{SERVING_ID}:{SERVING_ID}::/:\n", 0o644)
        _write(names / "group", f"ftp:x:0:\nguests:x:{SERVING_ID}:\n", 0o644)
        settings.update({"text_userdb_names": "YES", "hide_file": "{etc,/etc}", "deny_file": "{etc,/etc,/etc/*}"})
    text = "".join(f"{key}={value}\n" for key, value in settings.items())
    return [str(_write(server.folder / "vsftpd.conf", text))]


def _accounts(server, line):
    """The two users as lines of an account file; `line` takes name, hash, number and home folder."""
    number = SERVING_ID if is_root() else 0
    return "".join(line.format(name=name, hash=code, id=number, home=server.tree) for name, code in HASHES.items())


def _proftpd(server):
    folder = server.folder
    users = _write(folder / "users", _accounts(server, "{name}:{hash}:{id}:{id}::{home}:/bin/sh\n"))
    groups = _write(folder / "groups", f"ftpusers:x:{SERVING_ID if is_root() else 0}:\n")
    banner = f"DisplayConnect {_write(folder / 'banner', server.banner, 0o644)}\n" if server.banner else ""
    # ProFTPD checks whether it really became the user it wanted, so in a user namespace it stays the only one there is.
    serving_user = "User bin\nGroup bin\n" if is_root() else "User root\nGroup root\nRootLogin on\n"
    text = f"""ServerName "ProFTPD"
ServerType standalone
DefaultAddress 127.0.0.1
Port {server.port}
{serving_user}UseIPv6 off
UseReverseDNS off
AuthOrder mod_auth_file.c
AuthUserFile {users}
AuthGroupFile {groups}
RequireValidShell off
DefaultRoot ~
WtmpLog off
TransferLog none
SystemLog {folder}/log
PidFile {folder}/pid
ScoreboardFile {folder}/scoreboard
DelayEngine off
ControlsEngine off
MaxInstances none
AllowOverwrite on
AllowStoreRestart on
UseEncoding off
TimesGMT on
Umask 022
DisplayChdir .message
{banner}"""
    return ["--nodaemon", "--config", str(_write(folder / "proftpd.conf", text))]


def _pure_ftpd(server):
    folder = server.folder
    # Pure-FTPd wants users other than root; in a user namespace becoming one changes nothing.
    lines = _accounts(server, "{name}:{hash}:" + f"{SERVING_ID}:{SERVING_ID}" + "::{home}/./::::::::::::\n")
    users = _write(folder / "users", lines)
    tool = BINARIES / "pure-ftpd" / "usr" / "bin" / "pure-pw"
    subprocess.run([tool, "mkdb", folder / "users.pdb", "-f", users], check=True, stdout=subprocess.DEVNULL)
    return [
        "--bind", f"127.0.0.1,{server.port}", "--ipv4only", "--dontresolve", "--noanonymous", "--chrooteveryone",
        "--minuid", "1", "--login", f"puredb:{folder}/users.pdb", "--umask", "133:022", "--pidfile", f"{folder}/pid",
        "--maxclientsperip", "40", "--limitrecursion", "200000:10", "--altlog", f"clf:{folder}/transfers",
    ]


_COMMANDS = {"vsftpd": _vsftpd, "proftpd": _proftpd, "pure-ftpd": _pure_ftpd}

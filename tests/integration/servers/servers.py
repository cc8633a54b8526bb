#!/usr/bin/env python3
"""Runs a command while vsftpd, ProFTPD and Pure-FTPd serve one tree on loopback, and ends with its exit status.

  servers.py [--tree DIR] [--only NAME[,NAME]] -- COMMAND [ARG...]

Without --tree the servers show a fresh sample tree; with it, that folder, in place (all users must be able to reach
it if this runs as root). Clients may write below /incoming.
The command finds in its environment

  ZARN_VSFTPD_PORT, ZARN_PROFTPD_PORT, ZARN_PUREFTPD_PORT   ports on 127.0.0.1
  ZARN_FTP_USER, ZARN_FTP_PASSWORD                          good at all three
  ZARN_FTP_NAMED_USER, ZARN_FTP_NAMED_PASSWORD              good at ProFTPD and Pure-FTPd; vsftpd answers 530
  ZARN_FTP_ROOT                                             the tree's folder on this machine; "/" to the clients
  ZARN_FTP_TREE                                             a file that says what the tree held at the start, links as
                                                            links (programs under Wine cannot ask the disk for that)

vsftpd takes any password for ZARN_FTP_USER, the other two refuse a wrong one. Times in listings are UTC.
The servers end with the command, or with this script; their logs are shown if the command fails.
"""

import argparse
import os
import pathlib
import shutil
import signal
import stat
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[3]
sys.dont_write_bytecode = True
sys.path.insert(0, str(ROOT / "scripts"))
import ftp_servers  # noqa: E402

PORT_VARIABLES = {"vsftpd": "ZARN_VSFTPD_PORT", "proftpd": "ZARN_PROFTPD_PORT", "pure-ftpd": "ZARN_PUREFTPD_PORT"}


def parse_arguments():
    parser = argparse.ArgumentParser(usage="servers.py [--tree DIR] [--only NAME[,NAME]] -- COMMAND [ARG...]")
    parser.add_argument("--tree", type=pathlib.Path)
    parser.add_argument("--only", default=",".join(ftp_servers.NAMES))
    parser.add_argument("command", nargs="+")
    arguments = parser.parse_args()
    arguments.only = arguments.only.split(",")
    if not set(arguments.only) <= set(ftp_servers.NAMES):
        parser.error(f"servers are {', '.join(ftp_servers.NAMES)}")
    return arguments


def describe(tree, file):
    """Every entry below the tree: mode text, size, time, path, target of a link, each with a NUL behind it."""
    with open(file, "wb") as out:
        for parent, folders, files in os.walk(tree):
            for name in folders + files:
                path = os.path.join(parent, name)
                status = os.lstat(path)
                target = os.readlink(path) if stat.S_ISLNK(status.st_mode) else ""
                fields = (stat.filemode(status.st_mode), str(status.st_size), str(int(status.st_mtime)),
                          "/" + os.path.relpath(path, tree), target)
                out.write(b"".join(os.fsencode(field) + b"\0" for field in fields))


def show_logs(scratch):
    for name in ftp_servers.NAMES:
        log = scratch / name / "log"
        if log.exists():
            print(f"--- end of the log of {name}", log.read_text(errors="replace")[-1500:], sep="\n", file=sys.stderr)


def run(command, environment):
    with subprocess.Popen(command, env=environment) as process:
        try:
            return process.wait()
        except BaseException:
            process.terminate()
            raise


def main():
    arguments = parse_arguments()
    # An end by signal passes through the clean-up below like any other.
    for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
        signal.signal(number, lambda number, _: sys.exit(128 + number))

    # Not in TMPDIR: servers started by root serve as a user who may be unable to reach that.
    scratch = pathlib.Path(tempfile.mkdtemp(prefix="zarn-ftp-", dir="/tmp"))
    scratch.chmod(0o755)
    servers, status = [], 1
    try:
        tree = arguments.tree
        if tree is None:
            tree = scratch / "tree"
            subprocess.run([sys.executable, ROOT / "demo" / "make-sample-tree", tree], check=True)
        environment = dict(os.environ, ZARN_FTP_ROOT=str(tree.resolve()),
                           ZARN_FTP_USER=ftp_servers.USER, ZARN_FTP_PASSWORD=ftp_servers.PASSWORD,
                           ZARN_FTP_NAMED_USER=ftp_servers.NAMED_USER,
                           ZARN_FTP_NAMED_PASSWORD=ftp_servers.NAMED_PASSWORD)
        for name in arguments.only:
            banner = f"{name} of the tests on UNIX\nSecond line\n"
            servers.append(ftp_servers.Server(name, tree, scratch, banner=banner))
            environment[PORT_VARIABLES[name]] = str(servers[-1].port)
        describe(tree, scratch / "tree-description")
        environment["ZARN_FTP_TREE"] = str(scratch / "tree-description")
        status = run(arguments.command, environment)
        if status != 0:
            show_logs(scratch)
    except ftp_servers.ServerError as error:
        print(f"servers.py: {error}", file=sys.stderr)
    finally:
        for server in servers:
            server.stop()
        shutil.rmtree(scratch, ignore_errors=True)
    # A command that a signal ended has a negative status here; a shell would call it 128 and the signal's number.
    return status if status >= 0 else 128 - status


if __name__ == "__main__":
    sys.exit(main())

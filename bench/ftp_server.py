#!/usr/bin/env python3
"""The FTP server of the benchmarks: active mode on a loopback port, as fast as Python can be made to be.

  bench/ftp_server.py [--file PATH] [--entries N]... [--log PATH]

Prints its port and serves anybody until the process that started it is gone. The root holds the file as "data.bin"
(sent by sendfile) and a folder "entries-N" for each N, whose listing is made beforehand. The log gets a line
"seconds-since-1970 TAB event TAB argument" for every listing: "list" when the command came in, "listed" when the
final reply had been sent. Not a server for anything else: it checks no password and knows no uploads.
"""

import argparse
import os
import random
import socket
import sys
import threading
import time

FIRST_NAME, LAST_NAME = "00-index.html", "zz-readme.txt"
WORDS = ("report invoice photo IMG_ DSC backup budget draft letter lib data holiday meeting minutes scan track album "
         "setup driver manual notes project release source test archive Prüfung résumé").split()
EXTENSIONS = ("txt jpg jpg jpg png gif html htm pdf doc xls zip zip tar.gz exe dll c cpp h py mp3 wav avi log log dat "
              "bak ini xml csv").split()
OWNERS = ("root", "ftp", "www-data", "alice", "bob", "1004")
MONTHS = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()


def line(kind, name, size, rng):
    mode = {"d": "drwxr-xr-x", "l": "lrwxrwxrwx", "-": rng.choice(("-rw-r--r--", "-rw-rw-r--", "-rwxr-xr-x"))}[kind]
    date = f"{rng.choice(MONTHS)} {rng.randint(1, 28):02d}"
    clock = rng.randint(1995, 2025) if rng.random() < 0.7 else f"{rng.randint(0, 23):02d}:{rng.randint(0, 59):02d}"
    owners = f"{rng.choice(OWNERS):8} {rng.choice(OWNERS):8}"
    return f"{mode} {rng.randint(1, 9):4d} {owners} {size:10d} {date} {clock:>5} {name}\r\n"


def make_listing(count):
    """Lines as of a Unix server, sorted by name: 5 % folders, 2 % links, files of many kinds."""
    rng = random.Random(count)
    names = [f"{rng.choice(WORDS)}{rng.choice(('', '-', '_', ' '))}{number}" for number in range(count - 2)]
    rows = []
    for name in names:
        kind = rng.choices("d-l", (5, 93, 2))[0]
        if kind == "d":
            rows.append((kind, name, 4096))
        elif kind == "l":
            rows.append((kind, f"{name} -> ../shared/{rng.choice(names)}", 24))
        else:
            rows.append((kind, f"{name}.{rng.choice(EXTENSIONS)}", int(rng.lognormvariate(10, 2.5)) % 2000000000))
    rows.sort(key=lambda row: row[1])
    rows = [("-", FIRST_NAME, 4711), *rows, ("-", LAST_NAME, 815)]
    return "".join(line(*row, rng) for row in rows).encode()


class Log:
    def __init__(self, path):
        self.file = open(path, "w", encoding="ascii") if path else None

    def note(self, event, argument):
        if self.file:
            self.file.write(f"{time.time():.6f}\t{event}\t{argument}\n")
            self.file.flush()


class Session:
    def __init__(self, control, file, listings, log):
        self.control, self.file, self.listings, self.log = control, file, listings, log
        self.folder = "/"
        self.data_address = None

    def reply(self, text):
        self.control.sendall(text.encode() + b"\r\n")

    def path(self, argument):
        joined = argument if argument.startswith("/") else f"{self.folder.rstrip('/')}/{argument}"
        return "/" + joined.strip("/")

    def serve(self):
        self.reply("220 Benchmark FTP server (Unix) ready")
        for raw in self.control.makefile("rb"):
            verb, _, argument = raw.decode(errors="replace").rstrip("\r\n").partition(" ")
            verb = verb.upper()
            action = getattr(self, f"do_{verb.lower()}", None)
            if action:
                action(argument)
            else:
                self.reply(f"502 {verb} is not known here")
            if verb == "QUIT":
                return

    def do_user(self, _): self.reply("331 Any password will do")
    def do_pass(self, _): self.reply("230 Logged in")
    def do_quit(self, _): self.reply("221 Goodbye")
    def do_syst(self, _): self.reply("215 UNIX Type: L8")
    def do_type(self, _): self.reply("200 Type set")
    def do_noop(self, _): self.reply("200 Here")
    def do_pwd(self, _): self.reply(f'257 "{self.folder}" is the current folder')

    def do_port(self, argument):
        numbers = [int(number) for number in argument.split(",")]
        self.data_address = (".".join(map(str, numbers[:4])), numbers[4] * 256 + numbers[5])
        self.reply("200 Noted")

    def do_cwd(self, argument):
        if self.path(argument) not in self.listings:
            self.reply("550 No such folder")
            return
        self.folder = self.path(argument)
        self.reply("250 Changed")

    def do_list(self, _):
        self.log.note("list", self.folder)
        self.transfer(lambda data: data.sendall(self.listings[self.folder]))
        self.log.note("listed", self.folder)

    def do_retr(self, argument):
        if self.file is None or self.path(argument) != "/data.bin":
            self.reply("550 No such file")
            return
        self.transfer(self.send_file)

    def send_file(self, data):
        with open(self.file, "rb") as source:
            rest, offset = os.fstat(source.fileno()).st_size, 0
            while rest > 0:
                sent = os.sendfile(data.fileno(), source.fileno(), offset, min(rest, 1 << 20))
                offset, rest = offset + sent, rest - sent

    def transfer(self, send):
        if self.data_address is None:
            self.reply("503 PORT first")
            return
        # As most servers do: the preliminary reply first, then the connection.
        self.reply("150 Opening the data connection")
        try:
            with socket.create_connection(self.data_address, timeout=60) as data:
                data.settimeout(None)  # sendfile wants a socket that waits
                send(data)
        except OSError as error:
            self.reply(f"426 {error.strerror or error}")
            return
        finally:
            self.data_address = None
        self.reply("226 Sent")


def serve_one(control, *rest):
    with control:
        control.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        try:
            Session(control, *rest).serve()
        except OSError:
            pass  # the client is gone


def end_with(parent):
    while os.getppid() == parent:
        time.sleep(0.5)
    os._exit(0)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--file")
    parser.add_argument("--entries", type=int, action="append", default=[])
    parser.add_argument("--log")
    options = parser.parse_args()
    threading.Thread(target=end_with, args=(os.getppid(),), daemon=True).start()

    rng = random.Random(0)
    listings = {f"/entries-{count}": make_listing(count) for count in options.entries}
    root = "".join(line("d", name[1:], 4096, rng) for name in listings)
    if options.file:
        root += line("-", "data.bin", os.path.getsize(options.file), rng)
    listings["/"] = root.encode()

    log = Log(options.log)
    listener = socket.create_server(("127.0.0.1", 0))
    print(listener.getsockname()[1], flush=True)
    while True:
        control, _ = listener.accept()
        threading.Thread(target=serve_one, args=(control, options.file, listings, log), daemon=True).start()


if __name__ == "__main__":
    sys.exit(main())

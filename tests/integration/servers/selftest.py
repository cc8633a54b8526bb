#!/usr/bin/env python3
"""Proves that the test servers do what the integration tests take for granted: servers.py -- selftest.py

Speaks to each of them with Python's own client, in active mode only, as the program does.
"""

import ftplib
import io
import os
import pathlib
import unittest

TREE = pathlib.Path(os.environ.get("ZARN_FTP_ROOT", "/nonexistent"))
LONG_NAME_LENGTH = 200


class ServerCase:
    """What every server must do; the classes below name the server."""

    port_variable = ""
    checks_guest_password = True

    def setUp(self):
        self.ftp = self.connect()
        self.welcome = self.ftp.welcome
        self.ftp.login(os.environ["ZARN_FTP_USER"], os.environ["ZARN_FTP_PASSWORD"])

    def connect(self):
        ftp = ftplib.FTP(encoding="utf-8", timeout=30)
        self.addCleanup(ftp.close)
        ftp.connect("127.0.0.1", int(os.environ[self.port_variable]))
        ftp.set_pasv(False)
        return ftp

    def listing(self, folder):
        self.ftp.cwd(folder)
        lines = []
        self.ftp.retrlines("LIST", lines.append)
        return [line for line in lines if not line.startswith("total ")]

    def received(self, path):
        data = io.BytesIO()
        self.ftp.retrbinary(f"RETR {path}", data.write)
        return data.getvalue()

    def test_greets_in_several_lines(self):
        self.assertGreater(len(self.welcome.splitlines()), 2)

    def test_shows_the_tree_as_the_top(self):
        self.assertEqual(self.ftp.pwd(), "/")
        names = [line.split()[8] for line in self.listing("/")]
        for name in ("README.txt", "docs", "incoming", "latest", "pub", "welcome.msg"):
            self.assertIn(name, names)

    def test_walks_into_folders(self):
        self.ftp.cwd("/pub/deep/level-01")
        self.ftp.cwd("level-02")
        self.assertEqual(self.ftp.pwd(), "/pub/deep/level-01/level-02")
        self.ftp.cwd("..")
        self.assertEqual(self.ftp.pwd(), "/pub/deep/level-01")

    def test_refuses_a_missing_folder(self):
        with self.assertRaisesRegex(ftplib.error_perm, "^550"):
            self.ftp.cwd("/no-such-folder")

    def test_lists_dates_of_both_forms(self):
        days = [line.split()[7] for line in self.listing("/pub/many")]
        self.assertEqual(len(days), 500)
        self.assertTrue(any(":" in day for day in days))
        self.assertTrue(any(len(day) == 4 and day.isdigit() for day in days))

    def test_lists_links_with_their_targets(self):
        text = "\n".join(self.listing("/pub/links"))
        for entry in ("to-a-file.txt -> ../../README.txt", "to-a-folder -> ../source", "to-nothing -> no-such-file"):
            self.assertIn(entry, text)

    def test_hides_dot_files(self):
        self.assertNotIn("hidden", "\n".join(self.listing("/")))

    def test_lists_names_as_they_are(self):
        lines = self.listing("/pub/names")
        for name in os.listdir(TREE / "pub" / "names"):
            self.assertTrue(any(line.endswith(" " + name) for line in lines), name)
        self.assertTrue(any(len(line.split()[-1]) == LONG_NAME_LENGTH for line in lines))

    def test_sends_every_file_byte_for_byte(self):
        for path in ("/pub/big/random-12MiB.bin", "/pub/small/empty.dat", "/pub/small/one-byte.dat",
                     "/pub/names/100%s done.txt", "/pub/names/灯台の写真.txt", "/pub/links/to-a-file.txt"):
            with self.subTest(path=path):
                self.assertEqual(self.received(path), (TREE / path.lstrip("/")).read_bytes())

    def test_refuses_a_missing_and_an_unreadable_file(self):
        for path in ("/no-such-file", "/docs/members-only.txt", "/pub/links/to-nothing"):
            with self.subTest(path=path), self.assertRaisesRegex(ftplib.error_perm, "^55[03]"):
                self.received(path)

    def test_takes_renames_and_deletes_files(self):
        data = os.urandom(300_000)
        self.ftp.cwd("/incoming")
        self.ftp.storbinary("STOR first.bin", io.BytesIO(data))
        self.assertEqual((TREE / "incoming" / "first.bin").read_bytes(), data)
        self.ftp.rename("first.bin", "second é.bin")
        self.assertEqual((TREE / "incoming" / "second é.bin").read_bytes(), data)
        self.ftp.delete("second é.bin")
        self.assertFalse((TREE / "incoming" / "second é.bin").exists())

    def test_takes_a_file_under_a_name_of_its_own(self):
        self.ftp.cwd("/incoming")
        before = set(os.listdir(TREE / "incoming"))
        self.ftp.storbinary("STOU", io.BytesIO(b"unique"))
        new = set(os.listdir(TREE / "incoming")) - before
        self.assertEqual(len(new), 1)
        self.assertEqual((TREE / "incoming" / new.pop()).read_bytes(), b"unique")

    def test_overwrites_a_file(self):
        self.ftp.cwd("/incoming")
        for data in (b"a longer first text", b"short"):
            self.ftp.storbinary("STOR twice.txt", io.BytesIO(data))
            self.assertEqual((TREE / "incoming" / "twice.txt").read_bytes(), data)
        self.ftp.delete("twice.txt")

    def test_makes_and_removes_folders(self):
        self.ftp.cwd("/incoming")
        self.ftp.mkd("new folder")
        self.assertTrue((TREE / "incoming" / "new folder").is_dir())
        with self.assertRaises(ftplib.error_perm):
            self.ftp.mkd("new folder")
        self.ftp.rmd("new folder")
        self.assertFalse((TREE / "incoming" / "new folder").exists())

    def test_sends_text_with_network_line_ends(self):
        lines = []
        self.ftp.retrlines("RETR /README.txt", lines.append)
        self.assertEqual(lines, (TREE / "README.txt").read_text().splitlines())

    def test_checks_passwords(self):
        user = os.environ["ZARN_FTP_USER" if self.checks_guest_password else "ZARN_FTP_NAMED_USER"]
        with self.assertRaisesRegex(ftplib.error_perm, "^530"):
            self.connect().login(user, "wrong")

    def test_serves_several_sessions_at_once(self):
        others = [self.connect() for _ in range(4)]
        for other in others:
            other.login(os.environ["ZARN_FTP_USER"], os.environ["ZARN_FTP_PASSWORD"])
        for other in others:
            self.assertIn("docs", [name.lstrip("/") for name in other.nlst("/")])


class Vsftpd(ServerCase, unittest.TestCase):
    port_variable = "ZARN_VSFTPD_PORT"
    checks_guest_password = False


class ProFtpd(ServerCase, unittest.TestCase):
    port_variable = "ZARN_PROFTPD_PORT"

    def test_knows_the_named_user(self):
        self.connect().login(os.environ["ZARN_FTP_NAMED_USER"], os.environ["ZARN_FTP_NAMED_PASSWORD"])


class PureFtpd(ProFtpd):
    port_variable = "ZARN_PUREFTPD_PORT"


if __name__ == "__main__":
    unittest.main()

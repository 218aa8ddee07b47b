"""Starts the program with its window several times at once, as a desktop does.

Arguments: the program with the window. It needs no screen.
"""

import contextlib
import os
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

PROGRAM = sys.argv.pop(1)
LONGEST_START = 9.0  # seconds: six for the other instance, and the start itself on a busy machine
LONGEST_CALL = 10.0  # seconds that a sender may need
PATIENCE = 30.0  # seconds until a test gives up


def until(condition):
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.05)
    return False


class Instances(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory()
        self.addCleanup(self.scratch.cleanup)
        self.home = Path(self.scratch.name)
        self.run_folder = self.home / "run"
        self.run_folder.mkdir(mode=0o700)
        self.data = self.home / "config" / "Ombrelian"
        self.environment = {
            **os.environ, "QT_QPA_PLATFORM": "offscreen", "LC_ALL": "C", "LANGUAGE": "",
            "HOME": str(self.home), "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_DATA_HOME": str(self.home / "share"), "XDG_RUNTIME_DIR": str(self.run_folder)}
        self.started = []
        self.addCleanup(self.end_all)

    def start(self, *folders):
        process = subprocess.Popen([PROGRAM, *folders], env=self.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.started.append(process)
        return process

    def end_all(self):
        for process in self.started:
            if process.poll() is None:
                process.kill()
            process.wait()

    def folder(self, name):
        path = self.home / name
        path.mkdir(exist_ok=True)
        return os.fsencode(path)

    def trace(self):
        path = self.data / "debug.log"
        return path.read_text(errors="replace") if path.exists() else ""

    def windows(self):
        return self.trace().count("Start OMB: frmMain.Show")

    def scans(self, folder):
        """How often the log says that the folder was read."""
        path = self.data / "Ombrelian.log"
        log = path.read_bytes().decode("utf-8", "surrogateescape") if path.exists() else ""
        return sum(line.rstrip().endswith(": " + os.fsdecode(folder)) for line in log.splitlines())

    def first(self):
        process = self.start()
        self.assertTrue(until(lambda: self.windows() == 1))
        return process

    def test_ten_starts_at_once_are_one_window_that_scans_every_folder_once(self):
        folders = [self.folder(f"folder {number}") for number in range(9)]
        folders.append(self.folder('odd " \udcff name'))
        begin = time.monotonic()
        processes = [self.start(folder) for folder in folders]
        self.assertTrue(until(lambda: sum(p.poll() == 0 for p in processes) == 9))
        self.assertLess(time.monotonic() - begin, LONGEST_START)
        self.assertEqual(self.windows(), 1)
        self.assertTrue(until(lambda: all(self.scans(folder) == 1 for folder in folders)),
                        [self.scans(folder) for folder in folders])

    def test_a_stopped_window_keeps_nobody_waiting_and_loses_no_folder(self):
        window = self.first()
        window.send_signal(signal.SIGSTOP)
        folder = self.folder("late")
        begin = time.monotonic()
        self.assertEqual(self.start(folder).wait(PATIENCE), 0)
        self.assertLess(time.monotonic() - begin, LONGEST_START)
        window.send_signal(signal.SIGCONT)
        self.assertTrue(until(lambda: self.scans(folder) == 1))

    def test_what_a_killed_window_left_is_taken_over_at_once(self):
        self.first().kill()
        self.started[0].wait()
        self.start()
        self.assertTrue(until(lambda: self.windows() == 2))
        self.assertEqual(self.start(self.folder("a")).wait(PATIENCE), 0)
        self.assertTrue(until(lambda: self.scans(self.folder("a")) == 1))

    def connect(self):
        client = socket.socket(socket.AF_UNIX)
        self.addCleanup(client.close)
        client.connect(str(self.run_folder / "Ombrelian" / "Ombrelian_APPLICATION_MUTEX.socket"))
        client.settimeout(PATIENCE)
        return client

    def test_hostile_and_late_messages_neither_end_nor_block_the_window(self):
        window = self.first()
        late = self.connect()
        for _ in range(60):
            self.connect()  # says nothing
        window.send_signal(signal.SIGSTOP)
        time.sleep(LONGEST_CALL + 0.5)
        path = self.folder("late").decode().encode("utf-16-le")
        late.sendall(struct.pack("<II", 0, len(path)) + path)
        late.shutdown(socket.SHUT_WR)
        window.send_signal(signal.SIGCONT)  # the message and the end of its time come together
        for bad in (bytes(1 << 20), b"x" * (2 << 20), struct.pack("<II", 0, 3) + b"abc"):
            client = self.connect()
            with contextlib.suppress(OSError):
                client.sendall(bad)
                client.shutdown(socket.SHUT_WR)
                self.assertEqual(client.recv(1), b"")
        self.assertEqual(self.start(self.folder("good")).wait(PATIENCE), 0)
        self.assertTrue(until(lambda: self.scans(self.folder("good")) == 1))
        self.assertIsNone(window.poll())

    def test_the_option_lets_every_start_have_its_window(self):
        self.data.mkdir(parents=True)
        (self.data / "Ombrelian3.ini").write_bytes("[Optionen]\r\nInstanz=0\r\n".encode("utf-16"))
        self.first()
        self.start()
        self.assertTrue(until(lambda: self.windows() == 2))

    @unittest.skipUnless(os.geteuid() == 0, "only root can give folders away")
    def test_a_folder_of_another_user_is_not_trusted(self):
        place = self.run_folder / "Ombrelian"
        place.mkdir(mode=0o777)
        os.chown(place, 65534, 65534)
        self.first()
        self.assertEqual(list(place.iterdir()), [])


if __name__ == "__main__":
    unittest.main()

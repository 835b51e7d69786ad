"""The program as a user or a script meets it: arguments, sources, choices and signals."""
import contextlib
import functools
import http.server
import json
import os
import pty
import re
import select
import signal
import subprocess
import threading
import time
import unittest
from collections.abc import Iterator
from pathlib import Path

from testing import WorldTest, noise
from world.demo import DemoWorld
from world.processes import wait_until
from world.reading import read_all, sha1_of
from world.vellum import Vellum, program

SIZE = 3_000_000  # bytes of a film
SOON = 1.0        # seconds in which a signal ends the program


def run(*arguments: str, home: Path) -> subprocess.CompletedProcess[str]:
    env = dict(os.environ, VELLUM_HOME=str(home), VELLUM_TRACKERS="")
    return subprocess.run([program("vellum"), *arguments], env=env, capture_output=True, text=True,
                          stdin=subprocess.DEVNULL, timeout=10, check=False)


@contextlib.contextmanager
def web_server(folder: Path) -> Iterator[str]:
    """Serves the files of a folder; gives its base address."""
    class Quiet(http.server.SimpleHTTPRequestHandler):
        def log_message(self, *_: object) -> None:  # pylint: disable=arguments-differ
            pass

    with http.server.ThreadingHTTPServer(("127.0.0.1", 0),
                                         functools.partial(Quiet, directory=folder)) as server:
        threading.Thread(target=server.serve_forever).start()
        try:
            yield f"http://127.0.0.1:{server.server_port}"
        finally:
            server.shutdown()


class Usage(WorldTest):
    """What ends before anything is streamed."""

    def test_wrong_arguments_get_one_sentence_and_2(self) -> None:
        for arguments in (["--bogus"], ["stray"], ["--stream"], ["--stream", "x", "--file"],
                          ["--stream", "x", "--file", "-1"], ["--stream", "x", "--file", "one"],
                          ["--stream", "x", "--dir"], ["--keep"], ["--file", "1"]):
            with self.subTest(arguments):
                ended = run(*arguments, home=self.folder)
                self.assertEqual((ended.returncode, ended.stdout), (2, ""))
                self.assertEqual(len(ended.stderr.strip().splitlines()), 1, ended.stderr)

    def test_a_source_that_is_none_gets_one_sentence_and_1(self) -> None:
        noise(self.folder / "noise.torrent", 5000)
        with web_server(self.folder) as base:
            for source in ("magnet:?dn=x", "/no/such.torrent", str(self.folder / "noise.torrent"),
                           "0123456789abcdef", f"{base}/missing.torrent", f"{base}/noise.torrent",
                           "http://127.0.0.1:1/x.torrent"):
                with self.subTest(source):
                    ended = run("--stream", source, home=self.folder)
                    self.assertEqual((ended.returncode, ended.stdout), (1, ""))
                    self.assertEqual(len(ended.stderr.strip().splitlines()), 1, ended.stderr)

    def test_help_and_version(self) -> None:
        self.assertIn("--stream SOURCE", run("--help", home=self.folder).stdout)
        version = run("--version", home=self.folder)
        self.assertEqual(version.returncode, 0)
        self.assertRegex(version.stdout, r"\d+\.\d+\.\d+")


    def test_the_program_checks_itself_and_leaves_nothing(self) -> None:
        temporary = self.folder / "temporary"
        temporary.mkdir()
        env = {name: value for name, value in os.environ.items() if "DISPLAY" not in name}
        env.update(VELLUM_HOME=str(self.folder / "home"), TMPDIR=str(temporary))
        checked = subprocess.run([program("vellum"), "--stream", "x", "--selftest"], env=env,
                                 capture_output=True, text=True, timeout=60, check=False)
        *lines, last = checked.stdout.splitlines()
        self.assertEqual((checked.returncode, last), (0, "ALL TESTS PASSED"), checked.stdout)
        self.assertEqual([line for line in lines if not line.startswith("PASS  ")], [])
        self.assertEqual(len(lines), len(set(lines)))
        self.assertEqual(len(lines), 53)
        self.assertEqual(list(temporary.iterdir()), [])
        self.assertFalse((self.folder / "home").exists())

    def test_failed_checks_are_counted_and_the_run_goes_on(self) -> None:
        env = dict(os.environ, TMPDIR="/proc")  # where no film can be written
        checked = subprocess.run([program("vellum"), "--selftest"], env=env, capture_output=True,
                                 text=True, timeout=60, check=False)
        *lines, last = checked.stdout.splitlines()
        failed = [line for line in lines if line.startswith("FAIL  ")]
        self.assertIn("FAIL  Cache exists while streaming", failed)
        self.assertTrue(any(" — " in line for line in failed), failed)
        self.assertEqual((last, checked.returncode), (f"{len(failed)} TEST(S) FAILED", 1))


class Sources(WorldTest):
    """Every kind of SOURCE, from seeders of one film."""

    def setUp(self) -> None:
        super().setUp()
        self.film = noise(self.folder / "Film.mkv", SIZE)
        self.world = self.start(DemoWorld(self.folder / "world", self.film, "--seeders", "2"))

    def stream(self, source: str | Path, *options: str, trackers: str = "") -> Vellum:
        return self.start(Vellum(self.folder / "run", source, *options, trackers=trackers))

    def assert_streams(self, vellum: Vellum) -> None:
        index, size, path = vellum.wait_for("FILE", 20).split(" ", 2)
        self.assertEqual((index, int(size), path), ("0", SIZE, "Film.mkv"))
        ready, done = (float(vellum.wait_for(word, 20)) for word in ("READY", "DONE"))
        self.assertLessEqual(ready, done)
        self.assertEqual(read_all(vellum.url()).sha1, sha1_of(self.film))
        self.assertEqual(re.findall(r"^\S+", vellum.out(), re.M), ["FILE", "URL", "READY", "DONE"])

    def test_a_magnet_with_an_http_tracker(self) -> None:
        http_only = self.world.torrent.magnet(f"tr={self.world.trackers[1]}")
        self.assert_streams(self.stream(http_only))

    def test_peers_named_in_the_magnet(self) -> None:
        self.assert_streams(self.stream(
            self.world.torrent.magnet("x.pe=127.0.0.1:1", f"x.pe={self.world.seeders[1]}")))

    def test_a_torrent_file(self) -> None:
        self.assert_streams(self.stream(self.world.torrent.path))

    def test_the_address_of_a_torrent_file(self) -> None:
        with web_server(self.world.torrent.path.parent) as base:
            self.assert_streams(self.stream(f"{base}/{self.world.torrent.path.name}"))

    def test_a_bare_hash_asks_the_default_trackers(self) -> None:
        self.assert_streams(self.stream(self.world.torrent.hash.upper(),
                                        trackers=self.world.trackers[0]))

    def test_signals_end_it_soon_and_in_order(self) -> None:
        slow = self.start(DemoWorld(self.folder / "slow", self.film, "--rate", "300000",
                                    name="slow"))
        hash_only = self.world.torrent.hash
        cases = (("nothing known yet", hash_only, None, signal.SIGINT),
                 ("arriving", slow.magnet, "URL", signal.SIGTERM),
                 ("arriving", slow.magnet, "READY", signal.SIGINT),
                 ("complete", self.world.magnet, "DONE", signal.SIGTERM))
        for what, source, word, number in cases:
            for options in ([], ["--keep"]):
                with self.subTest(what=what, number=number.name, options=options):
                    self.assert_ends(source, word, number, options)

    def test_a_second_start_leaves_the_file_of_the_first_alone(self) -> None:
        run_folder = self.folder / "run"
        cache = run_folder / "home/Cache"
        preferences = run_folder / "home/Preferences/VellumApp/preferences.json"
        preferences.parent.mkdir(parents=True)
        preferences.write_text(json.dumps({"cachePath": str(cache), "cacheLimitMB": 0}))
        streams = cache / "Torrents/streams"
        first = self.start(Vellum(run_folder, self.world.magnet, arriving=streams))
        first.wait_for("DONE", 20)
        left_behind = noise(streams / ("ab" * 20) / "payload.dat", 100_000)
        second = self.start(Vellum(run_folder, self.world.magnet, name="second"))
        wait_until("the cache is cleaned", 20, lambda: not left_behind.exists())
        second.wait_for("DONE", 20)
        self.assertEqual(read_all(first.url()).sha1, sha1_of(self.film))
        self.assertTrue(first.payload(self.world.torrent.hash).exists())

    def assert_ends(self, source: str, word: str | None, number: signal.Signals,
                    options: list[str]) -> None:
        vellum = self.stream(source, *options)
        if word:
            vellum.wait_for(word, 30)
        else:
            time.sleep(0.5)  # only to be past the start of the process
        sent = time.monotonic()
        vellum.signal(number)
        self.assertEqual(vellum.wait(10), 0, vellum.err())
        self.assertLess(time.monotonic() - sent, SOON)
        payload = vellum.payload(self.world.torrent.hash)
        if word:
            self.assertEqual(payload.exists(), bool(options))
        if word == "DONE" and options:
            self.assertEqual(sha1_of(payload), sha1_of(self.film))
        if not options:
            self.assertFalse(payload.parent.exists())
        if payload.exists():
            payload.unlink()
            payload.parent.rmdir()


class Choices(WorldTest):
    """A torrent in which two files could be meant."""

    def setUp(self) -> None:
        super().setUp()
        data = self.folder / "Double Bill"
        self.films = [noise(data / name, SIZE + i) for i, name in enumerate(("a.mkv", "b.mkv"))]
        noise(data / "en.srt", 999)
        self.world = self.start(DemoWorld(self.folder / "world", data))

    def test_without_a_terminal_they_are_listed(self) -> None:
        ended = run("--stream", self.world.magnet, home=self.folder / "home")
        self.assertEqual((ended.returncode, ended.stdout), (2, ""))
        self.assertIn("a.mkv", ended.stderr)
        self.assertIn("b.mkv", ended.stderr)
        self.assertNotIn("en.srt", ended.stderr)
        self.assertIn("--file N", ended.stderr.splitlines()[-1])
        self.assertEqual(list((self.folder / "home").rglob("payload.dat")), [])

    def test_a_number_decides(self) -> None:
        vellum = self.start(Vellum(self.folder / "run", self.world.magnet, "--file", "1"))
        self.assertEqual(vellum.wait_for("FILE", 20),
                         f"1 {SIZE + 1} Double Bill/b.mkv")
        vellum.wait_for("DONE", 20)
        self.assertEqual(read_all(vellum.url()).sha1, sha1_of(self.films[1]))

    def test_a_number_too_large_is_refused(self) -> None:
        ended = run("--stream", self.world.magnet, "--file", "3", home=self.folder / "home")
        self.assertEqual((ended.returncode, ended.stdout), (2, ""))

    def test_on_a_terminal_they_are_asked_for(self) -> None:
        pid, terminal = pty.fork()
        if pid == 0:
            os.environ.update(VELLUM_HOME=str(self.folder / "home"), VELLUM_TRACKERS="")
            os.execv(program("vellum"), ["vellum", "--stream", self.world.magnet])
        self.addCleanup(os.close, terminal)
        try:
            self.read_until(terminal, "?")
            os.write(terminal, b"7\n")
            self.read_until(terminal, "?")
            os.write(terminal, b"1\n")
            self.assertIn(f"FILE 1 {SIZE + 1} Double Bill/b.mkv",
                          self.read_until(terminal, "DONE"))
        finally:
            os.kill(pid, signal.SIGINT)
            _, status = os.waitpid(pid, 0)
        self.assertEqual(os.waitstatus_to_exitcode(status), 0)

    def read_until(self, terminal: int, text: str) -> str:
        got, end = "", time.monotonic() + 20
        while text not in got:
            ready, _, _ = select.select([terminal], [], [], max(0, end - time.monotonic()))
            self.assertTrue(ready, f"no {text!r} in {got!r}")
            got += os.read(terminal, 4096).decode()
        return got


if __name__ == "__main__":
    unittest.main()

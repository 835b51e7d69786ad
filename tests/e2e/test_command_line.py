"""The program as a user or a script meets it: arguments, sources, choices and signals."""
import json
import os
import pty
import select
import signal
import time
from pathlib import Path

from testing import WorldTest, noise
from world.demo import DemoWorld
from world.reading import read_all, sha1_of
from world.vellum import Vellum, program

SIZE = 3_000_000  # bytes of a film


class Usage(WorldTest):
    """What ends without anything being streamed."""

    def test_wrong_arguments_end_with_2_and_wrong_sources_with_1_and_a_sentence(self) -> None:
        wrong = noise(self.folder / "noise.torrent", 5000)
        for code, arguments in (
                (2, "--bogus"), (2, "stray"), (2, "--stream"), (2, "--stream x --file"),
                (2, "--stream x --file -1"), (2, "--stream x --file one"), (2, "--keep"),
                (2, "--file 1"), (1, "--stream magnet:?dn=x"), (1, "--stream /no/such.torrent"),
                (1, f"--stream {wrong}"), (1, "--stream 0123456789abcdef"),
                (1, "--stream http://127.0.0.1:1/x.torrent")):
            with self.subTest(arguments):
                ended = self.ended(*arguments.split())
                self.assertEqual((ended.returncode, ended.stdout), (code, ""))
                self.assertEqual(len(ended.stderr.strip().splitlines()), 1, ended.stderr)
        self.assertIn("--stream SOURCE", self.ended("--help").stdout)
        self.assertRegex(self.ended("--version").stdout, r"^\D*\d+\.\d+\.\d+\n$")

    def test_the_program_checks_itself_line_by_line_and_leaves_nothing(self) -> None:
        temporary = self.folder / "temporary"
        temporary.mkdir()
        checked = self.ended("--stream", "x", "--selftest", TMPDIR=str(temporary), DISPLAY="",
                             WAYLAND_DISPLAY="")
        names = (Path(__file__).parent / "selftest.txt").read_text(encoding="utf-8").splitlines()
        self.assertEqual(checked.stdout.splitlines(),
                         [f"PASS  {name}" for name in names] + ["ALL TESTS PASSED"])
        self.assertEqual(checked.returncode, 0)
        self.assertEqual(list(temporary.iterdir()), [])
        self.assertFalse((self.folder / "home").exists())


class Streams(WorldTest):
    """One film with two seeders."""

    def setUp(self) -> None:
        super().setUp()
        self.film = noise(self.folder / "Film.mkv", SIZE)
        self.world = self.start(DemoWorld(self.folder / "world", self.film, "--seeders", "2",
                                          "--indexers"))

    def test_every_kind_of_source(self) -> None:
        torrent, (udp, http) = self.world.torrent, self.world.trackers
        films = json.loads(self.world.ask("yts", "/api/v2/list_movies.json?query_term=1080p+demo"))
        found = films["data"]["movies"][0]["torrents"][0]
        for i, (source, trackers) in enumerate((
                (torrent.magnet(f"tr={http}"), ""), (torrent.path, ""), (found["url"], ""),
                (torrent.magnet("x.pe=127.0.0.1:1", f"x.pe={self.world.seeders[1]}"), ""),
                (torrent.hash.upper(), udp))):
            with self.subTest(source):
                vellum = self.start(Vellum(self.folder / str(i), source, trackers=trackers))
                vellum.wait_for("DONE", 20)
                self.assertEqual(read_all(vellum.url()).sha1, sha1_of(self.film))
                self.assertRegex(vellum.out(), rf"^FILE 0 {SIZE} \S.*\nURL .*\nREADY \d.*\nDONE \d")

    def test_a_signal_ends_it_soon_and_the_file_stays_if_it_shall(self) -> None:
        slow = self.start(DemoWorld(self.folder / "slow", self.film, "--rate", "300000",
                                    name="slow"))
        for i, (source, word, number, options) in enumerate((
                (slow.magnet, "URL", signal.SIGTERM, []),
                (slow.magnet, "URL", signal.SIGINT, ["--keep"]),
                (self.world.magnet, "DONE", signal.SIGINT, []),
                (self.world.magnet, "DONE", signal.SIGTERM, ["--keep"]))):
            with self.subTest(source=source, word=word, options=options):
                vellum = self.start(Vellum(self.folder / str(i), source, *options))
                vellum.wait_for(word, 30)
                sent = time.monotonic()
                vellum.signal(number)
                self.assertEqual(vellum.wait(10), 0, vellum.err())
                self.assertLess(time.monotonic() - sent, 1)
                payload = vellum.payload(self.world.torrent.hash)
                self.assertEqual(payload.parent.exists(), bool(options))
                if options and word == "DONE":
                    self.assertEqual(sha1_of(payload), sha1_of(self.film))


class Choices(WorldTest):
    """A torrent in which two files could be meant."""

    def setUp(self) -> None:
        super().setUp()
        data = self.folder / "Double Bill"
        self.films = [noise(data / name, SIZE + i) for i, name in enumerate(("a.mkv", "b.mkv"))]
        noise(data / "en.srt", 999)
        self.world = self.start(DemoWorld(self.folder / "world", data))

    def test_without_a_terminal_they_are_listed_unless_a_number_decides(self) -> None:
        listed = r"(?m)^   0 .* Double Bill/a.mkv\n   1 .* Double Bill/b.mkv\n.*--file N\.\n\Z"
        for options, told in (([], listed), (["--file", "3"], "file 3 in this torrent.*\n$")):
            ended = self.ended("--stream", self.world.magnet, *options)
            self.assertEqual((ended.returncode, ended.stdout), (2, ""))
            self.assertRegex(ended.stderr, told)
        self.assertEqual(list((self.folder / "home").rglob("payload.dat")), [])
        vellum = self.start(Vellum(self.folder / "run", self.world.magnet, "--file", "1"))
        self.assertEqual(vellum.wait_for("FILE", 20), f"1 {SIZE + 1} Double Bill/b.mkv")
        self.assertEqual(read_all(vellum.url()).sha1, sha1_of(self.films[1]))

    def test_on_a_terminal_they_are_asked_for(self) -> None:
        pid, terminal = pty.fork()
        if pid == 0:
            os.environ.update(VELLUM_HOME=str(self.folder / "home"), VELLUM_TRACKERS="")
            os.execv(program("vellum"), ["vellum", "--stream", self.world.magnet])
        self.addCleanup(os.close, terminal)
        try:
            for answer in (b"7\n", b"1\n"):
                self.read_until(terminal, "?")
                os.write(terminal, answer)
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

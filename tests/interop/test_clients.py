"""Real clients, each in each of its roles: tracker, seeder, leecher and player."""
import json
import signal
import subprocess
import time
from pathlib import Path

from testing import WorldTest, noise
from world.clients import Aria2, OpenTracker, Torrent, Transmission, copy_below
from world.demo import DemoWorld, demo_film
from world.processes import wait_until
from world.reading import read_all, read_range, sha1_of
from world.vellum import Vellum

Client = Aria2 | Transmission
LIMIT_KB = 3000  # a second: what a leecher gets


class Seeders(WorldTest):
    """What is streamed comes from them alone; opentracker names them."""

    def swarm(self, data: Path, clients: list[type[Client]], upload_kbps: int = 0) -> None:
        draft = Torrent.create(self.folder / "draft.torrent", data, [])
        self.tracker = self.start(OpenTracker(self.folder / "tracker", [draft.hash]))
        torrent = draft.announced_at(self.folder / "film.torrent", self.tracker.url("http"))
        self.hash = torrent.hash
        self.seeders = [
            self.start(client(self.folder / f"seeder{i}", torrent,
                              copy_below(self.folder / f"data{i}", data), upload_kbps))
            for i, client in enumerate(clients)]
        for seeder in self.seeders:
            wait_until("the seeder has all", 30, seeder.is_complete)
        wait_until("the seeders are announced", 30,
                   lambda: self.tracker.knows(torrent.hash) == len(clients))

    def stream(self, scheme: str) -> Vellum:
        magnet = f"magnet:?xt=urn:btih:{self.hash}&tr={self.tracker.url(scheme)}"
        return self.start(Vellum(self.folder / "run", magnet))

    def test_transmission_over_udp_gives_a_film_with_its_subtitles(self) -> None:
        """Slow: transmission answers our ten requests at a time only twice a second."""
        data = self.folder / "Some Film (2001)"
        film, subtitle = noise(data / "film.mp4", 2_500_000), noise(data / "Subs/de.vtt", 3000)
        noise(data / "Sample/sample.mp4", 200_000)
        self.swarm(data, [Transmission])
        vellum = self.stream("udp")
        index, _, path = vellum.wait_for("FILE", 60).split(" ", 2)
        self.assertEqual(path, "Some Film (2001)/film.mp4")
        self.assertEqual(read_all(vellum.url()).sha1, sha1_of(film))
        vellum.wait_for("DONE", 60)
        found = [read_range(vellum.url().replace(f"/{index}/film.mp4", f"/{other}/de.vtt"), 0, 3000)
                 for other in range(3) if other != int(index)]
        self.assertIn(subtitle.read_bytes(), found)

    def test_aria2_over_http_through_a_seek_a_loss_and_two_players(self) -> None:
        """Slow: lines of limited rate, so that the film still arrives while all this happens."""
        self.swarm(demo_film(), [Aria2, Aria2], upload_kbps=6000)
        vellum = self.stream("http")
        vellum.wait_for("READY", 60)
        film = demo_film().read_bytes()
        first = len(film) * 7 // 10
        self.assertEqual(read_range(vellum.url(), first, 1_000_000, timeout=15),
                         film[first:first + 1_000_000])
        self.assertEqual(vellum.line("DONE"), "", "too fast for this test")
        self.seeders[0].signal(signal.SIGKILL)
        for player in ("ffmpeg -nostdin -v error -i URL -f null -",
                       "mpv --no-config --vo=null --ao=null --untimed --ao-null-untimed "
                       "--msg-level=all=warn URL"):
            with self.subTest(player):
                ended = subprocess.run(player.replace("URL", vellum.url()).split(), text=True,
                                       capture_output=True, timeout=60, check=False)
                self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        self.assertEqual(read_all(vellum.url()).sha1, sha1_of(demo_film()))


class Leechers(WorldTest):
    """The tracker names the leecher alone, and the seeder, known by its address, dials nobody."""

    def leech(self, client: type[Client]) -> None:
        film = noise(self.folder / "Film.mkv", 6_000_000)
        world = self.start(DemoWorld(self.folder / "world", film, "--seeders", "1"))
        tracker = self.start(OpenTracker(self.folder / "tracker", [world.torrent.hash]))
        torrent = world.torrent.announced_at(self.folder / "film.torrent", tracker.url("http"))
        (self.folder / "target").mkdir()
        leecher = self.start(client(self.folder / "leecher", torrent, self.folder / "target"))
        wait_until("the leecher is announced", 30, lambda: tracker.knows(torrent.hash) == 1)
        preferences = self.folder / "run/home/Preferences/VellumApp/preferences.json"
        preferences.parent.mkdir(parents=True)
        preferences.write_text(json.dumps({"uploadLimitKBps": LIMIT_KB}), encoding="utf-8")
        began = time.monotonic()
        self.start(Vellum(self.folder / "run", torrent.magnet(f"tr={tracker.url('udp')}",
                                                              f"x.pe={world.seeders[0]}")))
        wait_until("the leecher has all", 60, leecher.is_complete)
        seconds = time.monotonic() - began
        self.assertEqual(sha1_of(self.folder / "target" / film.name), sha1_of(film))
        self.assertGreaterEqual(seconds, 0.9 * film.stat().st_size / (LIMIT_KB * 1024))

    def test_transmission_gets_right_pieces_under_the_limit(self) -> None:
        """Slow: transmission asks for its first block after some fifteen seconds."""
        self.leech(Transmission)

    def test_aria2_gets_right_pieces_under_the_limit(self) -> None:
        """Slow: the limit on what it gets must show."""
        self.leech(Aria2)

"""Foreign leechers that the program dials, and that have no other source than the program."""
import json
import time
import unittest
from pathlib import Path

from testing import WorldTest
from world.clients import Aria2, OpenTracker, Transmission
from world.demo import DemoWorld, demo_film
from world.processes import wait_until
from world.reading import sha1_of
from world.vellum import Vellum

LIMIT_KB = 8000  # a second


class Leechers(WorldTest):
    """The tracker names only the leecher, and the seeder, known by its address, dials nobody."""

    def leech(self, client: type[Aria2] | type[Transmission]) -> None:
        film = demo_film()
        world = self.start(DemoWorld(self.folder / "world", film, "--seeders", "1"))
        tracker = self.start(OpenTracker(self.folder / "tracker", [world.torrent.hash]))
        torrent = world.torrent.announced_at(self.folder / "film.torrent", tracker.url("http"))
        target = self.folder / "target"
        target.mkdir()
        leecher = self.start(client(self.folder / "leecher", torrent, target))
        wait_until("the leecher is announced", 30, lambda: tracker.knows(torrent.hash) == 1)

        run = self.folder / "run"
        self.write_limit(run / "home")
        began = time.monotonic()
        vellum = self.start(Vellum(run, torrent.magnet(f"tr={tracker.url('udp')}",
                                                       f"x.pe={world.seeders[0]}")))
        vellum.wait_for("DONE", 30)
        wait_until("the leecher has all", 60, leecher.is_complete)
        seconds = time.monotonic() - began
        print(f"{film.stat().st_size / 1024 / seconds:.0f} KB/s under a limit of {LIMIT_KB}")
        self.assertEqual(sha1_of(target / film.name), sha1_of(film))
        self.assertGreaterEqual(seconds, 0.9 * film.stat().st_size / (LIMIT_KB * 1024))

    def write_limit(self, home: Path) -> None:
        preferences = home / "Preferences/VellumApp/preferences.json"
        preferences.parent.mkdir(parents=True)
        preferences.write_text(json.dumps({"uploadLimitKBps": LIMIT_KB}), encoding="utf-8")

    def test_transmission_gets_right_pieces_under_the_limit(self) -> None:
        self.leech(Transmission)

    def test_aria2_gets_right_pieces_under_the_limit(self) -> None:
        self.leech(Aria2)


if __name__ == "__main__":
    unittest.main()

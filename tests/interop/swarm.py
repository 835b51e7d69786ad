"""A torrent with a foreign tracker and foreign seeders, and the program that streams it."""
from pathlib import Path

from testing import WorldTest
from world.clients import Aria2, OpenTracker, Torrent, Transmission, copy_below
from world.processes import wait_until
from world.reading import read_all, sha1_of
from world.vellum import Vellum

SEED, DONE = 30, 60  # seconds


class Swarm(WorldTest):
    """An opentracker and foreign seeders of one torrent."""

    def swarm(self, data: Path, clients: list[type[Aria2] | type[Transmission]],
              upload_kbps: int = 0) -> None:
        draft = Torrent.create(self.folder / "draft.torrent", data, [])
        self.tracker = self.start(OpenTracker(self.folder / "tracker", [draft.hash]))
        self.torrent = draft.announced_at(self.folder / "film.torrent", self.tracker.url("http"))
        self.seeders = [
            self.start(client(self.folder / f"seeder{i}", self.torrent,
                              copy_below(self.folder / f"data{i}", data), upload_kbps))
            for i, client in enumerate(clients)]
        for seeder in self.seeders:
            wait_until("the seeder has all", SEED, seeder.is_complete)
        wait_until("the seeders are announced", SEED,
                   lambda: self.tracker.knows(self.torrent.hash) == len(clients))

    def magnet(self, scheme: str) -> str:
        return self.torrent.magnet(f"tr={self.tracker.url(scheme)}")

    def stream(self, source: str | Path, *options: str) -> Vellum:
        return self.start(Vellum(self.folder / "run", source, *options))

    def assert_serves(self, vellum: Vellum, original: Path) -> None:
        vellum.wait_for("DONE", DONE)
        self.assertEqual(read_all(vellum.url()).sha1, sha1_of(original))

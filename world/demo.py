"""The demo world: our own loopback tracker and seeders, with lines of chosen quality."""
import functools
import os
import re
import subprocess
import urllib.request
from pathlib import Path

from .clients import Torrent
from .processes import Process, wait_until
from .vellum import program

ROOT = Path(__file__).resolve().parent.parent


@functools.cache
def demo_film() -> Path:
    """The playable film of the demo; made when it is not there."""
    made = subprocess.run([ROOT / "scripts/make-demo-film"], check=True, capture_output=True,
                          text=True)
    return next(Path(made.stdout.strip()).glob("*.mp4"))


class DemoWorld(Process):
    """vellum-demo-world PATH …"""

    def __init__(self, folder: Path, source: Path, *options: str, name: str = "world") -> None:
        # Killed, it cannot clean up: its temporary files lie where the test's do.
        super().__init__(folder, name, [program("vellum-demo-world"), *options, source],
                         dict(os.environ, TMPDIR=str(folder)))
        wait_until("the demo world is up", 60, lambda: "MAGNET" in self.out() or not self.runs())
        if not self.runs():
            raise RuntimeError(f"the demo world did not start: {self.err()}")
        self.trackers = self._lines("TRACKER")
        self.seeders = self._lines("SEEDER")
        self.torrent = Torrent(Path(self._lines("TORRENT")[0]), self._lines("HASH")[0])
        self.magnet = self._lines("MAGNET")[0]
        # With --indexers alone:
        self.indexers = dict(line.split() for line in self._lines("INDEXER"))
        self.catalog = "".join(self._lines("CATALOG"))

    def requests(self) -> list[str]:
        """What the indexers and the catalog were asked so far: paths with their queries."""
        return self._lines("REQUEST")

    def ask(self, indexer: str, path: str) -> bytes:
        with urllib.request.urlopen(self.indexers[indexer] + path, timeout=10) as answer:
            return bytes(answer.read())

    def _lines(self, word: str) -> list[str]:
        return re.findall(rf"^{word} (.*)$", self.out(), re.M)

"""Foreign seeders that die or fall silent in mid-way."""
import signal
import time
import unittest

from swarm import Swarm
from world.clients import Aria2
from world.demo import DemoWorld, demo_film
from world.processes import Process
from world.reading import read_all, sha1_of
from world.vellum import Vellum

LONGEST_GAP = 0.5  # seconds that a killed seeder may cost a reader
REQUEST_TIMEOUT = 20  # seconds after which a silent seeder's blocks are asked for elsewhere


class LosingASeeder(Swarm):
    """Two seeders with limited lines, of which one goes while a reader follows the film."""

    def read_while(self, vellum: Vellum, seeder: Process, number: signal.Signals) -> float:
        """Signals the seeder in mid-way; the longest wait for bytes after that, in seconds."""
        struck_at: list[float] = []

        def strike(size: int) -> None:
            if size > demo_film().stat().st_size * 0.3 and not struck_at:
                self.assertEqual(vellum.line("DONE"), "", "too fast for this test")
                struck_at.append(time.monotonic())
                seeder.signal(number)

        reading = read_all(vellum.url(), on_progress=strike)
        self.assertEqual(reading.sha1, sha1_of(demo_film()))
        gap = reading.longest_gap(struck_at[0])
        print(f"longest gap after {number.name}: {gap:.3f} s")
        return gap

    def test_a_killed_seeder_is_hardly_felt(self) -> None:
        # Lines of our own: foreign rate limits let nothing through for a second at a time.
        worlds = [self.start(DemoWorld(self.folder / f"world{i}", demo_film(), "--seeders", "1",
                                       "--rate", "5000000", "--delay", "20")) for i in range(2)]
        peers = [f"x.pe={world.seeders[0]}" for world in worlds]
        vellum = self.stream(worlds[0].torrent.magnet(*peers))
        self.assertLessEqual(self.read_while(vellum, worlds[0], signal.SIGKILL), LONGEST_GAP)

    def test_a_killed_client_is_got_over(self) -> None:
        self.swarm(demo_film(), [Aria2, Aria2], upload_kbps=5000)
        self.read_while(self.stream(self.magnet("udp")), self.seeders[0], signal.SIGKILL)

    def test_a_silent_client_is_got_over(self) -> None:
        self.swarm(demo_film(), [Aria2, Aria2], upload_kbps=5000)
        gap = self.read_while(self.stream(self.magnet("udp")), self.seeders[0], signal.SIGSTOP)
        self.assertLess(gap, REQUEST_TIMEOUT + 5)


if __name__ == "__main__":
    unittest.main()

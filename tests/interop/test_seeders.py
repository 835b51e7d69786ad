"""Films from foreign trackers and seeders, compared by hash and read by real players."""
import subprocess
import unittest
from pathlib import Path

from swarm import DONE, Swarm
from testing import noise
from world.clients import Aria2, Transmission
from world.demo import demo_film
from world.reading import read_range

# transmission looks at a peer's requests twice a second only, unless its line is busy, and so
# answers our ten outstanding ones with 330 kB/s: alone it gets a small film.
SMALL = 5_000_000  # bytes


class OneFile(Swarm):
    """A single film, from a link alone and from a file, over both kinds of tracker."""

    def test_transmission_from_a_magnet_over_udp(self) -> None:
        film = noise(self.folder / "film/Small.mkv", SMALL)
        self.swarm(film, [Transmission])
        self.assert_serves(self.stream(self.magnet("udp")), film)

    def test_aria2_from_a_magnet_over_http(self) -> None:
        self.swarm(demo_film(), [Aria2])
        self.assert_serves(self.stream(self.magnet("http")), demo_film())

    def test_both_from_a_torrent_file(self) -> None:
        self.swarm(demo_film(), [Aria2, Transmission])
        self.assert_serves(self.stream(self.torrent.path), demo_film())

    def test_players_read_to_the_end_while_it_arrives(self) -> None:
        self.swarm(demo_film(), [Aria2, Transmission], upload_kbps=6000)
        vellum = self.stream(self.magnet("udp"))
        players = (["ffmpeg", "-nostdin", "-v", "error", "-i", vellum.url(), "-f", "null", "-"],
                   ["mpv", "--no-config", "--vo=null", "--ao=null", "--untimed",
                    "--ao-null-untimed", "--msg-level=all=warn",
                    vellum.url()])
        for player in players:
            with self.subTest(player[0]):
                ended = subprocess.run(player, capture_output=True, text=True, timeout=60,
                                       check=False)
                self.assertEqual(ended.returncode, 0, ended.stderr)
                self.assertEqual(ended.stderr, "")


class ManyFiles(Swarm):
    """A folder with a sample, subtitles, an extra and two episodes."""

    def folder_torrent(self, **sizes: int) -> Path:
        data = self.folder / "data" / "Some Film (2001)"
        for name, size in {"Sample/sample.mp4": 200_000, "notes.txt": 77, "en.srt": 5_000,
                           "Subs/de.vtt": 3_000, **sizes}.items():
            noise(data / name, size)
        return data

    def test_picks_the_film_and_takes_the_subtitles_along(self) -> None:
        data = self.folder_torrent(**{"film.mp4": SMALL})
        film = data / "film.mp4"
        self.swarm(data, [Transmission])
        vellum = self.stream(self.magnet("udp"))
        index, size, path = vellum.wait_for("FILE", DONE).split(" ", 2)
        self.assertEqual((int(size), path), (SMALL, "Some Film (2001)/film.mp4"))
        self.assert_serves(vellum, film)
        for other, name in self.files(data):
            if name.suffix in (".srt", ".vtt"):
                url = vellum.url().replace(f"/{index}/film.mp4", f"/{other}/{name.name}")
                self.assertEqual(read_range(url, 0, name.stat().st_size), name.read_bytes())

    def test_plays_the_file_that_was_asked_for(self) -> None:
        data = self.folder_torrent(**{"e1.mkv": 3_000_001, "e2.mkv": 3_100_003})
        self.swarm(data, [Aria2])
        index = next(i for i, path in self.files(data) if path.name == "e2.mkv")
        vellum = self.stream(self.torrent.path, "--file", str(index))
        self.assert_serves(vellum, data / "e2.mkv")

    def files(self, data: Path) -> list[tuple[int, Path]]:
        """Index and path of every file, as the torrent orders them."""
        shown = subprocess.run(["aria2c", "-S", self.torrent.path], check=True,
                               capture_output=True, text=True).stdout
        found = [line.partition("|") for line in shown.splitlines()]
        return [(int(number) - 1, data.parent / path.removeprefix("./"))
                for number, _, path in found if number.strip().isdigit()]


class Seeking(Swarm):
    """A viewer who jumps."""

    def test_a_seek_far_ahead_is_served_while_the_rest_arrives(self) -> None:
        self.swarm(demo_film(), [Aria2], upload_kbps=3000)
        vellum = self.stream(self.magnet("http"))
        vellum.wait_for("READY", DONE)
        size = demo_film().stat().st_size
        first = size * 7 // 10
        got = read_range(vellum.url(), first, 1_000_000, timeout=15)
        self.assertEqual(vellum.line("DONE"), "")
        with demo_film().open("rb") as film:
            film.seek(first)
            self.assertEqual(got, film.read(1_000_000))
        self.assert_serves(vellum, demo_film())


if __name__ == "__main__":
    unittest.main()

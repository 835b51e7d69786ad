"""Searching from the command line among indexers and a catalog, good ones and bad ones."""
import base64
import json

from testing import WorldTest, noise
from world.demo import DemoWorld


class Search(WorldTest):
    """vellum --search against vellum-demo-world --indexers."""

    def setUp(self) -> None:
        super().setUp()
        self.preferences = self.folder / "home/Preferences/VellumApp/preferences.json"
        film = noise(self.folder / "Film.480p.mp4", 3_000_000)
        self.world = self.start(DemoWorld(self.folder / "world", film, "--indexers",
                                          "--preferences", str(self.preferences)))

    def assert_ends(self, words: str, code: int, lines: list[str], complaint: str = "") -> str:
        """A search that says this of its providers; gives the table below."""
        ended = self.ended("--search", *words.split(), VELLUM_CATALOG=self.world.catalog)
        statuses, _, table = ended.stdout.partition("\n\n")
        self.assertEqual((ended.returncode, ended.stderr), (code, complaint))
        self.assertEqual(sorted(statuses.splitlines()), lines)
        return table

    def test_results_are_merged_and_every_provider_is_told(self) -> None:
        gone = ("Gone failed: Gone unreachable at 127.0.0.1. "
                "Check the address in Settings → Providers")
        table = self.assert_ends("DEMO film", 0, ["ApiBay: 4 results", gone, "Indexers: 4 results",
                                                  "Vidarium: 1 result", "YTS: 4 results"])
        found = [[cell.strip() for cell in line.split("  ") if cell.strip()]
                 for line in table.splitlines()]
        everywhere, name = "ApiBay, Indexers, YTS", "Vellum Demo Film"
        self.assertEqual(found, [
            ["TITLE", "SIZE", "SEEDS", "PEERS", "QUALITY", "SOURCES"],
            [f"{name}, the Lost Cut (2026) 720p web", "1.2 GB", "48", "9", "720p", everywhere],
            [f"{name} (2026) 480p web", "3 MB", "3", "0", "480p", everywhere],
            [f"{name} (2026) 720p web", "3 MB", "1", "0", "720p", everywhere],
            [f"{name} (2026) 1080p web", "3 MB", "1", "0", "1080p", everywhere],
            [name, "—", "—", "—", "—", "Vidarium"]])
        self.assert_ends("no such film", 0, ["ApiBay: 0 results", gone, "Indexers: 0 results",
                                             "Vidarium: 0 results", "YTS: 0 results"])
        # The mirror that answered is asked first from then on, in another process too.
        self.assertEqual([request.split("?")[0] for request in self.world.requests()
                          if "q.php" in request],
                         ["/webpage/q.php", "/apibay/q.php", "/apibay/q.php"])

    def test_it_ends_with_1_when_nobody_answers_or_nobody_is_asked(self) -> None:
        for enabled, lines, complaint in (
                (True, ["Mine failed: Incorrect user credentials"], ""),
                (False, [], "No provider is switched on.\n")):
            mine = {"name": "Mine", "kind": "torznab", "enabled": enabled,
                    "baseURL": self.world.catalog + "/torznab/api"}
            encoded = base64.b64encode(json.dumps([mine]).encode()).decode()
            self.preferences.write_text(json.dumps({"providers": {"base64": encoded}}),
                                        encoding="utf-8")
            self.assertEqual(self.assert_ends("demo", 1, lines, complaint), "")
        self.assertEqual(len(self.world.requests()), 1)

"""Searching from the command line among indexers and a catalog, good ones and bad ones."""
import base64
import json
import os
import subprocess
import unittest
import uuid

from testing import WorldTest, noise
from world.demo import DemoWorld
from world.reading import read_all, sha1_of
from world.vellum import Vellum, program

CHECK = "Check the address in Settings → Providers"


class Search(WorldTest):
    """vellum --search against vellum-demo-world --indexers."""

    def setUp(self) -> None:
        super().setUp()
        self.preferences = self.folder / "home/Preferences/VellumApp/preferences.json"
        self.film = noise(self.folder / "Film.480p.mp4", 3_000_000)
        self.world = self.start(DemoWorld(self.folder / "world", self.film, "--indexers",
                                          "--preferences", str(self.preferences)))

    def search(self, *words: str) -> subprocess.CompletedProcess[str]:
        env = dict(os.environ, VELLUM_HOME=str(self.folder / "home"),
                   VELLUM_CATALOG=self.world.catalog)
        return subprocess.run([program("vellum"), "--search", *words], env=env, text=True,
                              capture_output=True, timeout=30, check=False)

    def change(self, providers: list[dict[str, object]]) -> None:
        """Puts other providers in the place of those that the world has set up."""
        encoded = base64.b64encode(json.dumps(providers).encode()).decode()
        self.preferences.write_text(json.dumps({"providers": {"base64": encoded}}),
                                    encoding="utf-8")

    def test_results_are_merged_and_every_provider_is_told(self) -> None:
        ended = self.search("DEMO", "film")
        self.assertEqual((ended.returncode, ended.stderr), (0, ""))
        statuses, _, table = ended.stdout.partition("\n\n")
        self.assertEqual(sorted(statuses.splitlines()), [
            "ApiBay: 4 results", f"Gone failed: Gone unreachable at 127.0.0.1. {CHECK}",
            "Indexers: 4 results", "Vidarium: 1 result", "YTS: 4 results"])
        rows = [line.split("  ") for line in table.splitlines()]
        found = [[cell.strip() for cell in row if cell.strip()] for row in rows]
        everywhere = "ApiBay, Indexers, YTS"
        self.assertEqual(found, [
            ["TITLE", "SIZE", "SEEDS", "PEERS", "QUALITY", "SOURCES"],
            ["Vellum Demo Film, the Lost Cut (2026) 720p web", "1.2 GB", "48", "9", "720p", everywhere],
            ["Vellum Demo Film (2026) 480p web", "3 MB", "3", "0", "480p", everywhere],
            ["Vellum Demo Film (2026) 720p web", "3 MB", "1", "0", "720p", everywhere],
            ["Vellum Demo Film (2026) 1080p web", "3 MB", "1", "0", "1080p", everywhere],
            ["Vellum Demo Film", "—", "—", "—", "—", "Vidarium"]])
        nothing = self.search("no", "such", "film")
        self.assertEqual(nothing.returncode, 0)
        self.assertEqual(nothing.stdout.count(": 0 results"), 4)

    def test_a_mirror_that_answered_is_asked_first_from_then_on(self) -> None:
        for asked in (["webpage", "apibay"], ["apibay"]):
            before = len(self.world.requests())
            self.assertIn("ApiBay: 5 results", self.search("demo").stdout)
            self.assertEqual([request for request in self.world.requests()[before:]
                              if "q.php" in request],
                             [f"/{mirror}/q.php?q=demo&cat=200" for mirror in asked])

    def test_each_failure_has_its_sentence(self) -> None:
        page = ("Provider returned a web page instead of API data ({} at 127.0.0.1). "
                "Try another mirror in Settings → Providers")
        cases = (  # kind, address below the server, sentence
            ("apibay", "/webpage", page), ("yts", "/forbidden", page),
            ("apibay", "/challenge", page), ("torznab", "/nowhere", page),
            ("yts", "/broken", "{} unreachable at 127.0.0.1. " + CHECK),
            ("torznab", "/apibay/q.php", "{} at 127.0.0.1 didn't return API data. " + CHECK),
            ("apibay", "/metadata", "{} answered, but not in the expected API format. "
             "Check the provider type and address in Settings → Providers"),
            ("torznab", "/torznab/api", "Incorrect user credentials"),
            ("apibay", None, "{} has no address yet. Set one in Settings → Providers"))
        self.change([{"id": str(uuid.uuid4()).upper(), "name": f"P{i}", "kind": kind,
                      "baseURL": "" if path is None else self.world.catalog + path}
                     for i, (kind, path, _) in enumerate(cases)])
        ended = self.search("demo")
        self.assertEqual((ended.returncode, ended.stderr), (1, ""))
        self.assertEqual(sorted(ended.stdout.splitlines()),
                         [f"P{i} failed: " + sentence.format(f"P{i}")
                          for i, (_, _, sentence) in enumerate(cases)])

    def test_nobody_is_asked_when_nothing_is_switched_on(self) -> None:
        self.change([{"name": "Off", "kind": "yts", "baseURL": self.world.indexers["yts"],
                      "enabled": False}])
        ended = self.search("demo")
        self.assertEqual((ended.returncode, ended.stdout), (1, ""))
        self.assertEqual(ended.stderr, "No provider is switched on.\n")
        self.assertEqual(self.world.requests(), [])

    def test_what_is_found_streams(self) -> None:
        films = json.loads(self.world.ask("yts", "/api/v2/list_movies.json?query_term=1080p+demo"))
        torrent = films["data"]["movies"][0]["torrents"][0]
        for i, (source, tracker) in enumerate(((torrent["url"], ""),
                                               (torrent["hash"], self.world.trackers[0]))):
            vellum = self.start(Vellum(self.folder / str(i), source, trackers=tracker))
            self.assertEqual(read_all(vellum.url()).sha1, sha1_of(self.film))


if __name__ == "__main__":
    unittest.main()

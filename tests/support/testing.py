"""The base of the tests: a temporary folder, processes that end with the test."""
import os
import random
import subprocess
import tempfile
import unittest
from pathlib import Path
from typing import TypeVar

from world.processes import Process
from world.vellum import program

AnyProcess = TypeVar("AnyProcess", bound=Process)


def noise(path: Path, size: int) -> Path:
    """A file that nothing compresses; where a test needs bytes and not a film."""
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(random.Random(size).randbytes(size))
    return path


class WorldTest(unittest.TestCase):
    """Gives each test a folder of its own; a failing test shows what its processes said."""

    def setUp(self) -> None:
        scratch = tempfile.TemporaryDirectory(prefix="vellum-test-")
        self.addCleanup(scratch.cleanup)
        self.folder = Path(scratch.name)
        self.folder.chmod(0o755)  # opentracker gives its privileges up
        self._processes: list[Process] = []

    def start(self, process: AnyProcess) -> AnyProcess:
        """Stops the process when the test ends."""
        self._processes.append(process)
        self.addCleanup(process.stop)
        return process

    def ended(self, *arguments: str, **environment: str) -> subprocess.CompletedProcess[str]:
        """The program, run to its end without a terminal."""
        env = {"VELLUM_HOME": str(self.folder / "home"), "VELLUM_TRACKERS": "", **environment}
        return subprocess.run([program("vellum"), *arguments], env={**os.environ, **env},
                              capture_output=True, text=True, stdin=subprocess.DEVNULL,
                              timeout=60, check=False)

    def tearDown(self) -> None:
        outcome = self._outcome  # type: ignore[attr-defined]
        if all(error is None for _, error in getattr(outcome, "errors", [])) and outcome.success:
            return
        for process in self._processes:
            print(f"--- {process.out_path.stem}: {process.child.poll()}\n"
                  f"{process.out()[-1500:]}\n{process.err()[-1500:]}")

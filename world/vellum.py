"""The program under test, streaming."""
import os
import re
import sys
from pathlib import Path

from .processes import Process, wait_until


def program(name: str) -> Path:
    """A built program: from the environment (VELLUM_BIN), else of the release build."""
    default = Path(__file__).resolve().parent.parent / "build/release/bin"
    if name == "vellum" and sys.platform == "darwin":
        name = "Vellum.app/Contents/MacOS/Vellum"
    return Path(os.environ.get("VELLUM_BIN", default)) / name


class Vellum(Process):
    """vellum --stream SOURCE …, with all its folders below `folder`."""

    def __init__(self, folder: Path, source: str | Path, *options: str,
                 trackers: str = "", name: str = "vellum",
                 arriving: Path | None = None) -> None:
        self.home = folder / "home"
        self.dir = arriving or folder / "arriving"
        env = dict(os.environ, VELLUM_HOME=str(self.home), VELLUM_TRACKERS=trackers)
        super().__init__(folder, name, [program("vellum"), "--stream", source, "--dir", self.dir,
                                        *options], env)

    def line(self, word: str) -> str:
        """What stands behind `word` on standard output; empty while it has not come."""
        found = re.search(rf"^{word} (.*)\n", self.out(), re.M)
        return found[1] if found else ""

    def wait_for(self, word: str, seconds: float) -> str:
        wait_until(f"a line {word} from vellum", seconds,
                   lambda: self.line(word) or not self.runs())
        if not self.line(word):
            raise RuntimeError(f"vellum ended with {self.child.returncode} before {word}:\n"
                               f"{self.out()}{self.err()}")
        return self.line(word)

    def url(self) -> str:
        return self.wait_for("URL", 60)

    def payload(self, info_hash: str) -> Path:
        return self.dir / info_hash / "payload.dat"

"""A reader of the loopback address: hashes, ranges and the gaps that a player would feel."""
import hashlib
import time
import urllib.request
from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

CHUNK = 256 * 1024


def sha1_of(path: Path) -> str:
    with path.open("rb") as file:
        return hashlib.file_digest(file, "sha1").hexdigest()


def read_range(url: str, first: int, size: int, timeout: float = 60) -> bytes:
    request = urllib.request.Request(url, headers={"Range": f"bytes={first}-{first + size - 1}"})
    with urllib.request.urlopen(request, timeout=timeout) as answer:
        if answer.status != 206:
            raise AssertionError(f"status {answer.status} for a range")
        return answer.read()


@dataclass
class Reading:
    """One reading of a whole body. `gaps` are (end, length) of each wait for bytes, in seconds."""
    sha1: str
    size: int
    seconds: float
    gaps: list[tuple[float, float]]

    def longest_gap(self, since: float = 0) -> float:
        """The longest wait that ended after the monotonic time `since`."""
        return max((length for end, length in self.gaps if end >= since), default=0.0)


def read_all(url: str, timeout: float = 90, hashed: bool = True,
             on_progress: Callable[[int], None] = lambda size: None) -> Reading:
    """Reads as fast as the bytes come; `on_progress` is told how many there are so far."""
    digest, size, gaps = hashlib.sha1(), 0, []
    began = last = time.monotonic()
    with urllib.request.urlopen(url, timeout=timeout) as answer:
        buffer = memoryview(bytearray(CHUNK))
        while count := answer.readinto(buffer):
            now = time.monotonic()
            gaps.append((now, now - last))
            last = now
            size += count
            if hashed:
                digest.update(buffer[:count])
            on_progress(size)
    return Reading(digest.hexdigest(), size, last - began, gaps)

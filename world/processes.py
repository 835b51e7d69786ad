"""Child processes that never outlive the test, and the small things around them."""
import contextlib
import ctypes
import signal
import socket
import subprocess
import sys
import time
from collections.abc import Callable
from pathlib import Path


def _die_with_parent() -> None:
    if sys.platform == "linux":
        pr_set_pdeathsig = 1
        ctypes.CDLL(None).prctl(pr_set_pdeathsig, signal.SIGKILL)


class Process:
    """One child with its output in files below `folder`; stop() is safe to call twice."""

    def __init__(self, folder: Path, name: str, command: list[str | Path],
                 env: dict[str, str] | None = None) -> None:
        folder.mkdir(parents=True, exist_ok=True)
        self.out_path = folder / f"{name}.out"
        self.err_path = folder / f"{name}.err"
        with self.out_path.open("wb") as out, self.err_path.open("wb") as err:
            self.child = subprocess.Popen(  # pylint: disable=consider-using-with
                [str(part) for part in command], stdin=subprocess.DEVNULL, stdout=out, stderr=err,
                env=env, cwd=folder, preexec_fn=_die_with_parent)

    @property
    def pid(self) -> int:
        return self.child.pid

    def out(self) -> str:
        return self.out_path.read_text(encoding="utf-8", errors="replace")

    def err(self) -> str:
        return self.err_path.read_text(encoding="utf-8", errors="replace")

    def runs(self) -> bool:
        return self.child.poll() is None

    def signal(self, number: int) -> None:
        self.child.send_signal(number)

    def wait(self, seconds: float) -> int:
        return self.child.wait(seconds)

    def stop(self) -> None:
        if self.runs():
            self.child.send_signal(signal.SIGCONT)
            self.child.terminate()
            with contextlib.suppress(subprocess.TimeoutExpired):
                self.child.wait(3)
        if self.runs():
            self.child.kill()
            self.child.wait()


def wait_until(what: str, seconds: float, condition: Callable[[], object]) -> None:
    """Polls until the condition holds; raises TimeoutError that names it otherwise."""
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise TimeoutError(f"not within {seconds} s: {what}")
        time.sleep(0.02)


def free_port() -> int:
    """A port that neither TCP nor UDP uses at the moment."""
    while True:
        with socket.socket() as tcp, socket.socket(type=socket.SOCK_DGRAM) as udp:
            tcp.bind(("127.0.0.1", 0))
            with contextlib.suppress(OSError):
                udp.bind(tcp.getsockname())
                return int(tcp.getsockname()[1])

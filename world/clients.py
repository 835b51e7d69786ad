"""Foreign trackers and clients, each bound to 127.0.0.1 and without any discovery but trackers."""
import contextlib
import json
import re
import shutil
import socket
import subprocess
import urllib.error
import urllib.request
from dataclasses import dataclass
from pathlib import Path

from .processes import Process, free_port, wait_until


def listens(port: int) -> bool:
    with contextlib.suppress(OSError), socket.create_connection(("127.0.0.1", port), 1):
        return True
    return False


class OpenTracker(Process):
    """opentracker with one port for UDP and HTTP; it admits only torrents that it was told of."""

    def __init__(self, folder: Path, info_hashes: list[str]) -> None:
        folder.mkdir(parents=True)
        folder.chmod(0o755)
        whitelist = folder / "whitelist"
        whitelist.write_text("".join(f"{each}\n" for each in info_hashes), encoding="ascii")
        self.port = free_port()
        super().__init__(folder, "opentracker",
                         ["opentracker", "-i", "127.0.0.1", "-p", str(self.port),
                          "-P", str(self.port), "-d", folder, "-w", "whitelist"])
        wait_until("opentracker listens", 10, lambda: listens(self.port))

    def url(self, scheme: str) -> str:
        return f"{scheme}://127.0.0.1:{self.port}/announce"

    def knows(self, info_hash: str) -> int:
        """How many peers a fresh announce is told of."""
        escaped = re.sub("..", r"%\g<0>", info_hash)
        query = f"info_hash={escaped}&peer_id={'x' * 20}&port=1&left=0&compact=1&event=stopped"
        with urllib.request.urlopen(f"{self.url('http')}?{query}", timeout=5) as answer:
            body = answer.read()
        counts = re.findall(rb"(?:complete|incomplete)i(\d+)e", body)
        return sum(int(count) for count in counts)


@dataclass
class Torrent:
    """A .torrent file."""
    path: Path
    hash: str

    @classmethod
    def create(cls, path: Path, data: Path, trackers: list[str]) -> "Torrent":
        """Of a file or folder, made by transmission-create."""
        options = [part for each in trackers for part in ("-t", each)]
        subprocess.run(["transmission-create", "-s", "256", "-o", path, *options, data],
                       check=True, stdout=subprocess.DEVNULL)
        shown = subprocess.run(["transmission-show", path], check=True, capture_output=True,
                               text=True).stdout
        return cls(path, re.search(r"Hash: ([0-9a-f]{40})", shown)[1])  # type: ignore[index]

    def announced_at(self, path: Path, tracker: str) -> "Torrent":
        """The same torrent in a new file that names this tracker alone."""
        info = self.path.read_bytes().partition(b"4:info")[2]
        path.write_bytes(b"d8:announce%d:%b4:info%b" % (len(tracker), tracker.encode(), info))
        return Torrent(path, self.hash)

    def magnet(self, *items: str) -> str:
        """`items` as "tr=…" or "x.pe=…", escaped by the caller where needed."""
        return "&".join([f"magnet:?xt=urn:btih:{self.hash}&dn=Film", *items])


class Transmission(Process):
    """transmission-daemon with one torrent, seeding what lies in `data_folder` or fetching it."""

    def __init__(self, folder: Path, torrent: Torrent, data_folder: Path,
                 upload_kbps: int = 0) -> None:
        self.peer_port, self.rpc_port, self._session = free_port(), free_port(), ""
        folder.mkdir(parents=True)
        (folder / "settings.json").write_text(json.dumps({
            "bind-address-ipv4": "127.0.0.1", "bind-address-ipv6": "::1",
            "peer-port": self.peer_port, "peer-port-random-on-start": False,
            "rpc-port": self.rpc_port, "rpc-bind-address": "127.0.0.1",
            "rpc-whitelist-enabled": False, "rpc-host-whitelist-enabled": False,
            "dht-enabled": False, "lpd-enabled": False, "pex-enabled": False,
            "utp-enabled": False, "port-forwarding-enabled": False, "encryption": 0,
            "blocklist-enabled": False, "preallocation": 0,
            "speed-limit-up-enabled": upload_kbps > 0, "speed-limit-up": upload_kbps,
        }), encoding="utf-8")
        super().__init__(folder, "transmission", ["transmission-daemon", "-f", "-g", folder])
        wait_until("transmission listens", 20, lambda: listens(self.rpc_port))
        self._call("torrent-add", {"filename": str(torrent.path),
                                   "download-dir": str(data_folder)})

    def _call(self, method: str, arguments: dict[str, object]) -> dict[str, object]:
        body = json.dumps({"method": method, "arguments": arguments}).encode()
        for _ in range(2):  # the first call tells the session id
            request = urllib.request.Request(
                f"http://127.0.0.1:{self.rpc_port}/transmission/rpc", body,
                {"X-Transmission-Session-Id": self._session})
            try:
                with urllib.request.urlopen(request, timeout=10) as answer:
                    return json.load(answer)["arguments"]
            except urllib.error.HTTPError as error:
                self._session = error.headers["X-Transmission-Session-Id"]
        raise RuntimeError("transmission does not take our session id")

    def is_complete(self) -> bool:
        torrents = self._call("torrent-get", {"fields": ["leftUntilDone", "sizeWhenDone",
                                                         "status"]})["torrents"]
        stopped, seeding = 0, 6
        return all(each["leftUntilDone"] == 0 and each["sizeWhenDone"] > 0
                   and each["status"] in (stopped, seeding)
                   for each in torrents)  # type: ignore[attr-defined]


class Aria2(Process):
    """aria2c with one torrent, seeding what lies in `data_folder` or fetching it."""

    def __init__(self, folder: Path, torrent: Torrent, data_folder: Path,
                 upload_kbps: int = 0) -> None:
        self.peer_port = free_port()
        super().__init__(folder, "aria2", [
            "aria2c", "--no-conf=true", f"--dir={data_folder}", f"--listen-port={self.peer_port}",
            "--enable-dht=false", "--enable-dht6=false", "--bt-enable-lpd=false",
            "--enable-peer-exchange=false", "--disable-ipv6=true", "--seed-ratio=0.0",
            "--check-integrity=true", "--allow-overwrite=true", "--file-allocation=none",
            "--summary-interval=1", "--show-console-readout=false",
            f"--max-overall-upload-limit={upload_kbps}K", torrent.path])

    def is_complete(self) -> bool:
        return "SEED(" in self.out()


def copy_below(folder: Path, data: Path) -> Path:
    """Puts a copy of `data` into a new folder for one client, and gives that folder."""
    folder.mkdir(parents=True)
    (shutil.copytree if data.is_dir() else shutil.copy)(data, folder / data.name)
    return folder

"""What was found clean before, for all checkouts of this user.

A source is known by its compile command, its contents and those of every header of this project behind it, with
paths as seen from the checkout. Marks are empty files named after that; one that 30 days did not need goes.
"""

import hashlib
import os
import subprocess
import time
from pathlib import Path

UNUSED_SECONDS = 30 * 24 * 3600


def cache_folder():
    """The user's own folder for caches; a relative one counts as none."""
    named = Path(os.environ.get("XDG_CACHE_HOME", ""))
    return (named if named.is_absolute() else Path.home() / ".cache") / "lumaframe-analysis"


class Remembered:
    """Thread-safe: a mark or a list is complete or not there."""

    def __init__(self, root, rules, folder=None):
        self.root_, self.rules_, self.folder_ = Path(root), rules, folder or cache_folder()
        self.folder_.mkdir(parents=True, exist_ok=True)

    def mark(self, arguments, file, directory):
        """The file that is there when this source was clean."""
        words = "\0".join([*arguments, file, str(directory)]).replace(str(self.root_), ".")
        source = hashlib.sha256(self.rules_ + words.encode())
        # The preprocessor takes long to say which headers there are, and says the same until one of them changes.
        listed = self.folder_ / f"{source.hexdigest()}.headers"
        if listed.exists():
            known = self.fingerprint(source, listed.read_text().split("\n"))
            if known and known.exists():
                listed.touch()
                known.touch()
                return known
        names = self.files_behind(arguments, file, directory)
        written = listed.with_suffix(f".{os.getpid()}")
        written.write_text("\n".join(names))
        written.rename(listed)
        return self.fingerprint(source, names)

    def files_behind(self, arguments, file, directory):
        result = subprocess.run(["clang++", *arguments, "-MM", file], cwd=directory,
                                capture_output=True, text=True, check=False)
        names = result.stdout.partition(":")[2].replace("\\\n", " ").split() or [file]
        return [os.path.relpath(os.path.join(directory, name), self.root_) for name in names]

    def fingerprint(self, source, names):
        digest = source.copy()
        for name in names:
            try:
                digest.update(name.encode() + b"\0" + hashlib.sha256((self.root_ / name).read_bytes()).digest())
            except OSError:
                return None
        return self.folder_ / digest.hexdigest()

    def forget_unused(self):
        for path in self.folder_.iterdir():
            if path.stat().st_mtime < time.time() - UNUSED_SECONDS:
                path.unlink(missing_ok=True)

"""What scripts/release.sh puts together, twice."""
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest
import zipfile

from wine_session import BIN, ROOT

VERSION = re.search(r"project\(nmshell VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")).group(1)


class ReleaseTest(unittest.TestCase):
    def test_is_complete_and_the_same_again(self):
        work = pathlib.Path(tempfile.mkdtemp(prefix="nmshell-release-"))
        self.addCleanup(shutil.rmtree, work)
        sums = []
        for folder, zone, mask in ((work / "one", "UTC", 0o022), (work / "elsewhere/two", "Asia/Tokyo", 0o077)):
            before = os.umask(mask)
            try:
                subprocess.run([ROOT / "scripts/release.sh", "-b", BIN, folder], check=True, stdout=subprocess.DEVNULL,
                               env={**os.environ, "TZ": zone})
            finally:
                os.umask(before)
            sums.append((folder / "SHA256SUMS").read_text(encoding="ascii"))
        self.assertEqual(sums[0], sums[1])
        listed = dict(reversed(line.split("  ")) for line in sums[0].splitlines())
        self.assertEqual(set(listed), {f"nmshell-{VERSION}.msi", f"nmshell-{VERSION}-tools.zip", f"nmshell-{VERSION}-symbols.zip"})
        for name, digest in listed.items():
            self.assertEqual(hashlib.sha256((work / "one" / name).read_bytes()).hexdigest(), digest)

        with zipfile.ZipFile(work / f"one/nmshell-{VERSION}-tools.zip") as archive:
            names = {name.split("/", 1)[1] for name in archive.namelist()}
        wanted = {"interlang.exe", "rightclick.exe", "CHANGELOG.md", "docs/deployment.md", "admx/nmshell.admx",
                  "admx/en-US/nmshell.adml"} | {f"langs/{path.name}" for path in (BIN / "langs").iterdir()}
        if (ROOT / "examples").is_dir():
            wanted |= {str(path.relative_to(ROOT)) for path in (ROOT / "examples").glob("*.py")}
        self.assertEqual(wanted - names, set())
        with zipfile.ZipFile(work / f"one/nmshell-{VERSION}-symbols.zip") as archive:
            symbols = {name.split("/", 1)[1] for name in archive.namelist()}
        shipped = [path for path in BIN.iterdir() if path.suffix in (".dll", ".exe") and path.name != "nmark.exe"]
        self.assertEqual(symbols, {f"{path.name}.debug" for path in shipped})


if __name__ == "__main__":
    unittest.main()

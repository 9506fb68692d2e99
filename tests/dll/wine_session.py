"""A throwaway Wine prefix with the extension registered in it, and the right-click client run in it."""
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
BIN = pathlib.Path(os.environ.get("NMSHELL_BIN", ROOT / "build/win64/bin"))

SNAPSHOT = BIN.parent / "testing/registry_snapshot.exe"

COMMAND_CLASS = "{B1F60D94-52C8-4A37-8E7D-4C90A3D1E6F5}"
FILES_CLASS = "{3D5C9A72-6E1B-4F08-A4C3-91B7E2D05F64}"
APPROVED = r"HKLM\SOFTWARE\Microsoft\Windows\CurrentVersion\Shell Extensions\Approved"
SETTINGS = r"HKCU\Software\NMark Shell"


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


class WineTest(unittest.TestCase):
    """One prefix for each class of tests; `work` is an empty folder for each test."""
    patience = 300  # seconds that one program may take

    @classmethod
    def setUpClass(cls):
        cls.home = pathlib.Path(tempfile.mkdtemp(prefix="nmshell-wine-"))
        # Of Wine's own words those that say why it ended a program, which it otherwise does without one.
        cls.environment = dict(os.environ, WINEPREFIX=str(cls.home / "prefix"), LC_ALL="C.UTF-8",
                               XDG_DATA_HOME=str(cls.home / "xdg"), WINEDEBUG="-all,err+seh,err+virtual")
        cls.environment.pop("DISPLAY", None)
        cls.addClassCleanup(shutil.rmtree, cls.home, ignore_errors=True)
        cls.addClassCleanup(cls.stop)
        cls.wine("cmd", "/c", "exit")  # makes the prefix

    @classmethod
    def stop(cls):
        """Ends every program and writes the registry."""
        subprocess.run(["/usr/lib/wine/wineserver64", "-k", "-w"], env=cls.environment, check=False,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def setUp(self):
        self.work = self.home / "work"
        shutil.rmtree(self.work, ignore_errors=True)
        self.work.mkdir()

    def fill_recycle_bin(self, full):
        """Puts one deleted file into what Wine takes for the Recycle Bin of every drive, or nothing."""
        trash = self.home / "xdg/Trash"
        shutil.rmtree(trash, ignore_errors=True)
        for name, text in (("info/old.txt.trashinfo", "[Trash Info]\nPath=/old.txt\n"
                            "DeletionDate=2026-01-01T00:00:00\n"), ("files/old.txt", "old")) if full else ():
            (trash / name).parent.mkdir(parents=True)
            (trash / name).write_text(text, encoding="utf-8")

    @classmethod
    def wine(cls, program, *arguments, **environment):
        """Runs a program of the build, or one of Wine's own, and returns the finished process. Its output goes to files: a
        pipe stays open as long as any program that was started on the way."""
        built = BIN / program
        with tempfile.TemporaryFile() as output, tempfile.TemporaryFile() as errors:
            finished = subprocess.run([ROOT / "scripts/wine-run.sh", built if built.exists() else program,
                                       *map(str, arguments)], env={**cls.environment, **environment}, timeout=cls.patience,
                                      stdin=subprocess.DEVNULL, stdout=output, stderr=errors, check=False)
            for name, file in (("stdout", output), ("stderr", errors)):
                file.seek(0)
                text = file.read().decode("utf-8", "surrogateescape")
                setattr(finished, name, text.replace("\r\n", "\n"))
            return finished

    @classmethod
    def reg(cls, *arguments):
        finished = cls.wine("reg", *arguments)
        if finished.returncode != 0:
            raise AssertionError(f"reg {arguments}: {finished.stdout}{finished.stderr}")
        return finished.stdout

    @classmethod
    def register_commands(cls, folder=BIN):
        """Registers the class of nmcommand.dll, which on Windows its package does."""
        key = rf"HKLM\Software\Classes\CLSID\{COMMAND_CLASS}\InProcServer32"
        cls.reg("add", key, "/ve", "/d", windows_path(folder / "nmcommand.dll"), "/f")
        cls.reg("add", key, "/v", "ThreadingModel", "/d", "Apartment", "/f")

    def registry(self):
        """The registry as a set of (key, value line); a key without values counts with an empty line."""
        finished = self.wine(SNAPSHOT, windows_path(self.work))
        self.assertEqual(finished.returncode, 0, finished.stderr)
        result = set()
        for root, name in (("hkey_local_machine", "machine.reg"), ("hkey_current_user", "user.reg")):
            file = self.work / name
            key = ""
            for line in file.read_text(encoding="ascii").replace("\\\n", "").splitlines():
                if line.startswith("["):
                    key = f"{root}\\software\\" + line[1:line.rindex("]")].lower().replace("\\\\", "\\")
                    parts = key.split("\\")  # a key above others has no line of its own unless it has values
                    result.update(("\\".join(parts[:count]), "") for count in range(2, len(parts) + 1))
                elif line.startswith(('"', "@")):
                    result.add((key, line))
            file.unlink()
        return result

    def rightclick(self, *arguments, code=0, **environment):
        """The client's JSON for a selection."""
        finished = self.wine("rightclick.exe", "--json", *arguments, **environment)
        self.assertEqual(finished.returncode, code, finished.stdout + finished.stderr)
        return json.loads(finished.stdout)

    def pick(self, offset, *selection):
        """What nmark.exe received when the entry was chosen."""
        report = self.work / "report.json"
        report.unlink(missing_ok=True)
        self.rightclick("--pick", offset, *selection, NMARK_REPORT=windows_path(report))
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline:
            if report.exists() and report.read_bytes().endswith(b"\n"):
                return json.loads(report.read_text(encoding="utf-8"))
            time.sleep(0.05)
        self.fail(f"nothing was started for offset {offset}")

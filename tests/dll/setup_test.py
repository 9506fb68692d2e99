"""nmshell-setup against a real registry: what registering adds, and that nothing of it stays."""
import shutil
import unittest

from wine_session import APPROVED, BIN, FILES_CLASS, WineTest, windows_path

CLASSES = (FILES_CLASS, "{C84E10B6-2F7A-4D93-8E15-6A0B3FD7C921}", "{7A21E6D3-B94C-4E5F-9D08-13C6A8F4B2E7}")
NAME = "QuietOwl_NMark"


class SetupTest(WineTest):
    def expected(self):
        module = windows_path(BIN / "nmshell.dll").replace("\\", "\\\\")
        machine = "hkey_local_machine\\software\\"
        values = {(machine + "microsoft\\windows\\currentversion\\shell extensions\\approved", f'"{clsid}"="{NAME}"')
                  for clsid in CLASSES}
        classes = machine + "classes\\"
        for place, clsid in zip(("allfilesystemobjects", "drive", "clsid\\{645ff040-5081-101b-9f08-00aa002f954e}"),
                                CLASSES):
            values.add((f"{classes}{place}\\shellex\\contextmenuhandlers\\{NAME.lower()}", f'@="{clsid}"'))
        for clsid in CLASSES:
            server = f"{classes}clsid\\{clsid.lower()}\\inprocserver32"
            values |= {(server, f'@="{module}"'), (server, '"ThreadingModel"="Apartment"')}
        return values

    def test_register_and_unregister(self):
        # Keys that every Windows has and a fresh prefix has not.
        for key in (r"AllFileSystemObjects", r"Drive", r"CLSID\{645FF040-5081-101B-9F08-00AA002F954E}"):
            self.reg("add", rf"HKLM\Software\Classes\{key}\ShellEx\ContextMenuHandlers", "/f")
        self.reg("add", APPROVED, "/f")
        before = self.registry()
        self.assertEqual(self.wine("nmshell-setup.exe", "unregister").returncode, 0)
        self.assertEqual(self.registry() ^ before, set(), "unregistering on a clean machine changes nothing")
        self.assertEqual(self.wine("nmshell-setup.exe", "status").returncode, 1)

        done = self.wine("nmshell-setup.exe", "register")
        self.assertEqual(done.returncode, 0, done.stderr)
        added = self.registry() - before
        self.assertEqual({row for row in added if row[1]}, self.expected())
        status = self.wine("nmshell-setup.exe", "status")
        self.assertEqual((status.returncode, status.stdout.count("present")), (0, 13), status.stdout)

        self.assertEqual(self.wine("nmshell-setup.exe", "unregister").returncode, 0)
        self.assertEqual(self.registry() ^ before, set())

    def test_errors(self):
        alone = self.work / "nmshell-setup.exe"
        shutil.copy(BIN / "nmshell-setup.exe", alone)
        finished = self.wine(alone, "register")
        self.assertEqual(finished.returncode, 4)
        self.assertIn("nmshell.dll", finished.stderr)
        self.assertGreaterEqual(self.wine("nmshell-setup.exe", "explode").returncode, 100)


if __name__ == "__main__":
    unittest.main()

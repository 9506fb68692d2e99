"""The built DLL in one process that loads it again and again."""
import os
import shutil
import unittest

from wine_session import BIN, ROOT, WineTest, windows_path


class LifeTest(WineTest):
    patience = 1100  # half a minute on a machine that has nothing else to do

    def test_a_host_that_lives_on(self):
        # Two languages are enough: the files of all of them are most of what one load costs.
        for name in ("nmshell.dll", "nmcommand.dll", "nmshell-setup.exe", "langs/00-en.lang.txt", "langs/de.lang.txt"):
            (self.work / name).parent.mkdir(exist_ok=True)
            shutil.copy(BIN / name, self.work / name)
        registered = self.wine(self.work / "nmshell-setup.exe", "register")
        self.assertEqual(registered.returncode, 0, registered.stdout + registered.stderr)
        self.register_commands(self.work)
        os.chdir(self.work)  # without a temporary folder a long selection goes there
        self.addCleanup(os.chdir, ROOT)
        finished = self.wine(BIN.parent / "tests/host_life.exe", WINEPATH=windows_path(self.work))
        print(finished.stdout)
        self.assertEqual(finished.returncode, 0, finished.stdout + finished.stderr)


if __name__ == "__main__":
    unittest.main()

"""What the system's loader sees of nmshell.dll."""
import re
import subprocess
import unittest

from wine_session import BIN

DLL = BIN / "nmshell.dll"
SYSTEM_DLLS = {"advapi32.dll", "gdi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "shell32.dll", "shlwapi.dll",
               "user32.dll"}


class BinaryTest(unittest.TestCase):
    def setUp(self):
        self.headers = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", DLL], capture_output=True, text=True,
                                      check=True).stdout

    def test_exports_exactly_the_two_entry_points(self):
        table = self.headers.split("[Ordinal/Name Pointer] Table", 1)[1].split("\n\n", 1)[0]
        self.assertEqual(re.findall(r"\[\s*\d+\]\s+(\S+)", table), ["DllCanUnloadNow", "DllGetClassObject"])

    def test_needs_no_dll_but_the_system_s(self):
        needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", self.headers)}
        self.assertIn("kernel32.dll", needed)
        self.assertLessEqual(needed, SYSTEM_DLLS)

    def test_is_a_hardened_64_bit_dll(self):
        self.assertIn("file format pei-x86-64", self.headers)
        flags = int(re.search(r"DllCharacteristics\s+([0-9a-f]+)", self.headers).group(1), 16)
        for name, bit in (("high entropy", 0x20), ("dynamic base", 0x40), ("no execute", 0x100)):
            self.assertTrue(flags & bit, name)

    def test_carries_version_and_manifest(self):
        data = DLL.read_bytes()
        self.assertIn("4.0.3".encode("utf-16-le"), data)
        self.assertIn(bytes.fromhex("bd04effe" "00000100" "00000400" "00000300"), data)  # 4.0.3.0, binary
        self.assertIn(b"<assembly", data)


if __name__ == "__main__":
    print(f"nmshell.dll: {DLL.stat().st_size / 1024:.0f} KiB")
    unittest.main()

"""What the system's loader sees of nmshell.dll and nmcommand.dll, and what everything that ships carries."""
import re
import struct
import subprocess
import unittest
import zlib

from wine_session import BIN, ROOT

DLL = BIN / "nmshell.dll"
SHIPPED = (DLL, BIN / "nmcommand.dll", BIN / "nmshell-actions.dll",
           *(BIN / f"{name}.exe" for name in ("interlang", "nmark", "nmshell-setup", "nmshell-setupw", "rightclick")))
VERSION = re.search(r"project\(nmshell VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text(encoding="utf-8")).group(1)
# All that the extension calls, and what the startup code, memory and exceptions need of kernel32 and msvcrt. A few are called for
# kinds of folder and of writing that the extension does not use, by functions that it does. Who adds a name has to know what a
# scanner will think of it.
IMPORTS = {
    "advapi32.dll": "GetTokenInformation OpenProcessToken RegCloseKey RegOpenKeyExW RegQueryValueExW",
    "gdi32.dll": "DeleteObject",
    "kernel32.dll": "CloseHandle CreateFileW DeleteFileW DeviceIoControl FindClose FindFirstFileW FindNextFileW FlsAlloc "
                    "FlsFree FlsGetValue FlsSetValue FlushFileBuffers GetCPInfoExW GetCurrentDirectoryW GetCurrentProcess "
                    "GetCurrentThreadId GetEnvironmentVariableW GetFileAttributesW GetFileSizeEx GetFullPathNameW GetLastError "
                    "GetLocaleInfoW GetModuleFileNameW GetTempPathW GetTickCount64 GetWindowsDirectoryW GlobalLock "
                    "GlobalSize GlobalUnlock MultiByteToWideChar QueryPerformanceCounter RaiseException ReadFile "
                    "RtlCaptureContext RtlLookupFunctionEntry RtlUnwindEx RtlVirtualUnwind SetEndOfFile SetFilePointerEx "
                    "SetLastError Sleep VirtualProtect VirtualQuery WideCharToMultiByte WriteFile",
    "msvcrt.dll": "__iob_func _amsg_exit _initterm _lock _unlock abort calloc free fwrite malloc memchr memcmp memcpy "
                  "memmove memset realloc strcmp strlen strncmp vfprintf",
    "ole32.dll": "ReleaseStgMedium",
    "shell32.dll": "SHGetFolderPathW SHQueryRecycleBinW ShellExecuteExW ShellExecuteW",
    "shlwapi.dll": "PathGetDriveNumberW",
    "user32.dll": "CreateMenu DestroyMenu GetCursorPos GetSysColor GetSystemMetrics InsertMenuItemW LoadImageW",
}


class BinaryTest(unittest.TestCase):
    DLL, IMPORTS, LARGEST = DLL, IMPORTS, 210 * 1024

    def setUp(self):
        self.headers = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", self.DLL], capture_output=True, text=True,
                                      check=True).stdout

    def test_exports_exactly_the_two_entry_points(self):
        table = self.headers.split("[Ordinal/Name Pointer] Table", 1)[1].split("\n\n", 1)[0]
        self.assertEqual(re.findall(r"\[\s*\d+\]\s+(\S+)", table), ["DllCanUnloadNow", "DllGetClassObject"])

    def test_imports_what_it_calls_and_nothing_else(self):
        found = {}
        for dll, table in re.findall(r"DLL Name: (\S+)\n(.*?)\n\n", self.headers, re.S):
            found[dll.lower()] = set(re.findall(r"^\t[0-9a-f]+\t\s*\d+\s+(\S+)", table, re.M))
        for dll, names in self.IMPORTS.items():
            self.assertEqual(found.pop(dll), set(names.split()), dll)
        self.assertEqual(found, {})

    def test_is_small(self):
        # What is added to it every process that shows a file dialog pays for. The library's own standard exceptions
        # would bring 50 KB.
        self.assertLess(self.DLL.stat().st_size, self.LARGEST)

    def test_depends_on_no_other_assembly(self):
        # It shows no control of its own, and looking for the assembly is a quarter of what a load costs.
        self.assertNotIn(b"dependentAssembly", self.DLL.read_bytes())

    def test_is_a_hardened_64_bit_dll(self):
        self.assertIn("file format pei-x86-64", self.headers)
        flags = int(re.search(r"DllCharacteristics\s+([0-9a-f]+)", self.headers).group(1), 16)
        for name, bit in (("high entropy", 0x20), ("dynamic base", 0x40), ("no execute", 0x100)):
            self.assertTrue(flags & bit, name)
        # No thread-local storage: the loader would have to find it for every thread.
        self.assertRegex(self.headers, r"Entry 9 0{16} 0{8} Thread Storage")

    def test_stacks_are_protected(self):
        code = subprocess.run(["x86_64-w64-mingw32-objdump", "-d", "--no-show-raw-insn", self.DLL], capture_output=True,
                              text=True, check=True).stdout
        # The process ends at once with this reason, which many functions lead to.
        failure = re.search(r"^ *([0-9a-f]+):\tmov +\$0x2,%ecx\n.*\tint +\$0x29", code, re.M)
        self.assertGreater(len(re.findall(rf"\tcall +0x{failure.group(1)}\b", code)), 50)


class CommandBinaryTest(BinaryTest):
    # It hands out texts that the caller frees, and a third of it are icons.
    DLL, LARGEST = BIN / "nmcommand.dll", 340 * 1024
    IMPORTS = {**IMPORTS, "ole32.dll": "CoTaskMemAlloc CoTaskMemFree"}


class ShippedTest(unittest.TestCase):
    def test_carries_version_and_manifest(self):
        numbers = [int(number) for number in VERSION.split(".")]
        for path in SHIPPED:
            wanted = [name.encode("utf-16-le") for name in ("FileVersion\0", VERSION + "\0", path.name + "\0")]
            wanted.append(struct.pack("<2I4H", 0xFEEF04BD, 0x10000, *numbers[1::-1], 0, numbers[2]))
            wanted.append(b"{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}")
            if path.suffix == ".exe":  # a library has no rights of its own to ask for
                wanted.append(b'level="asInvoker"')
            data = path.read_bytes()
            self.assertEqual([part for part in wanted if part not in data], [], path.name)

    def test_has_no_time_stamps(self):
        for path in SHIPPED:
            data = path.read_bytes()
            header = struct.unpack_from("<I", data, 0x3C)[0]
            stamps = {struct.unpack_from("<I", data, header + 8)[0]}
            listing = subprocess.run(["x86_64-w64-mingw32-objdump", "-p", path], capture_output=True, text=True, check=True)
            stamps |= {int(stamp, 16) for stamp in re.findall(r"Time/Date stamp\s+(\w+)", listing.stdout)}
            self.assertEqual(stamps, {0}, path.name)

    def test_symbols_lie_beside_and_are_of_this_build(self):
        for path in SHIPPED:
            symbols = path.parent / "symbols" / f"{path.name}.debug"
            data, name = path.read_bytes(), symbols.name.encode() + b"\0"
            check = data.rfind(name) + (len(name) + 3) // 4 * 4  # the link: a name, filled up, and a checksum
            self.assertEqual(int.from_bytes(data[check:check + 4], "little"), zlib.crc32(symbols.read_bytes()), path.name)
            self.assertEqual(data.find(b".debug_info"), -1, path.name)
        symbols = BIN / "symbols/nmshell.dll.debug"
        table = subprocess.run(["x86_64-w64-mingw32-nm", symbols], capture_output=True, text=True, check=True).stdout
        address = re.search(r"(\w+) T DllGetClassObject", table).group(1)
        place = subprocess.run(["x86_64-w64-mingw32-addr2line", "-e", symbols, address], capture_output=True, text=True,
                               check=True).stdout
        self.assertRegex(place, r"shellext/exports\.cpp:\d+")
        self.assertNotIn(str(ROOT), place)


if __name__ == "__main__":
    print(f"nmshell.dll: {DLL.stat().st_size / 1024:.0f} KiB")
    unittest.main()

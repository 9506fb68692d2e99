"""Both parsers of the command line, the product's and the example's, against the published argument lists.

Called with the native nmark program."""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import unittest.mock

ROOT = pathlib.Path(__file__).resolve().parents[2]
PROGRAM = sys.argv.pop(1)
sys.path.insert(0, str(ROOT / "examples"))
import receiver  # noqa: E402

VECTORS = json.loads((ROOT / "docs/command-line.json").read_text(encoding="utf-8"))


def by_nmark(arguments):
    environment = {name: value for name, value in os.environ.items() if name != "NMARK_REPORT"}
    finished = subprocess.run([PROGRAM, *arguments], env=environment, capture_output=True, check=True)
    report = json.loads(finished.stdout.splitlines()[-1])
    cursor = report["cursor"] and [report["cursor"]["x"], report["cursor"]["y"]]
    return {"command": report["command"], "cursor": cursor, "data": report["dataUnits"], "path": report["path"],
            "paths": len(report["paths"])}


def by_receiver(arguments):
    request = receiver.parse(arguments)
    paths = len(receiver.paths(request["data"]))
    return {**request, "data": request["data"].encode("utf-16-be", "surrogatepass").hex(), "paths": paths}


class CommandLineTest(unittest.TestCase):
    def check(self, parse):
        for vector in VECTORS:
            with self.subTest(vector["name"]), tempfile.TemporaryDirectory() as folder:
                for name, content in vector.get("files", {}).items():
                    path = pathlib.Path(folder, name)
                    path.parent.mkdir(exist_ok=True)
                    path.write_bytes(bytes.fromhex(content))
                arguments = [argument.replace("{folder}", folder) for argument in vector["arguments"]]
                self.assertEqual(parse(arguments), vector["request"])
                self.assertEqual([file for _, _, files in os.walk(folder) for file in files], [])

    def test_the_products_parser(self):
        self.check(by_nmark)

    def test_the_example(self):
        self.check(by_receiver)

    def test_a_folder_that_had_the_escape_in_its_name_already(self):
        with tempfile.TemporaryDirectory(suffix="%20x") as folder:
            path = pathlib.Path(folder, "t")
            path.write_bytes(b"C:\\a\0")
            self.assertEqual(receiver.parse(["-tfn", str(path)])["data"], "C:\\a\0")
            path.write_bytes(b"C:\\a\0")
            with unittest.mock.patch("os.remove", side_effect=PermissionError):
                self.assertEqual(receiver.parse(["-tfn", str(path)])["data"], "C:\\a\0", "a file that cannot be deleted")

    def test_a_selection_that_did_not_arrive(self):
        for arguments, expected in ((["-cmd", "101"], True), (["-cmd", "102", "-data", "eAA="], True),
                                    (["-cmd", "105"], False), (["-cmd", "101", "-data", "eAAAAA=="], False)):
            self.assertEqual(receiver.wipes_nothing(receiver.parse(arguments)), expected, arguments)


if __name__ == "__main__":
    unittest.main()

"""Figures, comparisons and pictures of the Python module are those of the tool."""
import os
import subprocess
import sys
import unittest
import warnings

from testing import CODES, ROOT, SAMPLES, Folder, options, small, tool, tool_json

import tracelyn

BENDS = [path for path in SAMPLES if path.suffix == ".paf"]


def rows_of_tool(*arguments):
    """The lines of a table without the file. JSON leaves out figures that a line does not have."""
    return [{key: value for key, value in row.items() if key != "file"} for row in tool_json(*arguments)]


class Figures(Folder):
    def assert_rows(self, rows, expected):
        self.assertTrue(expected)
        self.assertEqual([{key: row[key] for key in line} for row, line in zip(rows, expected, strict=True)], expected)
        self.assertTrue(all(row[key] is None for row, line in zip(rows, expected) for key in row.keys() - line.keys()))

    def test_statistics(self):
        for path, code, bounds, signal in ((BENDS[0], None, (), None), (BENDS[4], CODES[3], (100, 100), None),
                                           (BENDS[1], CODES[1], (700, 1500), "Press valve"),
                                           (BENDS[2], None, (), "Press valve")):
            given = [f"--{name}={bound}" for name, bound in zip(("from", "to"), bounds)]
            given += ["--while", signal] if signal else []
            expected = rows_of_tool("stats", "--format", "json", *options(code), *given, path)
            self.assert_rows(tracelyn.read(path, code).statistics(*bounds, while_=signal), expected)

    def test_comparisons(self):
        good = tracelyn.read(BENDS[0], 47195)
        for path, align, tolerances in ((BENDS[2], None, None), (BENDS[3], "Press valve", {"P1": 100, "Error Y1": 400})):
            given = ["--align", align] if align else []
            given += [f"--tolerance={name}={value}" for name, value in (tolerances or {}).items()]
            words = tool("compare", "--format", "json", "--code", "47195", *given, BENDS[0], path)[1].decode()
            expected = rows_of_tool("compare", "--format", "json", "--code", "47195", *given, BENDS[0], path)
            with warnings.catch_warnings(record=True) as caught:
                warnings.simplefilter("always")
                rows = tracelyn.compare(good, tracelyn.read(path, 47195), align=align, tolerances=tolerances)
            self.assert_rows(rows, expected)
            self.assertEqual([f"tracelyn-cli: {one.message}" for one in caught], words.splitlines())
        self.assertIn(False, [row["kept"] for row in rows])

    def test_what_cannot_be_asked_is_said_in_the_words_of_the_tool(self):
        with self.assertWarnsRegex(tracelyn.RecordingWarning, "Missing node: Data"):
            empty = tracelyn.read(self.put(small().replace("<Data>", "<Rows>").replace("</Data>", "</Rows>"), "empty.xml"))
        bend = tracelyn.read(BENDS[0])
        other = tracelyn.read(self.put(small()))
        for call, words in ((empty.statistics, "there are no samples"),
                            (lambda: other.statistics(0, 3), "there is no sample 3, the last one is 2"),
                            (lambda: bend.statistics(0, 9, while_="Press valve"),
                             "'Press valve' is never on between the samples 0 and 9"),
                            (lambda: bend.plot(compare=other), f"{BENDS[0]}: no signal is also in {other.path}"),
                            (lambda: tracelyn.compare(bend, other, align="Press valve"),
                             f"{other.path}: there is no on/off signal 'Press valve'")):
            with self.assertRaises(ValueError) as caught:
                call()
            self.assertEqual(str(caught.exception), words)
        with self.assertWarnsRegex(tracelyn.RecordingWarning, "no signal is also in"):
            self.assertEqual(tracelyn.compare(bend, other), [])


class Pictures(Folder):
    def test_are_those_of_the_tool(self):
        bend, good = tracelyn.read(BENDS[4], 83206), tracelyn.read(BENDS[0], 83206)
        cases = [
            ([], {}),
            (["--size=900x420", "--zoom=2.5", "--fixed=1150", "--cursor=1560", "--toggle=Service",
              "--toggle=Valve outputs", "--scheme=light"],
             {"size": (900, 420), "zoom": 2.5, "fixed": 1150, "cursor": 1560, "toggle": ["Service", "Valve outputs"],
              "scheme": "light"}),
            (["--console=none", "--zoom=7", "--scroll=900", "--events"],
             {"console": "none", "zoom": 7, "scroll": 900, "events": True}),
            (["--compare", BENDS[0], "--align=Press valve", "--console=left", "--cursor=-5"],
             {"compare": good, "align": "Press valve", "console": "left", "cursor": -5}),
        ]
        out = self.folder / "out.png"
        for given, arguments in cases:
            with self.subTest(given):
                tool("render", "--code", "83206", *given, BENDS[4], out)
                self.assertEqual(bend.plot(**arguments), out.read_bytes())
        self.assertEqual(bend._repr_png_(), bend.plot())

    def test_start_anywhere_and_change_nothing_of_the_process(self):
        script = (
            "import locale, os, sys, threading, tracelyn\n"
            "before = locale.setlocale(locale.LC_ALL), dict(os.environ)\n"
            "recording = tracelyn.read(sys.argv[1])\n"
            "thread = threading.Thread(target=recording.plot)\n"
            "thread.start(); thread.join()\n"
            "assert recording.plot(size=(100, 100)).startswith(b'\\x89PNG')\n"
            "assert before == (locale.setlocale(locale.LC_ALL), dict(os.environ))\n")
        environment = {name: value for name, value in os.environ.items() if name not in ("QT_QPA_PLATFORM",
                                                                                        "XDG_RUNTIME_DIR")}
        done = subprocess.run([sys.executable, "-c", script, BENDS[0]], capture_output=True, check=False,
                              env={**environment, "TMPDIR": str(self.folder)})
        self.assertEqual((done.returncode, done.stderr), (0, b""))
        self.assertEqual(list(self.folder.iterdir()), [])


if __name__ == "__main__":
    unittest.main()

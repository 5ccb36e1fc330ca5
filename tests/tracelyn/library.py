"""Installs Tracelyn as a library into a folder of its own, builds the programs of examples/ and of docs/library.md against
it as a user does, and holds what they print against the tool. Another program includes every installed header, beside
Qt's keywords.

usage: library.py BUILD_FOLDER TOOL COMPILER FLAGS
"""
import csv
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SAMPLES = ROOT / "samples"
PAGE = ROOT / "docs" / "library.md"
BUILD_FOLDER, TOOL, COMPILER, FLAGS = map(str, sys.argv[1:5])
# What users may have switched on.
WARNINGS = "-Wall -Wextra -Wconversion -Wshadow -Werror"

# Beside the program of docs/library.md.
HEADERS_TARGET = """
add_executable(headers headers.cpp)
target_link_libraries(headers PRIVATE Tracelyn::recording Tracelyn::model Tracelyn::reader Tracelyn::measure
    Tracelyn::render)
"""


def run(*command, code=0):
    """What the command prints, to either output."""
    result = subprocess.run(list(map(str, command)), text=True, check=False, encoding="utf-8", stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT)
    if result.returncode != code:
        raise AssertionError(f"{' '.join(map(str, command))}: exit code {result.returncode}\n{result.stdout}")
    return result.stdout


def code_of_page(language):
    """The one piece of the page that is written in the language."""
    pieces = re.findall(rf"^```{language}\n(.*?)^```$", PAGE.read_text(encoding="utf-8"), re.MULTILINE | re.DOTALL)
    assert len(pieces) == 1, f"{PAGE} has {len(pieces)} pieces in {language}"
    return pieces[0]


def columns_of(path):
    """The columns of the tool's table of signals, by name."""
    rows = list(csv.reader(path.read_text(encoding="latin-1").splitlines()))
    table = rows[rows.index([]) + 1:]
    return {name: [float(row[column]) for row in table[1:]] for column, name in enumerate(table[0])}


class Library(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(holder.cleanup)
        cls.folder = pathlib.Path(holder.name)
        cls.prefix = cls.folder / "prefix"
        run("cmake", "--install", BUILD_FOLDER, "--component", "Development", "--prefix", cls.prefix)
        cls.examples = cls.build(ROOT / "examples")

    @classmethod
    def build(cls, source, *options):
        """The folder with the built programs of a project."""
        target = cls.folder / ("built-" + source.name)
        run("cmake", "-S", source, "-B", target, "-G", "Ninja", f"-DCMAKE_PREFIX_PATH={cls.prefix}",
            f"-DCMAKE_CXX_COMPILER={COMPILER}", f"-DCMAKE_CXX_FLAGS={FLAGS} {WARNINGS}", *options)
        run("cmake", "--build", target, "-j", "2")
        return target

    def test_nothing_leads_back_to_the_sources(self):
        package = list((self.prefix / "lib").rglob("*.cmake"))
        self.assertEqual(len(package), 4)
        for file in package:
            self.assertNotRegex(file.read_text(), f"{re.escape(str(ROOT))}|{re.escape(BUILD_FOLDER)}|-W[a-z]", file)

    def test_every_header_is_there_with_what_it_includes(self):
        """And the program of docs/library.md."""
        include = self.prefix / "include"
        headers = sorted(path.relative_to(include).as_posix() for path in include.rglob("*.h"))
        self.assertIn("tracelyn/Recording.h", headers)
        project = self.folder / "headers"
        project.mkdir()
        lines = [f"#include <{header}>" for header in ["QObject", *headers]]
        (project / "headers.cpp").write_text("\n".join([*lines, "int main() { Tracelyn::CGraph graph; }", ""]))
        (project / "first.cpp").write_text(code_of_page("cpp"), encoding="utf-8")
        (project / "CMakeLists.txt").write_text(code_of_page("cmake") + HEADERS_TARGET, encoding="utf-8")
        printed = run(self.build(project) / "first", SAMPLES / "bend01.paf")
        info = json.loads(run(TOOL, "info", SAMPLES / "bend01.paf"))
        sets = [(group["name"], line) for group in info["groups"] for line in group["sets"]]
        self.assertEqual(printed.splitlines(), [f"{group}: {line['name']}, {line['count']} samples" for group, line in sets
                                                if line["kind"] in ("typed", "binary")])

    def test_largest_force(self):
        for file, signal, code in (("bend01.paf", "Force", None), ("bend.xml", "Encoder 1", "47195")):
            words = [signal, code] if code else []
            printed = run(self.examples / "largest_force", SAMPLES / file, *words)
            codes = ["--code", code] if code else []
            lines = json.loads(run(TOOL, "stats", "--format", "json", *codes, SAMPLES / file))
            line = next(line for line in lines if line["signal"] == signal)
            run(TOOL, "csv", *codes, SAMPLES / file, self.folder / "largest.csv")
            found = re.fullmatch(r"(.+): (\S+) (\S*) at sample (\d+), (\S+) on the axis\n", printed)
            self.assertEqual((found[1], found[3], int(found[4])), (signal, line["unit"], line["maxAt"]))
            self.assertAlmostEqual(float(found[2]) / line["max"], 1, places=5)
            self.assertAlmostEqual(float(found[5]), columns_of(self.folder / "largest.csv")["Time"][line["maxAt"]])
        self.assertEqual(run(self.examples / "largest_force", "none.xml", code=1), "Cannot read file: none.xml\n")
        self.assertIn("no signal 'X'", run(self.examples / "largest_force", SAMPLES / "bend.xml", "X", code=1))

    def test_springback(self):
        printed = run(self.examples / "springback", SAMPLES / "bend01.paf")
        run(TOOL, "csv", SAMPLES / "bend01.paf", self.folder / "bend01.csv")
        columns = columns_of(self.folder / "bend01.csv")
        valve, force, position = columns["Press valve"], columns["Force"], columns["Y1"]
        held = valve.index(0, valve.index(1))
        free = next(i for i in range(held, len(force)) if force[i] < force[held] / 100)
        found = re.fullmatch(r"Y1: (\S+) mm, samples (\d+) to (\d+)\n", printed)
        self.assertEqual((int(found[2]), int(found[3])), (held, free))
        self.assertAlmostEqual(float(found[1]), position[free] - position[held], places=3)
        self.assertIn("does not switch off", run(self.examples / "springback", SAMPLES / "bend01.paf", "Pedal up", "Force",
                                                 "Y1", code=1))

    def test_csv_of_a_set(self):
        source, tables = self.folder / "set", self.folder / "tables"
        source.mkdir()
        tables.mkdir()
        for name in ("bend01.paf", "bend02.paf", "bend03.paf", "bend.xml"):
            (source / name).write_bytes((SAMPLES / name).read_bytes())
        (source / "bend03.paf").write_bytes(b"PK")
        printed = run(self.examples / "csv_of_a_set", source / "bend01.paf", tables, code=1)
        self.assertIn("bend03.paf is damaged", printed)
        self.assertEqual(sorted(path.name for path in tables.iterdir()), ["bend01.csv", "bend02.csv"])
        for name in ("bend01", "bend02"):
            run(TOOL, "csv", source / f"{name}.paf", self.folder / "expected.csv")
            self.assertEqual((tables / f"{name}.csv").read_bytes(), (self.folder / "expected.csv").read_bytes())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])

"""What the tests of the Python module share: the tool to compare with, and recordings made by chance."""
import csv
import json
import os
import random
import subprocess
import tempfile
import unittest
from pathlib import Path
from xml.sax.saxutils import quoteattr

ROOT = Path(__file__).resolve().parents[2]
SAMPLES = sorted(path for path in (ROOT / "samples").iterdir() if path.suffix in (".xml", ".paf"))
CODES = (None, "60418", "83206", "47195")
TYPES = ("Float", "Short", "UShort", "Long", "ULong", "Byte", "UByte", "Binary")
NAMES = ("Force", "Y1", "Y1", "Force: Y1", "", "0", "\N{GREEK SMALL LETTER MU}m", "a,b;\"c\"", "Y\N{SNOWMAN}", "two words")


def start_tool(*arguments):
    """Starts tracelyn-cli, which runs beside the test."""
    environment = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}
    return subprocess.Popen([os.environ["TRACELYN_CLI"], *map(str, arguments)], env=environment,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE)


def tool(*arguments):
    """Its output and its errors."""
    return start_tool(*arguments).communicate()


def options(code):
    return () if code is None else ("--code", code)


def tool_json(command, *arguments):
    return json.loads(tool(command, *arguments)[0] or "[]")


class Folder(unittest.TestCase):
    """Every test has a folder of its own."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def put(self, text, name="file.xml"):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def columns_of(self, table):
        """Of a CSV file: the values of the reference lines, and the columns of the signals, as texts."""
        with table.open(encoding="latin-1", newline="") as file:
            _, lines, _, head, *rows = csv.reader(file)
        return lines, list(zip(*rows)) if rows else [() for _ in head]


def document(variables, groups, rows, axis='<IndexSet Name="Time"><Unit Name="ms"/></IndexSet>', name="Made"):
    """An analysis file of elements and rows of text."""
    return (f'<Analysis Name={quoteattr(name)}><DataDefinition>{axis}<VariablesDefinitions>{"".join(variables)}'
            f'</VariablesDefinitions></DataDefinition><Groups>{"".join(groups)}</Groups><Data>' + "\n".join(rows) +
            "</Data></Analysis>")


def small(values=(1, 2, 3), name="Force"):
    """A file with one signal."""
    return document([f'<TypedData Name="F" Type="Float" Description="{name}"><Unit Name="kN"/></TypedData>'],
                    ['<Group Name="Forces" Expanded="true"><Line DataName="F"/></Group>'], map(str, values))


def made(seed):
    """All that a file may hold, by chance: types, units, names that repeat, hidden signals, odd fields and rows."""
    rng = random.Random(seed)

    def unit():
        return (f'<Unit Name={quoteattr(rng.choice(("mm", "", "kN", chr(176) + "C")))} UnitOffset="{rng.randint(-5, 5)}" '
                f'UnitFactor="{rng.choice((1, 0.1, -0.5, 20, 1e-3))}" Precision="{rng.randint(0, 9)}"/>')

    def field(kind):
        if rng.random() < 0.05:
            return rng.choice(("", "nan", "inf", "-1", "300", "4000000000", "1e3", "x", " 7 mm"))
        if kind == "Float":
            return f"{rng.uniform(-1, 1) * 10 ** rng.randint(-3, 6):.6g}"
        return str(rng.randint(0, 1) if kind == "Binary" else rng.randint(0, 70000))

    kinds = [rng.choice(TYPES) for _ in range(rng.randint(1, 12))]
    variables = [f'<TypedData Name="{i}" Type="{kind}" Description={quoteattr(rng.choice(NAMES))} '
                 f'Code="{rng.choice((0, 0, 0, 1, 3))}"'
                 + rng.choice(("", ' Color="#1080FF"')) + f'>{rng.choice(("", unit()))}</TypedData>'
                 for i, kind in enumerate(kinds)]
    groups = []
    for _ in range(rng.randint(1, 4)):
        lines = [f'<Line DataName="{rng.randrange(len(kinds))}"'
                 + rng.choice(("", "", ' DisplayGraph="false"', ' DisplayGraph="false" DisplayConsole="false"')) + "/>"
                 for _ in range(rng.randint(0, 5))]
        lines += [f'<RefLine Name="Limit" Value="{rng.randint(-9, 9)}"/>'] * rng.randint(0, 2)
        groups.append(f'<Group Name={quoteattr(rng.choice(NAMES[:3]) or "g")} Expanded="true">{"".join(lines)}</Group>')
    rows = [",".join([field(kind) for kind in kinds][:None if rng.random() < 0.95 else 1])
            for _ in range(rng.choice((0, 1, 2, 50, 300)))]
    return document(variables, groups, rows, f'<IndexSet Name="Time">{unit()}</IndexSet>', f"Made {seed}")

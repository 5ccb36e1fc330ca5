#!/usr/bin/env python3
"""What the documents say about files and commands, and what examples/write_recording.py writes, held against the tool.

    documents.py TRACELYN-CLI
"""
import csv
import json
import os
import re
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "examples"))
import write_recording as writer

PAGE = (ROOT / "docs" / "format.md").read_text(encoding="utf-8")
DOCUMENTS = re.findall(r"```xml\n(.*?)```", PAGE, re.DOTALL)
EXAMPLE, TINY = DOCUMENTS
TYPES = ("Float", "Short", "UShort", "Long", "ULong", "Byte", "UByte", "Binary")


def table(first_head):
    """The rows of the table of the page whose head begins so, as lists of cells."""
    rows = PAGE.split(f"\n| {first_head} |")[1].split("\n\n")[0].splitlines()[2:]
    return [[cell.strip(" ") for cell in row.strip("|").split(" | ")] for row in rows]


def spans(cell):
    return re.findall(r"`([^`]*)`", cell)


def as_float32(text):
    return struct.unpack("f", struct.pack("f", float(text)))[0]


class Folder(unittest.TestCase):
    """Every test has a folder of its own, and the tool."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def tool(self, *arguments):
        return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, encoding="utf-8", check=False)

    def put(self, content, name="file.xml"):
        path = self.folder / name
        path.write_bytes(content if isinstance(content, bytes) else content.encode("utf-8"))
        return path

    def info(self, path, *options):
        """The exit code, the problems and what is in the file."""
        done = self.tool("info", *options, path)
        problems = re.findall(r"^ERROR: (.*)$", done.stderr, re.MULTILINE)
        return done.returncode, problems, json.loads(done.stdout or "{}")

    def table_of(self, path, *options):
        """The fields of the CSV file behind the reference lines: the heads, then a list for each sample."""
        out = self.folder / "out.csv"
        self.assertEqual(self.tool("csv", *options, path, out).returncode, 0)
        with out.open(encoding="latin-1", newline="") as file:
            return list(csv.reader(file))[3:]


def shown_by_types(field, columns):
    """A document with a row of equal fields for variables of these types."""
    variables = "".join(f'<TypedData Name="{i}" Type="{kind}">{unit}</TypedData>'
                        for i, (kind, unit) in enumerate(columns))
    lines = "".join(f'<Line DataName="{i}"/>' for i in range(len(columns)))
    return ('<Analysis><DataDefinition><IndexSet Name="t"><Unit/></IndexSet><VariablesDefinitions>'
            f'{variables}</VariablesDefinitions></DataDefinition><Groups><Group Name="g">{lines}</Group></Groups>'
            f'<Data>{field}</Data></Analysis>')


class ThePage(Folder):
    def test_its_documents_have_no_problem(self):
        for document in DOCUMENTS:
            self.assertEqual(self.info(self.put(document))[:2], (0, []), document)

    def test_each_mistake_has_its_messages(self):
        rows = table("Instead of")
        self.assertGreater(len(rows), 20)
        for before, after, messages, reading in rows:
            with self.subTest(before, there_is=after):
                document = EXAMPLE
                for old, new in zip(spans(before), spans(after) or [""], strict=True):
                    self.assertIn(old, document)
                    document = document.replace(old, new)
                path = self.put(document)
                code, problems, content = self.info(path)
                self.assertEqual(problems, [text.replace("FILE", str(path)) for text in spans(messages)])
                self.assertEqual((code, content["samples"] > 1), (3, reading == "goes on"))

    def test_limits(self):
        beyond = [spans(cells[2])[0] for cells in table("What | Most") if "`" in cells[2]]
        documents = (EXAMPLE.replace("</Groups>", '<Group Name="g"/>' * 9997 + "</Groups>"),
                     EXAMPLE.replace("Small example", "x" * 5001),
                     EXAMPLE.replace("<Data>", "<Data>" + "\n" * 4_200_000))
        for document, expected in zip(documents, beyond, strict=True):
            pattern = re.sub(r"\b[NM]\b", r"\\d+", re.escape(expected))
            code, problems, _ = self.info(self.put(document))
            self.assertEqual((code, len(problems)), (3, 1), problems)
            self.assertRegex(problems[0], f"^{pattern}$")

    def test_attribute_values(self):
        for written, whole, number, yes in table("Written"):
            for value in spans(written) or [""]:
                with self.subTest(written):
                    attributes = [f'{name}="{value}"' if "left out" not in written else ""
                                  for name in ("UnitOffset", "SizeRatio", "Expanded")]
                    document = EXAMPLE.replace('UnitOffset="0"', attributes[0])
                    document = document.replace('SizeRatio="2" Expanded="true"', " ".join(attributes[1:]))
                    axis, group, *_ = self.info(self.put(document))[2]["groups"]
                    self.assertEqual((group["sizeRatio"], axis["sets"][0]["unitOffset"], group["expanded"]),
                                     (int(whole), float(number), yes == "yes"))

    def test_rows_and_fields(self):
        for row, *values in table("Row"):
            document = shown_by_types(spans(row)[0].replace('"', "&quot;"), [("Byte", "")] * 3)
            self.assertEqual(self.table_of(self.put(document))[1][1:], values, row)
        columns = [(kind, '<Unit Precision="3"/>') for kind in TYPES]
        for field, *values in table("Field"):
            row = ",".join([spans(field)[0]] * len(TYPES))
            shown = [float(value) for value in self.table_of(self.put(shown_by_types(row, columns)))[1][1:]]
            values[6:] = [{"on": "1", "off": "0"}[values[6]]]
            values.insert(6, values[5])  # Byte and UByte
            shown[7] = min(shown[7], 1)
            for kind, value, expected in zip(TYPES, shown, values, strict=True):
                expected = float(f"{as_float32(expected):.3f}")
                self.assertTrue(value == expected or expected != expected and value != value, (field, kind, value))

    def test_automatic_colours(self):
        for kind, colours in table("Signals"):
            names = spans(colours)
            columns = [("Binary" if kind == "on/off" else "Long", "")] * (len(names) + 1)
            sets = self.info(self.put(shown_by_types("1", columns)))[2]["groups"][1]["sets"]
            self.assertEqual([signal["color"] for signal in sets],
                             ["0x" + name[1:] for name in names + names[:1]])


class TheDump(Folder):
    def lines(self):
        """Offset, bytes and meaning of each line, record by record."""
        blocks = re.findall(r"```text\n(.*?)```", PAGE, re.DOTALL)
        return [[(int(line[:4], 16), bytes.fromhex(line[6:53]), line[55:]) for line in block.splitlines()]
                for block in blocks]

    def test_it_is_the_container_of_the_document(self):
        dump = b"".join(data for block in self.lines() for _, data, _ in block)
        at = 0
        for offset, data, _ in (line for block in self.lines() for line in block):
            self.assertEqual(offset, at)
            at += len(data)
        self.assertIn(f"a file of {len(dump)} bytes", PAGE)
        path = self.put(dump, "dump.paf")
        self.assertEqual(self.tool("expand", path, self.folder / "out.xml").returncode, 0)
        self.assertEqual((self.folder / "out.xml").read_text(encoding="utf-8"), TINY)
        self.assertEqual(self.tool("pack", self.put(TINY), self.folder / "out.paf").returncode, 0)
        self.assertEqual((self.folder / "out.paf").read_bytes(), dump)

    def test_a_field_that_is_looked_at_must_be_right(self):
        entry, *_ = self.lines()
        whole = b"".join(data for block in self.lines() for _, data, _ in block)
        self.assertEqual(self.info(self.put(whole[:entry[-1][0] + len(entry[-1][1])], "file.paf"))[:2], (0, []))
        damaged, nameless = (spans(row[1])[0] for row in table("Mistake")[:2])
        for offset, _, meaning in entry:
            with self.subTest(meaning, offset=offset):
                changed = bytearray(whole)
                changed[offset] ^= 1
                path = self.put(bytes(changed), "file.paf")
                code, problems, _ = self.info(path)
                expected = (1, [damaged.replace("FILE", str(path))])
                if "not looked at" in meaning:
                    expected = (0, [])
                elif "tmpandat.bin" in meaning:
                    expected = (3, [nameless])
                self.assertEqual((code, problems), expected)


class TheOtherPages(Folder):
    def test_the_commands_of_the_guide_print_what_it_says(self):
        guide = (ROOT / "docs" / "guide.md").read_text(encoding="utf-8")
        (self.folder / "tracelyn-cli").symlink_to(Path(TOOL).resolve())
        for sample in (ROOT / "samples").glob("*.paf"):
            (self.folder / sample.name).symlink_to(sample)
        environment = os.environ | {"PATH": f"{self.folder}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}
        commands = re.findall(r"^    \$ (.*)\n((?:    [^$\n].*\n)*)", guide, re.MULTILINE)
        self.assertGreater(len(commands), 3)
        for command, output in commands:
            done = subprocess.run(["bash", "-c", command], cwd=self.folder, env=environment, stdout=subprocess.PIPE,
                                  encoding="utf-8", check=True)
            self.assertEqual(done.stdout.split(), output.split(), command)

    def test_links_lead_somewhere(self):
        def anchors(path):
            text = re.sub(r"```.*?```", "", path.read_text(encoding="utf-8"), flags=re.DOTALL)
            heads = re.findall(r"^#+ (.*)$", text, re.MULTILINE)
            return set(re.findall(r'<a id="([^"]*)"', text)) | {
                re.sub(r"[^\w -]", "", head.lower()).replace(" ", "-") for head in heads}
        pages = [*ROOT.glob("*.md"), *(ROOT / "docs").glob("*.md")]
        self.assertGreater(len(pages), 5)
        for page in pages:
            for link in re.findall(r"\]\(([^)\s]+)\)", page.read_text(encoding="utf-8")):
                path, _, anchor = link.partition("#")
                if "://" in link:
                    continue
                target = page.parent / path if path else page
                self.assertTrue(target.exists(), f"{page.name}: {link}")
                if anchor:
                    self.assertIn(anchor, anchors(target), f"{page.name}: {link}")


class TheWriter(Folder):
    def test_its_files_come_back_exactly(self):
        subprocess.run([sys.executable, "-B", ROOT / "examples" / "write_recording.py", self.folder], check=True)
        variables = [variable for group in writer.bend() for variable in group.variables]
        meant = [["Time"] + [variable.description for variable in variables]]
        for i in range(len(variables[0].values)):
            axis = writer.AXIS_UNIT
            meant.append([f"{i * axis.factor:.{axis.decimals}f}"] +
                         [f"{variable.values[i]:.{variable.unit.decimals}f}" for variable in variables])
        for name in ("press.xml", "press01.paf"):
            path = self.folder / name
            code, problems, content = self.info(path, "--code", "47195")
            self.assertEqual((code, problems, content["results"], content["name"]), (0, [], [], writer.NAME))
            self.assertEqual([group["name"] for group in content["groups"][1:]],
                             [group.name for group in writer.bend()])
            self.assertEqual(self.table_of(path, "--code", "47195"), meant)
            self.assertNotIn("Oil", self.table_of(path)[0])
        self.assertEqual(self.tool("expand", path, self.folder / "out.xml").returncode, 0)
        self.assertEqual((self.folder / "out.xml").read_bytes(), (self.folder / "press.xml").read_bytes())

    def test_it_refuses_what_a_type_cannot_hold(self):
        for kind, value in (("Short", 32768), ("UByte", -1), ("Float", float("nan"))):
            with self.assertRaises(ValueError):
                writer.Variable("V", "v", kind, [value]).fields()


if __name__ == "__main__":
    TOOL = sys.argv.pop(1)
    unittest.main()

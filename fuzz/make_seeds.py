#!/usr/bin/env python3
"""Makes the seeds of the fuzzers from the samples: make_seeds.py FOLDER

A folder for each fuzzer. Every run writes the same files.
"""
import re
import struct
import sys
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
ROWS = 12


def choice(value, choices):
    """A printable character that a fuzzer takes for this one of so many choices."""
    return next(chr(c) for c in range(0x30, 0x7F) if c % choices == value)


def shown(stretch=0, distance=0, level=0, size=0, scale=0, steps=()):
    """The comment that chooses how an analysis is shown, see AnalysisFuzzer.cpp and Driving.cpp. It is read from its end."""
    taken = [choice(stretch, 32), choice(distance, 64), choice(level, 4), "0", "p", "2", choice(size, 5), choice(scale, 4),
             choice(len(steps), 6)]
    for action, amount in steps:
        taken += [choice(action, 16), chr(amount)]
    return "<!--" + "".join(reversed(taken)) + "-->"


SHOWN = [shown(), shown(level=3, steps=[(0, 64)]), shown(2, 7, 1, steps=[(1, 60), (2, 90)]), shown(1, 11, size=1, steps=[(4, 64), (1, 80), (5, 52)]),
         shown(2, 18, 2, 2), shown(2, 30, 3, 3, steps=[(6, 48), (9, 48), (10, 48)]), shown(3, 56, 2, 4, 2), shown(level=2, scale=2, steps=[(3, 64), (0, 64), (0, 64), (7, 60)]),
         shown(level=3, steps=[(12, 64), (13, 60), (15, 120)]), shown(level=1, scale=3, steps=[(8, 51), (11, 64), (14, 64), (1, 55), (2, 75)]), shown(level=3, size=1, steps=[(2, 72), (1, 70)]), shown(level=3, steps=[(6, 48)])]


def shorten(text, rows=ROWS):
    """The document with only the first rows of its samples."""
    head, data, tail = re.match(r"(.*<Data>)(.*)(</Data>.*)", text, re.S).groups()
    return head + "".join(data.splitlines(keepends=True)[:rows]) + tail


SMALL = """<?xml version="1.0" encoding="UTF-8"?>
<Analysis Name="Small">
<DataDefinition><IndexSet Name="Time"><Unit Name="ms" UnitFactor="2" Precision="0"/></IndexSet>
<VariablesDefinitions>
<TypedData Name="f" Type="Float" Description="Path"><Unit Name="mm" UnitOffset="0.25" UnitFactor="2"/></TypedData>
<TypedData Name="s" Type="Short" Description="µ" Color="#1772F8" Code="1"/>
<TypedData Name="b" Type="Binary" Description="Pedal"/>
</VariablesDefinitions></DataDefinition>
<Groups>
<Group Name="A" SizeRatio="3" Expanded="true" Orientation="Inverted"><RefLine Name="Limit" Value="2.5"/>
<Line DataName="f"/><Line DataName="s" DisplayGraph="false"/></Group>
<Group Name="B" SeparateSets="true" Expanded="1"><Line DataName="b"/><Line DataName="s" DisplayConsole="0"/></Group>
</Groups>
<Data>0.5,-7,1
-1.25,8,0
3,0,1
</Data>
</Analysis>
"""


def replaced(*pairs):
    text = SMALL
    for old, new in pairs:
        assert old in text, old
        text = text.replace(old, new)
    return text


def data(new):
    return re.sub(r"<Data>.*</Data>", lambda _: new, SMALL, flags=re.S)


def structures():
    """The small document in all the shapes that the reader tells apart."""
    yield SMALL
    # Sample rows.
    yield replaced(("\n-1.25", "\r\n-1.25"), ("\n3,0", "\r\n3,0"))
    yield data("<Data>1,2,3&#10;4,5,6&#13;\n7&#x2C;8,9\n</Data>")
    yield data("<Data>1,2,3\n&lt;&amp;&gt;,&quot;\n4,5\n</Data>")
    yield data("<Data><!-- first -->1,2,3\n4,5,6\n</Data>")
    yield data("<Data>1,2,3\n<!-- between -->4,5,6\n</Data>")
    yield data("<Data><![CDATA[1,2,3\n4,5,6\n]]></Data>")
    yield data("<Data>1,2,3\n<![CDATA[4,5,6]]>\n</Data>")
    yield data("<Data>1,2,3\n<?stop here?>4,5,6\n</Data>")
    yield data("<Data>1,2,3\n<Row>4,5,6</Row>7,8,9</Data>")
    yield data("<Data>\n\n1,2\n\n\n,,,,,\n1\n\n\n</Data>")
    yield data("<Data>1,2,3\r4,5,6\r\n7\r</Data>")
    yield data("<Data/>")
    yield data("<Data>   \n \t\n</Data>")
    yield data("<Data></Data><Data>1,2,3</Data>")
    yield data("<Data a='1' b='2'>1e38,-40000,256\n-1e39,99999999999,-1\nnan,0x10,inf\n1e-45,.5,+7\n</Data>")
    yield data("<Data>1,2,3]]></Data>")
    yield data("<Data>1,2,3]] >\n4,5\u00b5,6\n</Data>")
    yield data("<!--<Data>9,9,9</Data>--><Data>1,2,3</Data>")
    yield data("<Data>" + "7," * 200 + "\n</Data>")
    # Places and order of the elements.
    body = re.search(r"<Groups>.*</Groups>", SMALL, re.S).group()
    yield SMALL.replace(body, "").replace("</Analysis>", body + "</Analysis>")
    yield SMALL.replace(body, "<Groups/>")
    for element in ("DataDefinition", "IndexSet", "VariablesDefinitions", "Groups", "Data"):
        yield re.sub(f"<{element}.*</{element}>", "", SMALL, flags=re.S)
    yield replaced(("<Analysis ", "<analysis "), ("</Analysis>", "</analysis>"))
    yield replaced(("<Groups>", "<Groups><Foo/>text<!-- c -->"), ("<VariablesDefinitions>", "<VariablesDefinitions><Foo/>"))
    yield replaced(("<Line DataName=\"b\"/>", "<Foo/>"))
    yield replaced(("DataName=\"s\" DisplayC", "DataName=\"x\" DisplayC"))
    yield replaced(("Type=\"Short\"", "Type=\"short\""))
    yield replaced(("Type=\"Short\"", "Type=\"Byte\""), ("Type=\"Float\"", "Type=\"ULong\""))
    yield replaced(("Type=\"Short\"", "Type=\"UShort\""), ("Type=\"Float\"", "Type=\"Long\""), ("Type=\"Binary\"", "Type=\"UByte\""))
    yield replaced(("Name=\"Limit\" Value=\"2.5\"", "Name=\"Limit\""))
    yield replaced(("Value=\"2.5\"", "Value=\"\" DisplayConsole=\"true\" IgnoreForVerticalAutoScaling=\"0\""))
    yield replaced(("SizeRatio=\"3\"", "SizeRatio=\"0x7fffffff\""), ("Precision=\"0\"", "Precision=\"900\""))
    yield replaced(("SizeRatio=\"3\"", "SizeRatio=\"-5\""), ("UnitFactor=\"2\"", "UnitFactor=\"-inf\""))
    # What a parser meets.
    yield replaced(("<Analysis ", "<!DOCTYPE Analysis [<!ATTLIST Group Expanded CDATA 'true'>]><Analysis "))
    yield replaced(("<Analysis ", "<!DOCTYPE Analysis [<!ENTITY e 'x'>]><Analysis "), ("\"Small\"", "\"&e;\""))
    yield replaced(("<Analysis ", "<!DOCTYPE Analysis SYSTEM 'file:///etc/hostname'><Analysis "))
    yield replaced(("<Analysis ", "<!DOCTYPE Analysis [<!ELEMENT Data (#PCDATA)><!NOTATION n SYSTEM 'x'>%p;]><Analysis "))
    yield replaced(("<Analysis ", "<a:Analysis xmlns:a=\"urn:a\" "), ("</Analysis>", "</a:Analysis>"))
    yield replaced(("<Analysis ", "<Analysis xmlns=\"urn:a\" xmlns:b=\"urn:b\" b:Name=\"x\" "))
    yield replaced(("\"Small\"", "\"&#x53;m&amp;&#228;&lt;&#x1F600;&#xE000;\""))
    yield replaced(("<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "<?xml version=\"1.1\" standalone=\"yes\"?><?pi x?><!-- c -->"))
    yield replaced(("</Analysis>", "</Analysis><!-- after --><?pi?>"))
    yield replaced(("<Data>", "<Data xml:space='preserve'>"), ("Description=\"Path\"", "Description=\"\u05d0\u0301\u202e\""))
    # Beyond limits.
    yield replaced(("<VariablesDefinitions>", "<VariablesDefinitions>" + "<x/>" * 1100))
    yield replaced(("Description=\"Path\"", f"Description=\"{'n' * 10_100}\""))
    yield SMALL[: len(SMALL) // 2]
    yield "<Analysis/>"
    yield "<Analysis Name='deep'>" + "<a>" * 100 + "</a>" * 100 + "</Analysis>"


ENCODINGS = [("UTF-8", "utf-8-sig"), ("UTF-16", "utf-16"), ("UTF-16LE", "utf-16-le"), ("ISO-8859-1", "latin-1"),
             ("windows-1252", "cp1252"), ("US-ASCII", "ascii")]


def analysis_seeds():
    documents = [text.encode() for text in structures()]
    for name, codec in ENCODINGS:
        documents.append(SMALL.replace("UTF-8", name).encode(codec, "xmlcharrefreplace"))
    documents.append(b"\xfe\xff" + SMALL.replace("UTF-8", "UTF-16").encode("utf-16-be"))
    for rows in (3, ROWS):
        documents.append(shorten((ROOT / "samples/bend.xml").read_text(encoding="utf-8"), rows).encode())
    documents.append((ROOT / "tests/data/eight_types.xml").read_bytes())
    for i, document in enumerate(documents):
        wide = next((c for start, c in ((b"\xff\xfe", "utf-16-le"), (b"\xfe\xff", "utf-16-be")) if document.startswith(start)), "ascii")
        yield document.rstrip(b"\n") + SHOWN[i % len(SHOWN)].encode(wide)
    for comment in SHOWN:
        yield SMALL.encode() + comment.encode()


def lengthened(filler=0, pieces=0, more=90, other=13, start=0, length=0, places=((0, 32),), level=3):
    """The comment that chooses how a document becomes a long one, see RowsFuzzer.cpp. It is read from its end."""
    taken = [choice(level, 4), choice(filler, 4), choice(pieces, 3), choice(more, 96), choice(other, 14), choice(start, 64), choice(length, 64),
             choice(len(places) - 1, 4)]
    for limit, distance in places:
        taken += [choice(limit, 8), choice(distance, 64)]
    return "<!--" + "".join(reversed(taken)) + "-->"


LENGTHENED = [lengthened(), lengthened(more=3), lengthened(1, 1, places=((1, 30), (2, 31))), lengthened(2, 2, places=((7, 32),)),
              lengthened(3, 1), lengthened(other=0, start=20, length=2), lengthened(1, other=1, start=50, length=63), lengthened(other=0, length=63),
              lengthened(other=3, length=63), lengthened(2, other=4, start=10, length=20), lengthened(pieces=2, other=5, start=12, length=30),
              lengthened(1, other=6, start=30, places=((4, 20), (3, 33), (0, 32)))]


def rows_seeds():
    own = [  # documents that want a comment of their own
        (SMALL, lengthened(other=0, start=18, length=2)),  # far more rows than what is looked at lets expect
        (data("<Data>1,2\n3</Data><Groups><Group Name='h'><Line DataName='f'/></Group></Groups><Data>4,5</Data>"), lengthened()),
        (data("<Data>                        \n</Data>"), lengthened(3)),
        (data("<Data>&none;</Data>").replace("Short", "Real"), lengthened(places=((2, 32),))),
        (data("<Data>1,2\r</Data>"), lengthened(places=((1, 28),))),  # a carriage return at the end of a piece
        (data("<Data>\r\n1,-2\r\n</Data>"), lengthened(1, places=((1, 25), (2, 24)))),
        (data("<Data>" + "7," * 60 + "\n</Data>"), lengthened(places=((1, 20), (3, 32)))),
    ]
    structured = [(document, LENGTHENED[i % len(LENGTHENED)]) for i, document in enumerate(structures())]
    for document, comment in own + structured + [(SMALL, comment) for comment in LENGTHENED]:
        yield (document.rstrip("\n") + comment).encode()


def entry(contents, name=b"tmpandat.bin", **changes):
    """One entry of a container, with header fields changed at will."""
    stream = zlib.compress(contents, 9)
    fields = dict(signature=0x04034B50, version=1, flags=0, method=8, time=0, date=0, crc=zlib.crc32(contents),
                  compressed=len(stream) - 6, size=len(contents), name_length=len(name), extra=6)
    fields.update(changes)
    return struct.pack("<IHHHHHIIIHH", *fields.values()) + name + stream[:2] + stream[-4:] + stream[2:-4]


def directory(name=b"tmpandat.bin", entries=1):
    central = struct.pack("<IHHHHIIIIHHHHHII", 0x02014B50, 1, 1, 0, 8, 0, 0, 0, 0, len(name), 0, 0, 0, 0, 0, 0) + name
    return central + struct.pack("<IHHHHIIH", 0x06054B50, 0, 0, entries, entries, len(central), 0, 0)


def container_seeds():
    document = SMALL.encode()
    whole = entry(document) + directory()
    last = (b"0", b"1")  # whether one entry or all are expanded
    names = [b"a", b"folder/a", b"folder\\b", b"a/b/c/d", b"../neighbour", b"..\\neighbour", b"/etc/x", b"C:\\x", b"a:b", b"x\0y",
             b"", b".", b"..", b"a/", b"a//b", b"CON", b"nul.txt", b"a" * 255, b"a" * 260, b"\xe4\xf6", b"target/../x", b" ", b"a."]
    for end in last:
        yield whole + end
        yield entry(b"other", b"first.txt") + whole + end
        yield whole[:-30] + end
        yield whole[:60] + end
        yield directory() + end
        yield end
        yield entry(b"") + directory() + end
        yield entry(b"\0" * 100_000) + directory() + end
        yield entry(b"<Analysis/>" * 20, crc=1) + directory() + end
        for field, value in (("size", 3), ("size", 0xFFFFFFFF), ("size", 40_000), ("compressed", 3), ("compressed", 0xFFFFFFFF),
                             ("flags", 8), ("version", 20), ("extra", 0), ("name_length", 5), ("name_length", 300), ("method", 0)):
            yield entry(b"<Analysis/>" * 20, **{field: value}) + directory() + end
        for name in names:
            yield entry(b"x", name) + entry(b"<Analysis/>") + directory() + end
        yield entry(b"1") + entry(b"2") + entry(b"3") + directory() + end
        yield b"".join(entry(b"x", b"f%d" % i) for i in range(40)) + directory(entries=40) + end


def number_seeds():
    yield from (text.encode() for text in (
        "0", "-0", "12.5", " 7\r", "abc", "4000000000", "-4000000000", "2147483647", "-2147483648", "0x10", "0xFFFFFFFF", "010", "08",
        "+5", "- 5", "--5", "1e5", "1e", "1e+", "1e400", "-1e400", "1e-400", ".5", "5.", ".", "0x1.8p3", "0x.8", "0xp", "inf",
        "-infinity", "infinit", "nan", "nan(123)", "NaN", "1,5", "1_000", "\t\n\v\f\r 1", "1" * 400, "0." + "0" * 400 + "1",
        "1" + "0" * 400 + "e-400", "1e99999999999999999999", "1e-99999999999999999999", "0x" + "f" * 300 + "p-1200", "3.4028236e38",
        "1.17549435e-38", "1e-45", "7e-46", "0.1", "0.30000001192092896", "\u00a05", "5\u00b5"))
    for value in (0.0, -0.0, 1.5, -2.25, 3.4028235e38, 1e-45, 0.1, 999999.96, 0.5, 2.5, float("inf"), float("-inf"), float("nan")):
        for precision in (0, 1, 3, 6, 40, 1000, 1001, -1, 2**31 - 1):
            yield struct.pack("<fi", value, precision)


def fileset_seeds():
    yield from ("\n".join(names).encode() for names in (
        ["bend01.paf", "bend01.paf", "bend02.paf", "bend10.paf"], ["a.paf", "a01.paf", "a02.paf"], ["RUN05.PAF", "run05.paf", "Run06.paf"],
        ["run05.xml", "run.xml", "run05.xml"], ["run7.paf", "run7.paf", "run07.paf"], ["part105.paf", "part105.paf", "part1x06.paf"],
        ["setup", "setup", "setup01"], [".paf", ".paf", "1.paf"], ["12", "12", "13"], ["a.b01.paf", "a.b01.paf", "a.b02.paf"],
        ["run01.paf", "run123.paf", "run01.paf", "run0123.paf"], ["run\u0661\u0662.paf", "run\u0661\u0662.paf"],
        ["\u0130x01.paf", "\u0130x01.paf", "i\u0307x02.paf"], ["a 01 .paf", "a 01 .paf"], ["..paf", "..paf"], ["a..01", "a..01"],
        ["x" * 60 + "1.paf", "x" * 60]))


def commandline_seeds():
    yield from (text.encode() for text in (
        "", "file.paf", "60418 file.paf", "47195 83206 60418", "-47195 \"a b.xml\"", "file.paf 60418", ".paf", ".pafx", "a.paf .paf",
        "\"\"", "a\"b c\"d", "\t a  b\t", "604180 x", "\"unclosed a b", "1 2 3 4 5 6 7 8 9 10", "- -- ---", "/47195 x",
        "info --code 60418 a.xml", "csv a.xml out.csv", "csv a.xml", "render --size 900x420 --zoom 2.5 --fixed 1 a.paf b.png",
        "render --cursor -1 --scroll 5 a b", "render --cursor=-1 --scroll=99999999999 a b", "render --size 0x5 a b", "render --size 1x1x1 a b",
        "render --scheme light --console left a b", "render --toggle \"A b\" --toggle C a b", "render --zoom nan a b", "render --zoom 1e99 a b",
        "stats --from 1 --to 5 --while \"A b\" --format csv a b c", "stats --from 5 --to 1 a", "stats",
        "compare --align Pedal --tolerance Y1=0.5 --tolerance a=b=1e-3 --format json a b", "compare --tolerance Y1=nan a b",
        "pack a b", "expand a b", "pack --code 1 a b", "--help", "info --help", "--version", "-v", "unknown", "info -- --code", "info -x a"))


SEEDS = {"analysis": analysis_seeds, "rows": rows_seeds, "container": container_seeds, "numbers": number_seeds, "fileset": fileset_seeds,
         "commandline": commandline_seeds}


def main():
    for target, seeds in SEEDS.items():
        folder = Path(sys.argv[1]) / target
        folder.mkdir(parents=True, exist_ok=True)
        for old in folder.iterdir():
            old.unlink()
        for i, seed in enumerate(seeds()):
            (folder / f"seed-{i:03}").write_bytes(seed)


if __name__ == "__main__":
    main()

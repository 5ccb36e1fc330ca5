"""Hostile files by kind and size: each asks for as much work as a file of its size can."""
import random
import struct
import zlib

MB = 1_000_000


def many(pattern, size):
    """The pattern as often as it fits; {} in it counts up."""
    parts = []
    length = 0
    while length < size:
        part = pattern.replace("{}", str(len(parts)))
        parts.append(part)
        length += len(part)
    return "".join(parts)


def document(variables='<TypedData Name="a" Type="Float" Description="A"/>',
             groups='<Group Name="g" Expanded="1"><Line DataName="a"/></Group>', rows="1\n2\n3\n", name="x", head="",
             unit='<Unit Name="ms"/>', root="", data=None, axis="t"):
    data = f"<Data>{rows}</Data>" if data is None else data
    return (f'<?xml version="1.0" encoding="UTF-8"?>{head}<Analysis Name="{name}"{root}><DataDefinition><IndexSet Name="{axis}">{unit}</IndexSet>'
            f"<VariablesDefinitions>{variables}</VariablesDefinitions></DataDefinition><Groups>{groups}</Groups>{data}</Analysis>").encode()


def group(lines, attributes=""):
    return f'<Group Name="g" Expanded="1" {attributes}>{lines}</Group>'


def numbered_variables(size, attributes='Type="Short"'):
    return many(f'<TypedData Name="v{{}}" {attributes}/>', size)


def lines_and_variables(size, attributes='Type="Short"', group_attributes="", rows="1\n2\n3\n"):
    return document(numbered_variables(size // 2, attributes), group(many('<Line DataName="v{}"/>', size // 2), group_attributes), rows)


LINE = '<Line DataName="a"/>'
LARGE_VALUES = '<TypedData Name="a" Type="Float"><Unit Name="u" UnitOffset="3e38" Precision="11"/></TypedData>'


def long_text_many_lines(variable):
    """One long text of a variable that every one of many lines hands to its set."""
    return lambda size: document(variable.format("n" * (size // 2)), group(many(LINE, size // 2)))


def of_variables(count, type_name="Float"):
    return "".join(f'<TypedData Name="v{i}" Type="{type_name}"/>' for i in range(count))


def all_lines(count):
    return group("".join(f'<Line DataName="v{i}"/>' for i in range(count)))


def with_columns(columns, rows, type_name="Float"):
    return document(of_variables(columns, type_name), all_lines(columns), rows)


ANOTHER_FILE = '<!DOCTYPE Analysis SYSTEM "x">'  # might declare entities


def with_namespaces(count, length, elements):
    """Namespaces whose prefixes differ only at their ends, and an element of the last one in place of each @."""
    prefixes = [f"{i:@>{length}}".replace("@", "p") for i in range(count)]
    return {"root": "".join(f' xmlns:{prefix}="u"' for prefix in prefixes), "groups": elements.replace("@", f"<{prefixes[-1]}:x/>")}


def noise(size):
    return random.Random(1).randbytes(size)


DOCUMENTS = {
    # Variables, lines, groups.
    "lines, each of its own variable": lines_and_variables,
    "on/off lines": lambda s: lines_and_variables(s, 'Type="Binary"', 'SeparateSets="1"'),
    "lines in rows of their own": lambda s: lines_and_variables(s, group_attributes='SeparateSets="1"'),
    "lines of one variable": lambda s: document(groups=group(many(LINE, s))),
    "lines of an unknown variable": lambda s: document(numbered_variables(s // 2), many('<Group Name="g"><Line DataName="x"/></Group>', s // 2)),
    "variables of one name": lambda s: document(many('<TypedData Name="a" Type="Float"/>', s)),
    "groups of one name": lambda s: document(groups=many('<Group Name="g"/>', s)),
    "groups of one name, open": lambda s: document(groups=many(group(LINE), s)),
    "groups of their own name, open": lambda s: document(groups=many('<Group Name="{}" Expanded="1"><Line DataName="a"/></Group>', s)),
    "groups of on/off signals": lambda s: document('<TypedData Name="a" Type="Binary" Description="A"/>', many(group(LINE), s)),
    "huge size ratios": lambda s: document(groups=many('<Group Name="g" Expanded="1" SizeRatio="2147483647"><Line DataName="a"/></Group>', s)),
    "reference lines": lambda s: document(groups=group(many('<RefLine Name="r" Value="{}"/>', s))),
    "reference lines in the console": lambda s: document(groups=group(many('<RefLine Name="r" Value="{}" DisplayConsole="1"/>', s))),
    "units of one variable": lambda s: document(f'<TypedData Name="a" Type="Float">{many("<Unit/>", s)}</TypedData>'),
    "units of many variables": lambda s: document(many('<TypedData Name="v{}" Type="Float"><Unit/><Unit/><Unit/></TypedData>', s)),
    # Unexpected nodes.
    "bad nodes among variables": lambda s: document(many("<x/>", s)),
    "bad nodes with long names": lambda s: document(many(f"<{'x' * 1000}/>", s)),
    "bad nodes with long names of their own": lambda s: document(many(f"<{'x' * 1000}{{}}/>", s)),
    "bad nodes among problems and signals": lambda s: document(
        '<TypedData Name="a" Type="Float"/>' + f"<{'x' * 48}/>" * 1000, group(LINE * 10_000 + many("<y/>", s))),
    "bad nodes of a variable": lambda s: document(f'<TypedData Name="a" Type="Float">{many("<x/>", s)}</TypedData>'),
    "bad nodes among groups": lambda s: document(groups=many("<x/>", s)),
    "nodes before everything": lambda s: document().replace(b"<DataDefinition>", many("<x/>", s).encode() + b"<DataDefinition>"),
    "nested elements": lambda s: document(groups="<x>" * (s // 7) + "</x>" * (s // 7)),
    "nested elements, never closed": lambda s: document(groups="<x>" * (s // 3)),
    "nested elements inside the rows": lambda s: document(rows="1\n" + "<x>" * (s // 7) + "</x>" * (s // 7)),
    # Long texts.
    "long name of the analysis": lambda s: document(name="n" * s),
    "long name of the axis": lambda s: document(axis="n" * s),
    "long name of a group": lambda s: document(groups=f'<Group Name="{"n" * s}" Expanded="1">{LINE}</Group>'),
    "long description": lambda s: document(f'<TypedData Name="a" Type="Float" Description="{"n" * s}"/>'),
    "long description of an on/off signal": lambda s: document(f'<TypedData Name="a" Type="Binary" Description="{"n" * s}"/>'),
    "long Arabic description": lambda s: document(f'<TypedData Name="a" Type="Float" Description="{"بت " * (s // 5)}"/>'),
    "long combining description": lambda s: document(f'<TypedData Name="a" Type="Float" Description="{"e" + chr(0x301) * (s // 2)}"/>'),
    "long unit": lambda s: document(f'<TypedData Name="a" Type="Float"><Unit Name="{"n" * s}"/></TypedData>'),
    "long bad node": lambda s: document(f"<{'x' * s}/>"),
    "long type": lambda s: document(f'<TypedData Name="a" Type="{"x" * s}"/>'),
    "long colour": lambda s: document(f'<TypedData Name="a" Type="Float" Color="{"#" * s}"/>'),
    "long colour, many lines": long_text_many_lines('<TypedData Name="a" Type="Float" Color="{}"/>'),
    "long description, many lines": long_text_many_lines('<TypedData Name="a" Type="Float" Description="{}"/>'),
    "long unit, many lines": long_text_many_lines('<TypedData Name="a" Type="Float"><Unit Name="{}"/></TypedData>'),
    "long descriptions": lambda s: document(many(f'<TypedData Name="v{{}}" Type="Float" Description="{"n" * 5000}"/>', s),
                                            group("".join(f'<Line DataName="v{i}"/>' for i in range(s // 5100)))),
    "long numbers in attributes": lambda s: document(groups=f'<Group Name="g" SizeRatio="{"9" * (s // 2)}"><RefLine Name="r" Value="{"1" * (s // 2)}"/></Group>'),
    "many long numbers in attributes": lambda s: document(groups=group(many(f'<RefLine Name="r" Value="0.{"1" * 5000}e-300"/>', s))),
    # What a parser meets.
    "long unknown attribute": lambda s: document(root=f' x="{"y" * s}"'),
    "long attribute of references": lambda s: document(root=f' x="{"&#65;" * (s // 5)}"'),
    "many attributes": lambda s: document(root=many(' a{}=""', s)),
    "1000 attributes an element": lambda s: document(groups=many("<x " + "".join(f'a{i}="" ' for i in range(1000)) + "/>", s)),
    "namespaces": lambda s: document(root=many(' xmlns:a{}="u"', s)),
    "1000 namespaces an element": lambda s: document(groups=many("<x " + "".join(f'xmlns:a{i}="u" ' for i in range(1000)) + "/>", s)),
    "nested namespaces": lambda s: document(groups=many('<x xmlns:a{}="u">', s)),
    "nested namespaces, one prefix": lambda s: document(groups="<x xmlns:a='u'>" * (s // 20) + "</x>" * (s // 20)),
    "prefixed elements deep below": lambda s: document(root=' xmlns:a="u"', groups="<x>" * (s // 6) + "<a:x/>" * (s // 12)),
    "long prefixes alike": lambda s: document(**with_namespaces(1000, 60, "@" * (s // 64))),
    "prefixes alike": lambda s: document(**with_namespaces(16, 32, "@" * (s // 36))),
    "undeclared entities among groups": lambda s: document(head=ANOTHER_FILE, groups="&a;" * (s // 3)),
    "undeclared entities in the rows": lambda s: document(head=ANOTHER_FILE, rows="1&a;\n" * (s // 5)),
    "undeclared entities in an attribute": lambda s: document(head=ANOTHER_FILE, root=f' x="{"&a;" * (s // 3)}"'),
    "long prefix": lambda s: document(root=f' xmlns:{"a" * s}="u"'),
    "declared attributes": lambda s: document(head=f"<!DOCTYPE Analysis [{many('<!ATTLIST x a{} CDATA #IMPLIED>', s)}]>"),
    "declared elements": lambda s: document(head=f"<!DOCTYPE Analysis [{many('<!ELEMENT x{} ANY>', s)}]>"),
    "declared content": lambda s: document(head=f"<!DOCTYPE Analysis [<!ELEMENT x {'(' * (s // 2)}a{')' * (s // 2)}>]>"),
    "declared choices": lambda s: document(head=f"<!DOCTYPE Analysis [<!ELEMENT x (a{'|b' * (s // 2)})>]>"),
    "declared enumeration": lambda s: document(head=f"<!DOCTYPE Analysis [<!ATTLIST x a ({many('v{}|', s)}z) #IMPLIED>]>"),
    "declared notations": lambda s: document(head=f"<!DOCTYPE Analysis [{many('<!NOTATION n{} SYSTEM `x`>', s).replace('`', chr(34))}]>"),
    "declared defaults on many elements": lambda s: document(
        head="<!DOCTYPE Analysis [" + "".join(f'<!ATTLIST x a{i} CDATA "v">' for i in range(250)) + "]>", groups=many("<x/>", s)),
    "a huge comment": lambda s: document(head=f"<!--{'c' * s}-->"),
    "many comments": lambda s: document(head=many("<!-- -->", s)),
    "many comments in the rows": lambda s: document(data=f"<Data>{many('1<!---->', s)}</Data>"),
    "a huge instruction": lambda s: document(head=f"<?pi {'c' * s}?>"),
    "many instructions": lambda s: document(head=many("<?pi x?>", s)),
    "a huge CDATA section": lambda s: document(groups=f"<![CDATA[{'c' * s}]]>"),
    "many CDATA sections in the rows": lambda s: document(data=f"<Data>{many('1<![CDATA[2]]>', s)}</Data>"),
    "text among groups": lambda s: document(groups="x" * s),
    "white space among groups": lambda s: document(groups=many(" <x/>", s)),
    "many references in the rows": lambda s: document(rows=many("1&#10;", s)),
    "broken references in the rows": lambda s: document(rows=many("1&lt;&amp;\n", s)),
    "no XML at all": noise,
    "NUL bytes": lambda s: b"\0" * s,
    "only spaces": lambda s: b" " * s,
    "a tag that never ends": lambda s: b"<" + b"a" * s,
    "a document that stops": lambda s: document(rows="1\n" * (s // 2))[: s],
    "a byte that is no UTF-8 at the end": lambda s: document(rows="1\n" * (s // 2)).replace(b"</Data>", b"\xff</Data>"),
    "UTF-16": lambda s: document(rows="1.5\n" * (s // 8)).decode().replace("UTF-8", "UTF-16").encode("utf-16"),
    # Sample rows.
    "one row of many fields": lambda s: document(rows="1," * (s // 2)),
    "many fields and variables": lambda s: with_columns(s // 90, "1," * (s // 4)),
    "empty rows": lambda s: document(rows="\n" * s + "1"),
    "rows of one field": lambda s: document(rows="1\n" * (s // 2)),
    "rows of 16 fields": lambda s: with_columns(16, "1.5,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16\n" * (s // 41)),
    "empty rows, many variables": lambda s: with_columns(s // 130, "\n" * (s // 2) + "1"),
    "empty rows, 60 variables": lambda s: with_columns(60, "\n" * s + "1"),
    "short rows, 60 variables": lambda s: with_columns(60, "1\n" * (s // 2)),
    "short rows, 100 variables": lambda s: with_columns(100, "1,2\n" * (s // 4)),
    "empty rows, last of many variables": lambda s: document(of_variables(9900), group('<Line DataName="v9899"/>'), "\n" * (s // 2) + "1"),
    "empty rows, many lines": lambda s: document(groups=group(LINE * min(9900, s // 45)), rows="\n" * (s // 2) + "1"),
    "a long field": lambda s: document(rows="1" * s + "\n"),
    "a long field for many variables": lambda s: with_columns(s // 130, "1" * (s // 2)),
    "long fields for many variables": lambda s: with_columns(s // 130, ("1." + "1" * 4094 + ",") * (s // 8200)),
    "rows of one long field, many variables": lambda s: with_columns(s // 130, ("0." + "3" * 4000 + "\n") * (s // 8200)),
    "fields of 4000 digits": lambda s: document(rows=("0." + "3" * 4000 + "e-300\n") * (s // 4010)),
    "fields of 700 digits": lambda s: document(rows=("0." + "123456789" * 77 + "\n") * (s // 700)),
    "fields close to a half": lambda s: document(rows=("16777217." + "0" * 90 + "1\n") * (s // 100)),
    "denormal fields": lambda s: document(rows="7.006492321624085354618e-46\n" * (s // 28)),
    "Windows line ends": lambda s: document(rows="1.25\r\n" * (s // 6)),
    "carriage returns": lambda s: document(rows="1\r" * (s // 2)),
    "empty rows of large values": lambda s: document(LARGE_VALUES, group(LINE * 67), "1" + "\n" * s + "1"),
    "thousands of decimals": lambda s: document('<TypedData Name="a" Type="Float"><Unit Name="u" Precision="1000000"/></TypedData>', rows="1e38\n" * (s // 5)),
    "extremes": lambda s: document(rows="3.4e38\n-3.4e38\n" * (s // 15)),
}


def entry(contents, name=b"tmpandat.bin", **changes):
    return packed_entry(zlib.compress(contents, 9), name=name, **{"size": len(contents), "crc": zlib.crc32(contents), **changes})


def packed_entry(stream, size, crc, name=b"tmpandat.bin", **changes):
    fields = dict(signature=0x04034B50, version=1, flags=0, method=8, time=0, date=0, crc=crc,
                  compressed=len(stream) - 6, size=size, name_length=len(name), extra=6)
    fields.update(changes)
    return struct.pack("<IHHHHHIIIHH", *fields.values()) + name + stream[:2] + stream[-4:] + stream[2:-4]


DIRECTORY = struct.pack("<IHHHHIIIIHHHHHII", 0x02014B50, 1, 1, 0, 8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)


def largest(size):
    return min(256 * MB, 800 * size)  # zlib packs to a thousandth, a container may expand to 4 GB: a part of that is enough


NOTHING = b"\0\0\0\xff\xff"  # a packed block of no bytes


def bomb(block, expanded=largest, **place):
    """A container of the wanted size that expands as far as it may: the block again and again at the place that is
    marked with an @."""
    def make(size):
        head, tail = document(**place).split(b"@")
        repeated = block.encode() * (MB // len(block))
        times = expanded(size) // len(repeated)
        packer = zlib.compressobj(9)
        start = packer.compress(head) + packer.flush(zlib.Z_FULL_FLUSH)
        # Behind a full flush the same bytes pack to the same bytes.
        packed = packer.compress(repeated) + packer.flush(zlib.Z_FULL_FLUSH)
        end = packer.compress(tail) + packer.flush()
        crc, adler = zlib.crc32(head), zlib.adler32(head)
        for _ in range(times):
            crc, adler = zlib.crc32(repeated, crc), zlib.adler32(repeated, adler)
        padding = NOTHING * (max(0, size - times * len(packed) - len(start + end) - 200) // len(NOTHING))
        stream = start + packed * times + padding + end[:-4] + struct.pack(">I", zlib.adler32(tail, adler))
        archive = packed_entry(stream, len(head) + len(tail) + times * len(repeated), zlib.crc32(tail, crc))
        return archive + b"\0" * max(0, size - len(archive) - len(DIRECTORY)) + DIRECTORY
    return make


def bomb_of_prefixes(count, length):
    place = with_namespaces(count, length, "@")
    return bomb(place["groups"], root=place["root"], groups="@")


def container_of_long_names(size):
    head, tail = document("@").split(b"@")
    nodes = "".join(f"<{'x' * (largest(size) // 1000 - 20)}{i}/>" for i in range(1000)).encode()
    packer = zlib.compressobj(9)
    stream = packer.compress(head + nodes) + packer.flush(zlib.Z_FULL_FLUSH)
    end = packer.compress(tail) + packer.flush()
    contents = head + nodes + tail
    padding = NOTHING * ((size - len(stream + end) - 200) // len(NOTHING))
    return packed_entry(stream + padding + end, len(contents), zlib.crc32(contents)) + DIRECTORY


CONTAINERS = {
    "container of rows": bomb("1.25\n", rows="@"),
    "container of short rows": bomb("1\n0\n", rows="@"),
    "container of many decimals": bomb("3e-38\n", rows="@",
                                       variables='<TypedData Name="a" Type="Float"><Unit Name="u" Precision="1000000"/></TypedData>'),
    "container of empty rows": bomb("\n", rows="1@1"),
    "container of empty rows, last of many": bomb("\n", rows="1@1", variables=of_variables(9900), groups=group('<Line DataName="v9899"/>')),
    "container of many lines and decimals": bomb("1\n", rows="@", groups=group(LINE * 100),
                                                 variables='<TypedData Name="a" Type="Float"><Unit Name="u" Precision="1000000"/></TypedData>'),
    "container of a comment": bomb("c", head="<!--@-->"),
    "container of bad nodes": bomb("<x/>", variables="@"),
    "container of bad nodes with long names": container_of_long_names,
    "container of large values": bomb("\n", rows="1@1", groups=group(LINE * 2), variables=LARGE_VALUES),
    "container of undeclared entities": bomb("&a;", head=ANOTHER_FILE, groups="@"),
    "container of long prefixes alike": bomb_of_prefixes(1000, 60),
    "container of prefixes alike": bomb_of_prefixes(16, 32),
    "container of nested elements": bomb("<x>", groups="@"),
    "container of lines": bomb(LINE, groups=group("@")),
    "container of a long name": bomb("n", name="@"),
    "container that expands to 4 GB": bomb("1\n", lambda s: 4000 * MB, rows="@"),
    "many entries": lambda s: entry(b"x", b"a") * (s // 45) + entry(document()) + DIRECTORY,
    "many entries, none wanted": lambda s: entry(b"x", b"a") * (s // 45) + DIRECTORY,
    "entries without names": lambda s: entry(b"", b"") * (s // 40) + DIRECTORY,
    "damaged data": lambda s: entry(noise(s), crc=0) + DIRECTORY,
    "wrong size": lambda s: entry(noise(s), size=0xFFFFFFFF) + DIRECTORY,
    "promises 400 times its size": lambda s: entry(noise(s), size=s * 400) + DIRECTORY,
    "no container at all": noise,
}

#!/usr/bin/env python3
"""Writes a recording as a controller would: write_recording.py FOLDER makes press.xml and press01.paf there.

Needs nothing but Python 3.10 or later. docs/format.md tells the rules that it follows; take from it what you need.
"""
import math
import struct
import sys
import zlib
from dataclasses import dataclass
from pathlib import Path
from xml.sax.saxutils import quoteattr

# Smallest and largest number that a whole type can hold; what lies beyond would be cut without a message.
RANGES = {"Short": (-32768, 32767), "UShort": (0, 65535), "Long": (-2**31, 2**31 - 1), "ULong": (0, 2**31 - 1),
          "Byte": (0, 255), "UByte": (0, 255), "Binary": (0, 1)}


@dataclass(frozen=True)
class Unit:
    """Shown is (recorded + offset) * factor, with so many decimals."""
    name: str
    offset: float = 0
    factor: float = 1
    decimals: int = 0

    def element(self):
        return tag("Unit", Name=self.name, UnitOffset=self.offset, UnitFactor=self.factor, Precision=self.decimals) + "/>"


@dataclass(frozen=True, eq=False)
class Variable:
    """One recorded quantity: its values as they are to be shown, in its unit, one for each sample."""
    name: str         # links it to its lines, never shown
    description: str  # what the viewer shows
    type: str
    values: list
    unit: Unit = Unit("")
    level: int = 0

    def fields(self):
        """The values as the rows of the file hold them."""
        recorded = [value / self.unit.factor - self.unit.offset for value in self.values]
        if self.type == "Float":
            if not all(math.isfinite(value) for value in recorded):
                raise ValueError(f"{self.name} has a value that is no number")
            return [f"{value:.9g}" for value in recorded]  # nine digits tell any two 32-bit numbers apart
        numbers = [round(value) for value in recorded]
        lowest, highest = RANGES[self.type]
        if min(numbers) < lowest or max(numbers) > highest:
            raise ValueError(f"{self.name} does not fit into {self.type}")
        return [str(number) for number in numbers]


@dataclass(frozen=True)
class Group:
    """A band of the picture. `limits` are reference lines: {name: value as it is recorded}."""
    name: str
    variables: list
    attributes: dict
    limits: dict


def tag(element, **attributes):
    """A start tag without its end: quoteattr sees to quotes, "<" and "&" in texts."""
    return f"<{element}" + "".join(f" {name}={quoteattr(str(value))}" for name, value in attributes.items())


def document(name, axis, axis_unit, groups):
    """The whole analysis in UTF-8."""
    variables = list(dict.fromkeys(variable for group in groups for variable in group.variables))
    out = ['<?xml version="1.0" encoding="UTF-8"?>', tag("Analysis", Name=name) + ">", "<DataDefinition>",
           tag("IndexSet", Name=axis) + ">" + axis_unit.element() + "</IndexSet>", "<VariablesDefinitions>"]
    for variable in variables:
        out.append(tag("TypedData", Name=variable.name, Type=variable.type, Description=variable.description,
                       Code=variable.level) + ">" + variable.unit.element() + "</TypedData>")
    out += ["</VariablesDefinitions>", "</DataDefinition>", "<Groups>"]
    for group in groups:
        out.append(tag("Group", Name=group.name, **group.attributes) + ">")
        out += [tag("RefLine", Name=label, Value=value) + "/>" for label, value in group.limits.items()]
        out += [tag("Line", DataName=variable.name) + "/>" for variable in group.variables]
        out.append("</Group>")
    rows = [",".join(fields) for fields in zip(*(variable.fields() for variable in variables), strict=True)]
    # The first row follows the tag at once: a line feed between them would be a row of its own.
    out += ["</Groups>", "<Data>" + "\n".join(rows), "</Data>", "</Analysis>", ""]
    return "\n".join(out).encode("utf-8")


def container(analysis):
    """The same document packed as .paf: one entry, a directory of one header, and the end."""
    name = b"tmpandat.bin"
    stream = zlib.compress(analysis, 9)
    ends, deflated = stream[:2] + stream[-4:], stream[2:-4]
    sizes = (zlib.crc32(analysis), len(deflated), len(analysis), len(name))
    entry = struct.pack("<IHHHHHIIIHH", 0x04034B50, 1, 0, 8, 0, 0, *sizes, len(ends)) + name + ends + deflated
    directory = struct.pack("<IHHHHIIIIHHHHHII", 0x02014B50, 1, 1, 0, 8, 0, *sizes, 0, 0, 0, 0, 0, 0) + name
    return entry + directory + struct.pack("<IHHHHIIH", 0x06054B50, 0, 0, 1, 1, len(directory), len(entry), 0)


NAME, AXIS, AXIS_UNIT = "S235 2 mm, 90\N{DEGREE SIGN}", "Time", Unit("ms", factor=2)


def bend(samples=600):
    """The groups of a simulated bend: down, press, hold, up."""
    def way(i):
        return min(1.0, i / 300) if i < 450 else (samples - 1 - i) / (samples - 1 - 450)
    y = [round(120 - 24.5 * math.sin(way(i) * math.pi / 2), 3) for i in range(samples)]
    force = [round(max(0.0, 102 - value) * 65, 1) for value in y]
    beam = Variable("Y", "Beam", "Float", y, Unit("mm", decimals=3))
    press = Variable("F", "Force", "Short", force, Unit("kN", factor=0.1, decimals=1))
    oil = Variable("T", "Oil", "UShort", [42.5 + i // 60 / 10 for i in range(samples)],
                   Unit("\N{DEGREE SIGN}C", offset=-400, factor=0.1, decimals=1), level=1)
    down = Variable("Down", "Pedal down", "Binary", [int(20 <= i < 440) for i in range(samples)])
    valve = Variable("Valve", "Press valve", "Binary", [int(value > 0) for value in force])
    return [Group("Position", [beam], {"SizeRatio": 2, "Expanded": "true"}, {"Pinch point": 102}),
            Group("Force", [press], {"SizeRatio": 1, "Expanded": "true"}, {"Limit 450 kN": 4500}),
            Group("Inputs & outputs", [down, valve], {"Expanded": "true", "SeparateSets": "true"}, {}),
            Group("Service", [oil], {}, {})]


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    analysis = document(NAME, AXIS, AXIS_UNIT, bend())
    (folder / "press.xml").write_bytes(analysis)
    (folder / "press01.paf").write_bytes(container(analysis))


if __name__ == "__main__":
    main()

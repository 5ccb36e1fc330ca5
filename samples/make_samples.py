#!/usr/bin/env python3
"""Makes the sample recordings of a simulated press brake.

    make_samples.py                                   bend01.paf ... bend06.paf and bend.xml beside this file
    make_samples.py --rows N --signals M [--output F] one large recording of stroke after stroke (big.xml)

Every run writes the same bytes.
"""
import argparse
import math
import random
import struct
import zlib
from dataclasses import dataclass, field
from pathlib import Path
from xml.sax.saxutils import quoteattr


@dataclass(frozen=True)
class Bend:
    """One bend: the tool opening Y is in mm (0 = punch on the die), speeds in mm/s, forces in kN, times in s."""
    title: str
    seed: int
    thickness: float
    bottom: float            # Y of the bottom dead centre
    force: float             # largest air bending force
    springback: float        # mm that the beam rises until the sheet lets go
    top: float = 230.0
    tools: float = 100.0     # Y at which punch and die would touch
    mute: float = 8.0        # mm above the sheet where the slow speed begins
    rapid: float = 200.0
    pressing: float = 10.0
    returning: float = 180.0
    hold: float = 0.4
    load_share: float = 0.52  # part of the force on side 1
    abort_at: float | None = None  # Y at which the operator lets the pedal go
    scale_noise: float = 0.0008    # mm, of the scale on side 2
    step_ms: int = 1
    tail: float = 0.3
    ratios: dict = field(default_factory=dict)
    without: tuple = ()

    @property
    def pinch(self):
        return self.tools + self.thickness


BENDS = [
    Bend("S235 2.0 mm, 90 deg, V16", 101, 2.0, 95.2, 640, 0.45),
    Bend("S235 4.0 mm, 135 deg, V32", 102, 4.0, 99.1, 980, 0.60, top=260, rapid=180, pressing=8, hold=0.6,
         load_share=0.48, step_ms=2, ratios={"Position": 4}),
    Bend("1.4301 1.0 mm, 90 deg, V8", 103, 1.0, 98.4, 420, 0.70, top=160, pressing=12, hold=0.8,
         ratios={"Speed": 1, "Pressure": 3}, without=("Service",)),
    Bend("S355 3.0 mm, 90 deg, V24, scale Y2 disturbed", 104, 3.0, 93.6, 870, 0.55, scale_noise=0.02, step_ms=1,
         ratios={"Position error": 4}),
    Bend("S235 6.0 mm, 90 deg, V50, stroke aborted", 105, 6.0, 86.0, 1450, 0.8, top=280, rapid=170, pressing=9,
         load_share=0.55, abort_at=98.5, step_ms=2),
    Bend("AlMg3 1.5 mm, 60 deg, V12, long hold", 106, 1.5, 94.0, 310, 0.35, top=210, pressing=6,
         returning=150, hold=1.5, load_share=0.5, tail=0.8, ratios={"Position": 2, "Valve outputs": 2}),
]

# Name, description, type, unit (name, offset, factor, decimals), access code, colour ("" = automatic), text format
VARIABLES = [
    ("Y1Position", "Y1", "Float", ("mm", 0, 1, 3), 0, "", "%f"),
    ("Y2Position", "Y2", "Float", ("mm", 0, 1, 3), 0, "", "%f"),
    ("YSetpoint", "Setpoint", "Float", ("mm", 0, 1, 3), 0, "#A0A0A0", "%f"),
    ("Y1Speed", "Speed Y1", "Short", ("mm/s", 0, 0.1, 1), 0, "", "%d"),
    ("Y2Speed", "Speed Y2", "Short", ("mm/s", 0, 0.1, 1), 0, "", "%d"),
    ("YSpeedSetpoint", "Speed setp.", "Short", ("mm/s", 0, 0.1, 1), 1, "#A0A0A0", "%d"),
    ("P1Pressure", "P1", "UShort", ("bar", 0, 0.1, 1), 0, "", "%d"),
    ("P2Pressure", "P2", "UShort", ("bar", 0, 0.1, 1), 0, "", "%d"),
    ("BeamForce", "Force", "Float", ("kN", 0, 1, 1), 0, "#1772F8", "%f"),
    ("Y1Error", "Error Y1", "Long", ("\u00b5m", 0, 1, 0), 0, "", "%d"),
    ("Y2Error", "Error Y2", "Long", ("\u00b5m", 0, 1, 0), 0, "", "%d"),
    ("Parallelism", "Y1 - Y2", "Long", ("\u00b5m", 0, 1, 0), 1, "", "%d"),
    ("Y1Encoder", "Encoder 1", "ULong", ("inc", 0, 1, 0), 3, "", "%d"),
    ("Y2Encoder", "Encoder 2", "ULong", ("inc", 0, 1, 0), 3, "", "%d"),
    ("Y1Valve", "Valve Y1", "Short", ("%", 0, 0.1, 1), 0, "", "%d"),
    ("Y2Valve", "Valve Y2", "Short", ("%", 0, 0.1, 1), 0, "", "%d"),
    ("PressureValve", "Pressure valve", "Short", ("%", 0, 0.1, 1), 1, "", "%d"),
    ("OilTemperature", "Oil temp.", "UShort", ("\u00b0C", -2731.5, 0.1, 1), 0, "", "%d"),
    ("MoveStep", "Step", "UByte", ("", 0, 1, 0), 0, "#00FFFF", "%d"),
    ("CpuLoad", "CPU load", "Byte", ("%", 0, 1, 0), 2, "", "%d"),
    ("PedalDown", "Pedal down", "Binary", None, 0, "", "%d"),
    ("PedalUp", "Pedal up", "Binary", None, 0, "", "%d"),
    ("SafetyValve", "Safety valve", "Binary", None, 0, "", "%d"),
    ("FastValve", "Fast valve", "Binary", None, 0, "", "%d"),
    ("PressValve", "Press valve", "Binary", None, 0, "", "%d"),
    ("Mute", "Mute", "Binary", None, 0, "#4488AA", "%d"),
    ("GuardClear", "Guard clear", "Binary", None, 1, "", "%d"),
    ("PositionReached", "In position", "Binary", None, 2, "", "%d"),
    ("MoveDown", "Down", "Binary", None, 0, "#00AA00", "%d"),
    ("MoveUp", "Up", "Binary", None, 0, "#AA00AA", "%d"),
]

GRAPH_ONLY = {"DisplayConsole": "false"}
CONSOLE_ONLY = {"DisplayGraph": "false"}
NOT_SCALED = {"IgnoreForVerticalAutoScaling": "true"}
EXPANDED = {"Expanded": "true"}

# Name, size ratio, attributes, lines (variable or variable with attributes)
GROUPS = [
    ("Position", 3, EXPANDED, [("YSetpoint", GRAPH_ONLY), "Y1Position", "Y2Position"]),
    ("Speed", 2, {**EXPANDED, "Orientation": "Inverted"},
     [("YSpeedSetpoint", GRAPH_ONLY), "Y1Speed", "Y2Speed"]),
    ("Pressure", 2, EXPANDED, ["P1Pressure", "P2Pressure", "BeamForce"]),
    ("Position error", 2, EXPANDED, ["Y1Error", "Y2Error", ("Parallelism", NOT_SCALED)]),
    ("Valve outputs", 1, {}, ["Y1Valve", "Y2Valve", "PressureValve"]),
    ("Inputs and outputs", 1, {**EXPANDED, "SeparateSets": "true"},
     ["PedalDown", "PedalUp", "SafetyValve", "FastValve", "PressValve", "Mute", "GuardClear", "PositionReached"]),
    ("Direction", 1, EXPANDED, ["MoveDown", "MoveUp"]),
    ("Service", 2, {**EXPANDED, "SeparateSets": "true"},
     ["MoveStep", "CpuLoad", "Y1Encoder", ("Y2Encoder", GRAPH_ONLY), ("OilTemperature", CONSOLE_ONLY)]),
]


def reference_lines(bend):
    """Group name -> (name, raw value, attributes)."""
    shown = {"IgnoreForVerticalAutoScaling": "false"}
    return {
        "Position": [("Mute point", bend.pinch + bend.mute, {}), ("Pinch point", bend.pinch, {})],
        "Pressure": [("Pressure limit", 2900, {})],
        "Position error": [("Limit +", 450, shown), ("Limit -", -450, shown)],
    }


IDLE, RAPID, PRESSING, HOLD, DECOMPRESSION, RETURN, END = range(7)


class Sheet:
    """Force of the sheet against the punch, loading and unloading."""

    def __init__(self, bend):
        self.bend = bend
        self.deepest = 0.0
        self.peak = 0.0
        self.held = 0.0

    def force(self, y, holding, dt):
        depth = self.bend.pinch - y
        if depth <= 0:
            return 0.0
        if holding:
            self.held += dt
        whole = self.bend.pinch - self.bend.bottom
        loading = self.bend.force * (1 - math.exp(-depth / 0.4)) * (1 - 0.14 * depth / whole)
        if depth >= self.deepest:
            self.deepest, self.peak = depth, loading
        relaxed = self.peak * (1 - 0.04 * (1 - math.exp(-self.held / 0.25)))
        released = relaxed * (1 - (self.deepest - depth) / self.bend.springback)
        return max(0.0, min(loading, released))


class Side:
    """One cylinder with its position loop. Speeds are positive when closing."""

    def __init__(self, y, feed_forward, lag):
        self.y = y
        self.speed = 0.0
        self.output = 0.0
        self.pressure = 5.0
        self.feed_forward = feed_forward
        self.lag = lag

    def move(self, y_command, v_command, seen_error, load_rate, dt):
        self.output = self.feed_forward * v_command + 22.0 * (self.y + seen_error - y_command)
        self.speed += (self.output - self.speed) * dt / self.lag
        self.y -= (self.speed - load_rate) * dt


class Stroke:
    """The movement controller: which step it is in and what speed it asks for."""

    def __init__(self, bend):
        self.bend = bend
        self.step = IDLE
        self.since = 0.0
        self.y = bend.top
        self.v = 0.0
        self.aborted = False
        self.turn = bend.bottom

    def enter(self, step):
        self.step, self.since = step, 0.0

    def target_speed(self):
        b, y = self.bend, self.y
        mute = b.pinch + b.mute
        if self.step == RAPID:
            return min(b.rapid, math.sqrt(b.pressing ** 2 + 2 * 800 * max(0.0, y - mute)))
        if self.step == PRESSING:
            return min(b.pressing, math.sqrt(2 * 120 * max(0.0, y - b.bottom)) + 0.15)
        if self.step == DECOMPRESSION:
            return -6.0
        if self.step == RETURN:
            return -min(b.returning, math.sqrt(2 * 800 * max(0.0, b.top - y)) + 0.5)
        return 0.0

    def advance(self, dt):
        b = self.bend
        self.since += dt
        change = self.target_speed() - self.v
        limit = (1100 if self.step in (RAPID, RETURN) else 350) * dt
        self.v += max(-limit, min(limit, change))
        self.y -= self.v * dt
        if self.step == IDLE and self.since > 0.25:
            self.enter(RAPID)
        elif self.step == RAPID and self.y <= b.pinch + b.mute:
            self.enter(PRESSING)
        elif self.step == PRESSING and b.abort_at is not None and self.y <= b.abort_at:
            self.aborted, self.turn = True, self.y
            self.enter(HOLD)
        elif self.step == PRESSING and self.y <= b.bottom + 0.002:
            self.enter(HOLD)
        elif self.step == HOLD and self.since > (0.9 if self.aborted else b.hold):
            self.turn = self.y
            self.enter(DECOMPRESSION)
        elif self.step == DECOMPRESSION and self.y >= self.turn + 1.4 * b.springback:
            self.enter(RETURN)
        elif self.step == RETURN and self.y >= b.top - 0.01:
            self.v = 0.0
            self.enter(END)


def simulate(bend):
    """The samples of one stroke: variable name -> list of raw values."""
    rng = random.Random(bend.seed)
    noise = rng.gauss
    columns = {name: [] for name, *_ in VARIABLES}
    record = [(columns[name].append, name) for name in columns]
    dt = bend.step_ms / 1000
    stroke, sheet = Stroke(bend), Sheet(bend)
    sides = [Side(bend.top + 0.004, 0.978, 0.008), Side(bend.top - 0.003, 0.972, 0.009)]
    shares = (bend.load_share, 1 - bend.load_share)
    time, force, spike = 0.0, 0.0, 0.0
    while stroke.step != END or stroke.since < bend.tail:
        stroke.advance(dt)
        time += dt
        step = stroke.step
        new_force = sheet.force((sides[0].y + sides[1].y) / 2, step == HOLD, dt)
        load_rate = (new_force - force) / dt * 1.2e-4
        force = new_force
        if bend.scale_noise > 0.005 and rng.random() < 0.004:
            spike = noise(0, 0.25)
        spike *= 0.8
        seen = (noise(0, 0.0006), noise(0, bend.scale_noise) + spike)
        base = {IDLE: 6, RAPID: 9, PRESSING: 28, HOLD: 26, DECOMPRESSION: 12, RETURN: 18, END: 6}[step]
        ripple = 0.7 * math.sin(2 * math.pi * 61 * time) if step in (PRESSING, HOLD, RETURN) else 0.1
        for side, share, error in zip(sides, shares, seen):
            side.move(stroke.y, stroke.v, error, load_rate * share * 2, dt)
            side.pressure += (base + force * share * 0.33 - side.pressure) * min(1.0, dt / 0.02)
        slow = step in (PRESSING, HOLD, DECOMPRESSION)
        gain = 40 if slow else 4.1
        y1, y2 = (side.y + error for side, error in zip(sides, seen))
        pedal = step in (RAPID, PRESSING, HOLD) and not stroke.aborted or step == IDLE and stroke.since > 0.19
        moving = step not in (IDLE, END)
        values = {
            "Y1Position": y1, "Y2Position": y2, "YSetpoint": stroke.y,
            "Y1Speed": sides[0].speed * 10 + noise(0, 1.2),
            "Y2Speed": sides[1].speed * 10 + noise(0, 1.2 + 400 * max(0.0, bend.scale_noise - 0.001)),
            "YSpeedSetpoint": stroke.v * 10,
            "P1Pressure": max(0, sides[0].pressure * 10 + 10 * ripple + noise(0, 2)),
            "P2Pressure": max(0, sides[1].pressure * 10 - 8 * ripple + noise(0, 2)),
            "BeamForce": force + noise(0, 0.6),
            "Y1Error": (y1 - stroke.y) * 1000, "Y2Error": (y2 - stroke.y) * 1000, "Parallelism": (y1 - y2) * 1000,
            "Y1Encoder": y1 * 10000, "Y2Encoder": y2 * 10000,
            "Y1Valve": clamp(sides[0].output * gain + noise(0, 1), 1000),
            "Y2Valve": clamp(sides[1].output * gain + noise(0, 1), 1000),
            "PressureValve": {IDLE: 0, END: 0, RAPID: 80, RETURN: 420}.get(step, 250) + force * 0.35,
            "OilTemperature": 3178 + 4 * time / 5 + noise(0, 0.4),
            "MoveStep": step,
            "CpuLoad": clamp((34 if moving else 21) + noise(0, 2), 100),
            "PedalDown": pedal, "PedalUp": step in (DECOMPRESSION, RETURN) and stroke.aborted,
            "SafetyValve": moving, "FastValve": step == RAPID, "PressValve": step in (PRESSING, HOLD),
            "Mute": slow, "GuardClear": not (slow and stroke.bend.pinch - stroke.y > 0.5),
            "PositionReached": step == HOLD and not stroke.aborted and abs(y1 - bend.bottom) < 0.02,
            "MoveDown": sides[0].speed > 0.6, "MoveUp": sides[0].speed < -0.6,
        }
        for append, name in record:
            append(values[name])
    return columns


def clamp(value, limit):
    return max(-limit, min(limit, value))


def format_rows(columns, formats):
    """One line of text for each sample, without line ends."""
    texts = []
    for name, text_format in formats:
        if text_format == "%d":
            texts.append([str(round(value)) for value in columns[name]])
        else:
            texts.append([text_format % value for value in columns[name]])
    return [",".join(fields) for fields in zip(*texts)]


def attributes(**values):
    return "".join(f" {name}={quoteattr(str(value))}" for name, value in values.items())


def unit_element(unit, indent):
    name, offset, factor, decimals = unit
    return f"{indent}<Unit{attributes(Name=name, UnitOffset=offset, UnitFactor=factor, Precision=decimals)}/>"


def head(title, step_ms, variables, groups, lines):
    """The document up to and including <Data>: a line feed after it would be a first, empty row."""
    out = ['<?xml version="1.0" encoding="UTF-8"?>', f"<Analysis{attributes(Name=title)}>", "  <DataDefinition>",
           '    <IndexSet Name="Time">', unit_element(("ms", 0, step_ms, 0), "      "), "    </IndexSet>",
           "    <VariablesDefinitions>"]
    for name, description, kind, unit, code, color, _ in variables:
        given = {"Name": name, "Type": kind, "Description": description}
        given |= {"Code": code} if code else {}
        given |= {"Color": color} if color else {}
        start = f"      <TypedData{attributes(**given)}"
        out += [start + "/>"] if unit is None else [start + ">", unit_element(unit, "        "), "      </TypedData>"]
    out += ["    </VariablesDefinitions>", "  </DataDefinition>", "  <Groups>"]
    known = {variable[0] for variable in variables}
    for name, ratio, given, members in groups:
        members = [member if isinstance(member, tuple) else (member, {}) for member in members]
        members = [member for member in members if member[0] in known]
        if not members:
            continue
        out.append(f"    <Group{attributes(Name=name, SizeRatio=ratio, **given)}>")
        # What is drawn later lies on top: reference lines and setpoints come first.
        out += [f"      <RefLine{attributes(Name=label, Value=f'{value:g}', **more)}/>"
                for label, value, more in lines.get(name, [])]
        out += [f"      <Line{attributes(DataName=member, **more)}/>" for member, more in members]
        out.append("    </Group>")
    out += ["  </Groups>", "  <Data>"]
    return "\n".join(out)


TAIL = "\n</Data>\n</Analysis>\n"


def document(bend):
    groups = [(name, bend.ratios.get(name, ratio), given, members)
              for name, ratio, given, members in GROUPS if name not in bend.without]
    rows = format_rows(simulate(bend), [(variable[0], variable[6]) for variable in VARIABLES])
    return (head(bend.title, bend.step_ms, VARIABLES, groups, reference_lines(bend)) + "\n".join(rows) + TAIL).encode()


def container(data, name=b"tmpandat.bin"):
    """An archive with one entry. Its extra field carries the ends of the zlib stream that the entry lacks."""
    stream = zlib.compress(data, 9)
    ends, deflated = stream[:2] + stream[-4:], stream[2:-4]
    crc = zlib.crc32(data)
    local = struct.pack("<IHHHHHIIIHH", 0x04034B50, 1, 0, 8, 0, 0, crc, len(deflated), len(data), len(name), len(ends))
    entry = local + name + ends + deflated
    central = struct.pack("<IHHHHIIIIHHHHHII", 0x02014B50, 1, 1, 0, 8, 0, crc, len(deflated), len(data), len(name),
                          0, 0, 0, 0, 0, 0) + name
    return entry + central + struct.pack("<IHHHHIIH", 0x06054B50, 0, 0, 1, 1, len(central), len(entry), 0)


def write_large(path, rows, signals):
    """Stroke after stroke out of twelve different ones, in random order, until there are enough rows."""
    rng = random.Random(7)
    spare = [(f"Spare{i}", f"Spare {i}", "Float", ("V", 0, 1, 3), 0, "", "%f")
             for i in range(1, max(0, signals - len(VARIABLES)) + 1)]
    variables = (VARIABLES + spare)[:signals]
    groups = GROUPS + [("Spare channels", 2, EXPANDED, [variable[0] for variable in spare])]
    strokes = []
    for i in range(12):
        bend = Bend("", 1000 + i, 2.0, 95.2 - 0.1 * i, 640 + 7 * i, 0.45, hold=0.3 + 0.05 * i)
        columns = simulate(bend)
        count = len(columns["Y1Position"])
        for name, *_ in spare:
            columns[name] = [rng.gauss(5, 0.4) for _ in range(count)]
        strokes.append(format_rows(columns, [(variable[0], variable[6]) for variable in variables]))
    texts = ["\n".join(stroke) for stroke in strokes]
    with open(path, "w", encoding="utf-8", newline="\n") as out:
        out.write(head(f"Endurance run, {rows} samples", 1, variables, groups, reference_lines(BENDS[0])))
        left = rows
        while left > 0:
            choice = rng.randrange(len(strokes))
            count = len(strokes[choice])
            out.write(texts[choice] if count <= left else "\n".join(strokes[choice][:left]))
            left -= count
            if left > 0:
                out.write("\n")
        out.write(TAIL)


def main():
    here = Path(__file__).resolve().parent
    parser = argparse.ArgumentParser(description="Makes the sample recordings.")
    parser.add_argument("--rows", type=int, help="make one large recording of this many samples instead")
    parser.add_argument("--signals", type=int, default=16, help="signals of the large recording (default 16)")
    parser.add_argument("--output", type=Path, default=here / "big.xml", help="its file (default samples/big.xml)")
    given = parser.parse_args()
    if given.rows is not None:
        if given.rows < 1 or given.signals < 1:
            parser.error("--rows and --signals must be at least 1")
        write_large(given.output, given.rows, given.signals)
        return
    documents = [document(bend) for bend in BENDS]
    for number, data in enumerate(documents, 1):
        (here / f"bend{number:02}.paf").write_bytes(container(data))
    (here / "bend.xml").write_bytes(documents[1])


if __name__ == "__main__":
    main()

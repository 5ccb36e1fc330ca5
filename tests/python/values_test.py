"""Signals and tables of the Python module, value by value against the tool."""
import gc
import json
import unittest
import warnings
import weakref
from unittest import mock

import numpy
import pandas
from testing import CODES, SAMPLES, Folder, document, made, options, small, start_tool

import tracelyn

DTYPES = {"Float": "float32", "Short": "int16", "UShort": "uint16", "Long": "int32", "ULong": "uint32",
          "Byte": "uint8", "UByte": "uint8", "Binary": "uint8"}


def printed(values, precision):
    """As the CSV file has 32-bit numbers, one a line."""
    numbers = tuple(numpy.asarray(values, dtype="float32").astype("float64"))
    return f"%.{precision}f\n" * len(numbers) % numbers


def lines_of(column):
    return "".join(f"{text}\n" for text in column)


class AgainstTheTool(Folder):
    def compare(self, path, code=None):
        out = self.folder / "out.csv"
        running = [start_tool("info", *options(code), path), start_tool("csv", *options(code), path, out)]
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            recording = tracelyn.read(path, code)
        info, _ = [json.loads(process.communicate()[0] or "null") for process in running]
        self.assertEqual((recording.name, recording.problems),
                         (info["name"], [result["text"].strip() for result in info["results"]]))
        listed = [(group, one) for group in info["groups"] for one in group["sets"]]
        axis = next(one for _, one in listed if one["kind"] == "index")
        index = recording.index
        self.assertEqual((index.name, index.unit, index.precision), (axis["name"], axis["unit"], axis["precision"]))
        expected = [(one["name"], group["name"], one["unit"], one["precision"], one["kind"] == "binary", one["count"],
                     group["displayType"] != 0 and one["displayType"] != 0,
                     "#" + "".join(reversed([one["color"][at:at + 2] for at in (2, 4, 6)])).lower())
                    for group, one in listed if one["kind"] in ("typed", "binary")]
        signals = list(recording.signals.values())
        self.assertEqual([(one.name, one.group, one.unit, one.precision, one.is_binary, len(one), one.is_shown,
                           one.color) for one in signals], expected)

        lines, (axis_column, *columns) = self.columns_of(out)
        self.assertEqual([f"{line.value:.6f}" for group in recording.groups for line in group.reference_lines], lines)
        if columns:  # without, the tool writes the first sample of the axis
            self.assertEqual(printed(index.values, index.precision), lines_of(axis_column))
        table = recording.to_pandas()
        self.assertEqual(len(columns), len(signals))
        for position, (signal, column) in enumerate(zip(signals, columns)):
            scaled = signal.scaled
            self.assertEqual(printed(scaled, signal.precision), lines_of(column[:len(scaled)]), signal)
            numpy.testing.assert_array_equal(table.iloc[:, position].to_numpy(), scaled)
            with numpy.errstate(all="ignore"):
                by_hand = ((signal.values.astype("float64") + signal.unit_offset) * signal.unit_factor).astype("float32")
            numpy.testing.assert_array_equal(scaled, by_hand)
        self.assertEqual(list(table.columns), list(recording.signals))
        numpy.testing.assert_array_equal(table.index.to_numpy(), index.values)
        self.assertEqual((table.index.name, table.attrs["index_unit"]), (index.name, index.unit))
        self.assertEqual(table.attrs["units"], {key: one.unit for key, one in recording.signals.items()})

    def test_every_sample_with_every_code(self):
        self.assertGreater(len(SAMPLES), 5)
        for path in SAMPLES:
            for code in CODES:
                with self.subTest(path.name, code=code):
                    self.compare(path, code)

    def test_a_hundred_made_files(self):
        for seed in range(100):
            with self.subTest(seed=seed):
                self.compare(self.put(made(seed)), CODES[seed % 4])

    def test_types(self):
        variables = [f'<TypedData Name="{kind}" Type="{kind}"/>' for kind in DTYPES]
        lines = [f'<Line DataName="{kind}"/>' for kind in DTYPES]
        recording = tracelyn.read(self.put(document(variables, [f'<Group Name="g">{"".join(lines)}</Group>'],
                                                    [",".join(["-1"] * 8), ",".join(["300"] * 8)])))
        values = [signal.values for signal in recording.signals.values()]
        self.assertEqual([str(array.dtype) for array in values], list(DTYPES.values()))
        self.assertEqual([array.tolist() for array in values],
                         [[-1, 300], [-1, 300], [65535, 300], [-1, 300], [2**32 - 1, 300], [255, 44], [255, 44],
                          [255, 44]])

    def test_a_table_longer_than_what_a_thread_takes_at_a_time(self):
        rows = numpy.random.default_rng(1).integers(0, 2**16, 150_001)
        recording = tracelyn.read(self.put(small(rows)))
        numpy.testing.assert_array_equal(recording.to_pandas()["Force"].to_numpy(), rows)
        numpy.testing.assert_array_equal(recording.signals[0].scaled, rows)


class Values(Folder):
    def test_are_the_samples_themselves_and_outlive_the_recording(self):
        recording = tracelyn.read(self.put(small(range(1000))))
        signal = recording.signals["Force"]
        values = signal.values
        self.assertTrue(numpy.shares_memory(values, signal.values))
        watch = weakref.ref(recording)
        del recording, signal
        gc.collect()
        self.assertIsNone(watch())
        self.assertEqual(values.sum(), 499500)

    def test_cannot_be_written(self):
        values = tracelyn.read(self.put(small())).signals[0].values
        with self.assertRaises(ValueError):
            values[0] = 7
        with self.assertRaises(ValueError):
            values.flags.writeable = True


class Names(Folder):
    def test_each_signal_is_found_by_key_name_pair_and_position(self):
        variables = [f'<TypedData Name="{i}" Type="Long" Description="{name}"/>'
                     for i, name in enumerate(("A", "B", "B", "g: B", "B"))]
        groups = ['<Group Name="g"><Line DataName="0"/><Line DataName="1"/><Line DataName="3"/></Group>',
                  '<Group Name="h"><Line DataName="2"/><Line DataName="4"/></Group>']
        recording = tracelyn.read(self.put(document(variables, groups, ["10,11,12,13,14"])))
        signals = recording.signals
        firsts = {key: int(signal.values[0]) for key, signal in signals.items()}
        self.assertEqual(firsts, {"A": 10, "g: B (2)": 11, "g: B": 13, "h: B": 12, "h: B (2)": 14})
        self.assertEqual(recording.to_pandas().iloc[0].to_dict(), firsts)
        for which, value in (("A", 10), ("B", 11), (("h", "B"), 12), ("h: B (2)", 14), (3, 12), (-1, 14),
                             (numpy.int64(1), 11)):
            self.assertEqual(signals[which].values[0], value, which)
        self.assertEqual([which in signals for which in ("A", "B", ("g", "A"), "C", ("h", "A"), 1.5, [])],
                         [True, True, True, False, False, False, False])
        for which, error in (("C", KeyError), (("h", "A"), KeyError), (5, IndexError), (1.5, TypeError),
                             (None, TypeError), (True, TypeError)):
            with self.assertRaises(error, msg=which):
                signals[which]
        self.assertEqual([[one.name for one in group.signals] for group in recording.groups],
                         [["A", "B", "g: B"], ["B", "B"]])

    def test_pandas_is_imported_by_tables_alone(self):
        recording = tracelyn.read(self.put(small()))
        with mock.patch.dict("sys.modules", pandas=None):
            self.assertEqual(recording.signals[0].scaled.tolist(), [1, 2, 3])
            with self.assertRaises(ImportError):
                recording.to_pandas()
        self.assertIsInstance(recording.to_pandas(), pandas.DataFrame)


if __name__ == "__main__":
    unittest.main()

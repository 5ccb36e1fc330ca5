"""The lines of docs/python.md, run as they are written. What stands behind "# ->" is what the line gives."""
import ast
import os
import re
import shutil
import sys
import warnings

from testing import ROOT, Folder

import tracelyn

PAGE = (ROOT / "docs/python.md").read_text(encoding="utf-8")


class ThePage(Folder):
    def test_its_lines_do_what_it_says(self):
        blocks = re.findall(r"```python\n(.*?)```", PAGE, re.DOTALL)
        shutil.copytree(ROOT / "samples", self.folder / "samples")
        before = os.getcwd()
        os.chdir(self.folder)
        self.addCleanup(os.chdir, before)
        self.names, self.checked, self.left_out = {}, 0, []
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", tracelyn.RecordingWarning)
            for block in blocks:
                for statement in ast.parse(block).body:
                    self.run_statement(statement, "\n".join(block.splitlines()[statement.lineno - 1:statement.end_lineno]))
        self.assertGreater(self.checked, 20)
        self.assertLess(len(self.left_out), 4)
        files = {path.name for path in self.folder.iterdir()}
        self.assertLessEqual({"bend01.csv", "bend01.png"}, files)

    def run_statement(self, statement, text):
        try:
            if isinstance(statement, ast.Expr):
                result = eval(compile(ast.Expression(statement.value), text, "eval"), self.names)
                if expected := re.search(r"# -> (.*)", text):
                    self.assertEqual(repr(result), expected[1], text)
                    self.checked += 1
            else:
                exec(compile(ast.Module([statement], []), text, "exec"), self.names)
        except ImportError as error:
            # Only the formats for which pandas wants another package may be left out.
            self.assertRegex(text, r"^table\.to_(parquet|hdf|excel)\(.*# needs ")
            self.left_out.append(text)
            print(f"left out: {text} ({str(error).splitlines()[0]})", file=sys.stderr)


if __name__ == "__main__":
    import unittest
    unittest.main()

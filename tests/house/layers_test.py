"""Shows that the check of the floors catches what it is there to catch, on small made-up houses."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[2] / "tools" / "check-layers"
TABLE = "low:       # below\nmid/inner: low\nmid: low mid/inner\nplatform: low mid\ntesting: low\n"


class LayersTest(unittest.TestCase):
    def check(self, files: dict[str, str], table: str = TABLE) -> tuple[int, str]:
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {"layers.txt": table, **files}.items():
                path = Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.write_text(text)
            done = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
            return done.returncode, done.stdout

    def test_includes_of_own_and_named_floors_pass(self):
        code, said = self.check({
            "mid/A.cpp": '#include "mid/A.h"\n#include "low/B.h"\n#include <vector>\n',
            "mid/A.h": '#include "mid/inner/C.h"\n',
        })
        self.assertEqual(code, 0, said)

    def test_include_of_a_higher_floor_fails_and_names_both_files(self):
        code, said = self.check({"low/B.cpp": '#include "low/B.h"\n#include "mid/A.h"\n'})
        self.assertEqual(code, 1)
        self.assertIn("low/B.cpp:2", said)
        self.assertIn("mid/A.h", said)

    def test_inner_folder_has_its_own_line(self):
        code, said = self.check({"mid/inner/C.cpp": '#include "mid/A.h"\n'})
        self.assertEqual(code, 1, said)

    def test_only_tests_and_their_helpers_may_include_the_testing_floor(self):
        for helper in ("low/BTest.cpp", "low/BForTests.h", "low/BFixture.h"):
            self.assertEqual(self.check({helper: '#include "testing/Seed.h"\n'})[0], 0, helper)
        self.assertEqual(self.check({"low/B.cpp": '#include "testing/Seed.h"\n'})[0], 1)

    def test_test_may_not_reach_a_higher_floor_either(self):
        self.assertEqual(self.check({"low/BTest.cpp": '#include "mid/A.h"\n'})[0], 1)

    def test_excused_include_passes_and_is_counted(self):
        code, said = self.check({"low/B.cpp": '#include "mid/A.h"  // layer-exception: shown here\n'})
        self.assertEqual(code, 0)
        self.assertIn("1 exceptions", said)

    def test_qt_is_refused_below_platform_and_allowed_from_there(self):
        for header in ("<QImage>", "<QtGui/QImage>", "<qglobal.h>"):
            self.assertEqual(self.check({"mid/A.cpp": f"#include {header}\n"})[0], 1, header)
            self.assertEqual(self.check({"platform/P.cpp": f"#include {header}\n"})[0], 0, header)

    def test_file_outside_every_floor_fails(self):
        self.assertEqual(self.check({"stray/X.cpp": "#include <vector>\n"})[0], 1)

    def test_table_that_goes_in_a_circle_fails(self):
        code, said = self.check({}, table="a: b\nb: a\n")
        self.assertEqual(code, 1)
        self.assertIn("'a' names 'b'", said)


if __name__ == "__main__":
    unittest.main()

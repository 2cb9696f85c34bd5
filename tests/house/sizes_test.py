"""Shows that the check of sizes measures what it says, on small made-up sources."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[2] / "tools" / "check-sizes"


def function(lines: int) -> str:
    return "namespace a {\nint f(int x) {\n" + "    x = '{';  // {\n" * lines + "}\n}\n"


class SizesTest(unittest.TestCase):
    def check(self, name: str, text: str) -> tuple[int, str]:
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, name).write_text(text)
            done = subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True, check=False)
            return done.returncode, done.stdout

    def test_body_at_the_limit_passes_and_one_above_fails(self):
        self.assertEqual(self.check("a.cpp", function(80))[0], 0)
        code, said = self.check("a.cpp", function(81))
        self.assertEqual(code, 1)
        self.assertIn("a.cpp:2: a body of 81 lines", said)

    def test_constructor_with_initialisers_and_const_member_are_bodies(self):
        for head in ("C(int a) : a_{a}, b_(2) {", "int m() const {", "auto m() -> int {", "C& operator=(C&& c) noexcept {"):
            text = "class C {\n public:\n" + head + "\n" + "    ;\n" * 81 + "}\n int a_ = 0;\n};\n"
            self.assertEqual(self.check("a.cpp", text)[0], 1, head)

    def test_tables_and_classes_are_no_bodies(self):
        table = "constexpr std::array<int, 90> kTable{\n" + "    1,\n" * 90 + "};\n"
        lambda_free = "struct S {\n" + "    int a() const { return 1; }\n" * 90 + "};\n"
        code, said = self.check("a.cpp", table + lambda_free)
        self.assertEqual(code, 0, said)

    def test_long_files_fail_headers_sooner(self):
        lines = "int a;\n" * 301
        self.assertEqual(self.check("a.cpp", lines)[0], 0)
        self.assertEqual(self.check("a.h", lines)[0], 1)
        self.assertEqual(self.check("a.cpp", "int a;\n" * 601)[0], 1)


if __name__ == "__main__":
    unittest.main()

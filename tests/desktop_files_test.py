"""Shows that what is installed for the desktop is whole, valid and agrees with the program.

usage: desktop_files_test.py BUILD_FOLDER
"""

import configparser
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PACKAGING = ROOT / "packaging"
BUILD = Path(sys.argv.pop(1))
ID = "org.trimora.Trimora"

INSTALLED = {
    "bin/trimora",
    "bin/trimora-telemetry",
    f"share/applications/{ID}.desktop",
    "share/bash-completion/completions/trimora",
    "share/bash-completion/completions/trimora-telemetry",
    f"share/dbus-1/services/{ID}.service",
    "share/doc/trimora/changelog.gz",
    "share/doc/trimora/copyright",
    f"share/icons/hicolor/scalable/apps/{ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{ID}-symbolic.svg",
    "share/man/man1/trimora-cut.1.gz",
    "share/man/man1/trimora-info.1.gz",
    "share/man/man1/trimora-telemetry.1.gz",
    "share/man/man1/trimora.1.gz",
    f"share/metainfo/{ID}.metainfo.xml",
    "share/trimora/privacy.md",
}


def said_by(*command: object) -> str:
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{command[0]} ends with {done.returncode}: {done.stdout}")
    return done.stdout


# Completes the words that it is given, the last of them, as a person's shell would.
COMPLETE = """
. /usr/share/bash-completion/bash_completion
. "$1"
shift
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMP_LINE="$*" COMP_POINT=${#COMP_LINE}
read -r _ _ function _ < <(complete -p "$1")
"$function"
printf '%s\\n' "${COMPREPLY[@]}"
"""


def options_in(text: str) -> set[str]:
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", text))


def completed(*words: str) -> set[str]:
    return set(said_by("bash", "-c", COMPLETE, "bash", PACKAGING / "completions" / words[0], *words).split())


class DesktopFilesTest(unittest.TestCase):
    def setUp(self):
        self.launcher = configparser.ConfigParser(interpolation=None)
        self.launcher.optionxform = str
        self.launcher.read(PACKAGING / f"{ID}.desktop")
        self.metainfo = ElementTree.parse(PACKAGING / f"{ID}.metainfo.xml").getroot()

    def test_desktop_file_is_valid(self):
        self.assertEqual(said_by("desktop-file-validate", PACKAGING / f"{ID}.desktop"), "")

    def test_metainfo_is_valid_and_all_that_is_said_of_it_is_that_its_name_has_capitals(self):
        said = said_by("appstreamcli", "validate", "--pedantic", "--no-net", PACKAGING / f"{ID}.metainfo.xml")
        remarks = re.findall(r"(?m)^([A-Z]): \S+ (\S+)", said)
        self.assertEqual(remarks, [("P", "cid-contains-uppercase-letter")], said)

    def test_manual_pages_have_no_faults(self):
        for page in ("trimora", "trimora-cut", "trimora-info", "trimora-telemetry"):
            page = BUILD / "packaging" / "pages" / f"{page}.1"
            self.assertEqual(said_by("man", "--warnings", "-Z", "-l", page).count("warning:"), 0)

    def test_there_is_one_name_for_everything(self):
        header = (ROOT / "src/platform/ApplicationId.h").read_text()
        self.assertIn(f'kApplicationId = "{ID}"', header)
        self.assertEqual(self.metainfo.findtext("id"), ID)
        self.assertEqual(self.metainfo.findtext("launchable"), f"{ID}.desktop")
        self.assertEqual(self.metainfo.findtext("provides/dbus"), ID)
        self.assertEqual(self.launcher["Desktop Entry"]["Icon"], ID)
        self.assertIn(f"Name={ID}\n", (PACKAGING / f"{ID}.service.in").read_text())

    def test_launcher_and_metainfo_name_the_same_kinds_of_file(self):
        kinds = self.launcher["Desktop Entry"]["MimeType"].strip(";").split(";")
        self.assertEqual(kinds, [kind.text for kind in self.metainfo.findall("provides/mediatype")])

    def test_every_action_has_its_group(self):
        actions = self.launcher["Desktop Entry"]["Actions"].strip(";").split(";")
        self.assertEqual(actions, ["show", "new"])
        for action in actions:
            self.assertTrue(self.launcher[f"Desktop Action {action}"]["Exec"].startswith("trimora"))

    def test_help_manual_and_completion_know_the_same_options(self):
        pages = (("trimora", [("trimora",), ("trimora", "run")]), ("trimora-cut", [("trimora", "cut")]),
                 ("trimora-info", [("trimora", "info")]), ("trimora-telemetry", [("trimora-telemetry",)]))
        for page, commands in pages:
            told = set()
            for program, *subcommand in commands:
                options = options_in(said_by(BUILD / program, *subcommand, "--help"))
                self.assertEqual(completed(program, *subcommand, "--"), options, (program, *subcommand))
                told |= options
            manual = (PACKAGING / "man" / f"{page}.1.in").read_text().replace("\\-", "-")
            self.assertEqual(options_in(manual), told, page)

    def test_completion_knows_what_can_follow(self):
        self.assertLessEqual({"run", "cut", "info"}, completed("trimora", ""))
        self.assertEqual(completed("trimora", "cut", "--background", ""), {"none", "blur"})
        self.assertEqual(completed("trimora-telemetry", "e"), {"events"})
        with tempfile.TemporaryDirectory() as folder:
            for name in ("cat.jpg", "cat.jsonl", "cat.txt"):
                (Path(folder) / name).touch()
            (Path(folder) / "cats").mkdir()
            start = f"{folder}/c"
            for words, names in ((("trimora",), {"cat.jpg", "cats"}), (("trimora", "run"), {"cat.jsonl", "cats"}),
                                 (("trimora", "cut"), {"cat.jpg", "cats"}), (("trimora", "info"), {"cat.jpg", "cats"}),
                                 (("trimora", "cut", "--out-dir"), {"cats"}), (("trimora", "--demo"), {"cats"})):
                self.assertEqual(completed(*words, start), {f"{folder}/{name}" for name in names}, words)

    def test_release_is_the_newest_of_the_change_logs(self):
        version = re.search(r"project\(Trimora VERSION ([0-9.]+)", (ROOT / "CMakeLists.txt").read_text()).group(1)
        self.assertEqual(self.metainfo.find("releases/release").get("version"), version)
        self.assertTrue((PACKAGING / "debian/changelog").read_text().startswith(f"trimora ({version}) "))

    def test_licence_of_the_package_is_the_licence_of_the_house(self):
        def words(text):
            return [word for word in text.split() if word != "."]

        licence = words((ROOT / "LICENSE").read_text().split("\n\n", 2)[2])
        self.assertEqual(words((PACKAGING / "debian/copyright").read_text())[-len(licence):], licence)

    def test_installing_puts_everything_in_its_place_and_nothing_else(self):
        with tempfile.TemporaryDirectory() as prefix:
            said_by("cmake", "--install", BUILD, "--prefix", prefix)
            found = {path.relative_to(prefix).as_posix() for path in Path(prefix).rglob("*") if path.is_file()}
            self.assertEqual(found, INSTALLED)


if __name__ == "__main__":
    unittest.main()

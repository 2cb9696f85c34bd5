"""What the checks of this house have in common: where its sources are and how its floors are stacked."""

import re
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
LAYER_LINE = re.compile(r"^([a-z/]+):([^#]*)(?:#\s*(.*))?$")


@dataclass(frozen=True)
class Floor:
    """One line of the table of floors."""

    name: str
    below: tuple[str, ...]
    purpose: str


def read_floors(table: Path) -> dict[str, Floor]:
    """The floors in the order of the table, lowest first."""
    floors = {}
    for line in table.read_text().splitlines():
        match = LAYER_LINE.match(line)
        if match:
            name, below, purpose = match.group(1), match.group(2).split(), match.group(3) or ""
            floors[name] = Floor(name, tuple(below), purpose.strip())
    return floors


def sources(folder: Path) -> list[Path]:
    """Every C++ file below `folder`, in a fixed order."""
    return sorted(path for path in folder.rglob("*") if path.suffix in (".h", ".cpp"))


def is_for_tests(path: Path) -> bool:
    """Whether a source is a test, or a helper that only the tests of its floor include."""
    return path.stem.endswith(("Test", "ForTests", "Fixture"))


def floor_of(path: str, floors: dict[str, Floor]) -> str | None:
    """The floor of a path relative to src/: its longest leading folder that the table names."""
    parts = Path(path).parent.parts
    for length in range(len(parts), 0, -1):
        name = "/".join(parts[:length])
        if name in floors:
            return name
    return None

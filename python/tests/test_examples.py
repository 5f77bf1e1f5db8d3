"""The programs of examples/python run and draw."""

import os
import struct
import subprocess
import sys
from pathlib import Path

import moxwriter
import pytest

EXAMPLES = Path(os.environ.get("MOXWRITER_SOURCE", ".")) / "examples" / "python"


def test_the_plate_is_saved_read_and_drawn(tmp_path):
    pytest.importorskip("matplotlib")
    done = subprocess.run([sys.executable, str(EXAMPLES / "plate.py")], cwd=tmp_path, capture_output=True, text=True,
                          check=False)
    assert done.returncode == 0, done.stderr
    assert "2.75 times the tension" in done.stdout
    width, height = struct.unpack(">II", (tmp_path / "plate.png").read_bytes()[16:24])
    assert (width, height) == (560, 440)
    with moxwriter.open(tmp_path / "plate.mox") as file:
        assert file.steps == ["Load 1", "Load 2", "Load 3"]
        assert file["Assembly/Plate"]["Stress", "Load 3"].shape == (1728, 6)


def test_the_first_program_of_the_page_prints_what_the_page_says(tmp_path):
    page = (EXAMPLES.parents[1] / "docs" / "python.md").read_text(encoding="utf-8")
    program = page.split("```python\n")[1].split("```")[0]
    printed = page.split("$ python3 plate.py\n")[1].split("\n\n")[0]
    done = subprocess.run([sys.executable, "-c", program], cwd=tmp_path, capture_output=True, text=True, check=False)
    assert done.returncode == 0, done.stderr
    assert done.stdout.splitlines() == [line.removeprefix("    ") for line in printed.splitlines()]

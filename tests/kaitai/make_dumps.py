"""Makes the conformance set of the format with the dump of each file that the Python reader reads as a whole.

    make_dumps.py FOLDER
"""

import shutil
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
READER = ROOT / "reader" / "python" / "moxreader.py"


def main(folder):
    shutil.rmtree(folder, ignore_errors=True)
    subprocess.run([sys.executable, "-B", ROOT / "tests" / "conformance" / "make.py", folder], check=True,
                   stdout=subprocess.DEVNULL)
    read = 0
    for path in sorted(folder.glob("*.mox")):
        done = subprocess.run([sys.executable, "-B", READER, "--numbers", "--storage", path], capture_output=True,
                              check=False)
        if done.returncode == 0:
            path.with_suffix(".json").write_bytes(done.stdout)
            read += 1
        else:
            path.unlink()
    print(f"{read} files of the conformance set can be read as a whole")


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    main(Path(sys.argv[1]))

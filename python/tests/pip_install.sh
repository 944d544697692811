#!/usr/bin/env bash
# pip installs the package as a Python user does, into a fresh venv that sees the system's NumPy and
# pandas, with nothing downloaded; then `import steeldesign` works from another folder and is the
# installed one, and the module's tests pass against it. Usage: pip_install.sh BUILD_DIR SOURCE_DIR [CLI]
# (the module is taken from BUILD_DIR; CLI, the command the tests compare with).
set -euo pipefail
build=$(cd "$1" && pwd)
source=$(cd "$2" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
/usr/bin/python3 -m venv --system-site-packages "$work/venv"
# From a copy of the package's files, so that setuptools' build/ and egg-info never touch the checkout.
mkdir -p "$work/src/python"
cp -r "$source/python/steeldesign" "$work/src/python/"
cp "$source/pyproject.toml" "$source/setup.py" "$work/src/"
STEELDESIGN_CMAKE_BUILD_DIR="$build" "$work/venv/bin/python" -m pip install --no-build-isolation --no-index \
    --disable-pip-version-check -q "$work/src"
cd "$work"
"$work/venv/bin/python" - <<PY
import steeldesign as sd
assert sd.__file__.startswith("$work/venv/"), sd.__file__
r = sd.check("IPE 300", "S355", N=-100)
print("installed:", sd.__file__, r.verdict)
assert r.verdict == "fulfilled"
PY
if [ -n "${3:-}" ]; then
    # pytest against the installed module: no PYTHONPATH, run from outside the checkout.
    env -u PYTHONPATH STEELDESIGN_CLI="$3" STEELDESIGN_SOURCE_DIR="$source" \
        "$work/venv/bin/python" -m pytest -q -p no:cacheprovider "$source/python/tests"
    echo "pytest passed against the installed module"
fi

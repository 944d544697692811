#!/usr/bin/env python3
"""The layers of the README's diagram against the includes of the sources.

The README holds, under "## Layers", a text block that lists the layers from the top down, one line
each: the folders of the layer, then what it holds ("cli/  python/   the command; the Python module").
Every #include of a source file in a layer must name a file of its own layer or of a layer below; the
host's headers, included by their bare names, count as host/. Each layer may use only the third-party
libraries given to it below. Exit code 1 with a line per offending include, 0 when all hold.
"""
import pathlib
import re
import sys

root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()

# Third-party include prefixes and the layers allowed to use them.
third_party = {
    "Eigen/": {"design"},
    "nlohmann/": {"batch", "report", "cli", "python"},
    "CLI/": {"cli"},
    "pybind11/": {"python"},
}


def read_layers():
    text = (root / "README.md").read_text(encoding="utf-8")
    match = re.search(r"^## Layers\b.*?^```[a-z]*\n(.*?)^```", text, re.S | re.M)
    if not match:
        sys.exit("README.md: no layer diagram (a code block under '## Layers')")
    layers = []  # top first: a list of folder names per line
    for line in match.group(1).splitlines():
        folders = []
        for token in line.split():
            if not token.endswith("/"):
                break
            folders.append(token[:-1])
        folders = [f for f in folders if (root / f).is_dir()]
        if folders:
            layers.append(folders)
    if len(layers) < 2:
        sys.exit("README.md: the layer diagram names fewer than two folders")
    return layers


def main():
    layers = read_layers()
    rank = {}
    for level, folders in enumerate(reversed(layers)):
        for folder in folders:
            rank[folder] = level
    host_headers = {p.name for p in (root / "host").glob("*.h")} if "host" in rank else set()
    problems = []
    checked = 0
    for folder, level in sorted(rank.items()):
        for source in sorted((root / folder).rglob("*")):
            if source.suffix not in (".h", ".hpp", ".cpp", ".c"):
                continue
            checked += 1
            for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
                m = re.match(r'\s*#\s*include\s*[<"]([^>"]+)[>"]', line)
                if not m:
                    continue
                target = m.group(1)
                where = f"{source.relative_to(root)}:{number}: #include {target}"
                for prefix, allowed in third_party.items():
                    if target.startswith(prefix) and folder not in allowed:
                        problems.append(f"{where}: {prefix[:-1]} is not for the {folder}/ layer")
                parts = pathlib.PurePosixPath(target).parts
                if target.startswith("../"):
                    parts = pathlib.PurePosixPath(target).parts[1:]
                if len(parts) > 1 and parts[0] in rank:
                    included = parts[0]
                elif len(parts) == 1 and (source.parent / target).exists():
                    included = folder
                elif len(parts) == 1 and target in host_headers:
                    included = "host"
                else:
                    continue
                if included == folder:
                    continue
                if rank[included] >= level:
                    side = "beside" if rank[included] == level else "above"
                    problems.append(f"{where}: {included}/ is {side} {folder}/ in the README's layers")
    for problem in problems:
        print(problem)
    print(f"layers (top first): {' | '.join(' '.join(f + '/' for f in fs) for fs in layers)}; "
          f"{checked} files, {len(problems)} includes out of order")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())

#!/usr/bin/env python3
"""Code written against the bundled CIM layer must compile against OpenPegasus.

For every header of the layer, the Pegasus headers it pulls in (directly or
through others) must be a subset of what the real header of the same name
pulls in: a header that brings more would let code compile here that fails
there.

    compare_includes.py BUNDLED_INCLUDE_DIR REAL_INCLUDE_DIR
"""
import os
import re
import sys

INCLUDE = re.compile(r'#\s*include\s*<(Pegasus/[^>]+)>')


def closure(root, header):
    seen, pending = set(), [header]
    while pending:
        path = os.path.join(root, pending.pop())
        if not os.path.exists(path):
            continue
        with open(path, errors="replace") as text:
            for included in INCLUDE.findall(text.read()):
                if included not in seen:
                    seen.add(included)
                    pending.append(included)
    return seen


def main(bundled, real):
    problems = []
    for folder in ("Pegasus/Common", "Pegasus/Provider"):
        for name in sorted(os.listdir(os.path.join(bundled, folder))):
            header = folder + "/" + name
            extra = sorted(
                h for h in closure(bundled, header) - closure(real, header)
                if h != header and os.path.exists(os.path.join(real, h))
                and not h.startswith("Pegasus/Common/Platform_"))
            if extra:
                problems.append(f"{header} also brings {', '.join(extra)}")
    for problem in problems:
        print(problem)
    print(f"{len(problems)} bundled headers include more than OpenPegasus's own")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))

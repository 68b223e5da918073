#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fails when a file under src/ includes a header of a layer above its own or of a sibling on
# its own rank, or lives in or includes from a folder that is no layer; prints each such
# include as file:line: include. The layers, lowest first, one rank a line, are listed in
# src/LAYERS. Tests, benchmarks and tools may include any layer.
set -euo pipefail
cd "$(dirname "$0")/.."

ranks=$(grep -E '^[a-z]' src/LAYERS | paste -sd '|')
find src -type f \( -name '*.h' -o -name '*.cpp' \) -print0 | sort -z | xargs -0 awk -v ranks="$ranks" '
BEGIN {
    n = split(ranks, lines, "|")
    for (i = 1; i <= n; i++) {
        m = split(lines[i], names, " ")
        for (j = 1; j <= m; j++)
            rank[names[j]] = i
    }
}
FNR == 1 {
    split(FILENAME, parts, "/")
    own = parts[2]
    if (!(own in rank)) {
        print FILENAME ": in " own "/, which src/LAYERS does not list"
        bad = 1
    }
}
/^[ \t]*#[ \t]*include[ \t]*"/ {
    target = $0
    sub(/^[^"]*"/, "", target)
    sub(/".*$/, "", target)
    if (index(target, "/") == 0)
        next # beside the file, in its own layer
    layer = substr(target, 1, index(target, "/") - 1)
    if (!(layer in rank)) {
        print FILENAME ":" FNR ": " $0 "  (" layer "/ is no layer)"
        bad = 1
    } else if ((own in rank) && rank[layer] > rank[own]) {
        print FILENAME ":" FNR ": " $0 "  (" own " is below " layer ")"
        bad = 1
    } else if ((own in rank) && rank[layer] == rank[own] && layer != own) {
        print FILENAME ":" FNR ": " $0 "  (" own " and " layer " are siblings)"
        bad = 1
    }
}
END {
    if (bad) {
        gsub(/ /, "/", ranks)
        gsub(/\|/, " < ", ranks)
        print "Includes go down the layers only: " ranks > "/dev/stderr"
    }
    exit bad
}' || exit 1

#!/bin/sh
# Fails when a file includes something of a folder that its own may not use. What a folder may use is read off the table
# under "Layers" in docs/architecture.md; it may also use what these use.
set -eu
cd "$(dirname "$0")/.."

document=docs/architecture.md
edges=$(awk -F'|' '
    /^## /              { inside = ($0 == "## Layers") }
    inside && NF >= 5   {
        folder = $2; allowed = $4
        gsub(/[` ]/, "", folder); sub(/^src\//, "", folder)
        if (folder !~ /^[a-z]/ || folder == "folder") next
        n = split(allowed, parts, ",")
        line = folder
        for (i = 1; i <= n; i++) {
            gsub(/^ +| +$/, "", parts[i])
            if (parts[i] ~ /^[a-z]/) line = line " " parts[i]
        }
        print line
    }' "$document")
[ -n "$edges" ] || { echo "$document: no table of layers found" >&2; exit 1; }

find src simulator demo -name '*.h' -o -name '*.cpp' | sort |
    xargs grep -HnE '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' |
    awk -v edges="$edges" '
    function reach(from, to,    n, i, next_) {
        if (from == to || may[from, to]) return 1
        if (seen[from]++) return 0
        n = split(uses[from], next_, " ")
        for (i = 1; i <= n; i++) if (reach(next_[i], to)) return 1
        return 0
    }
    # The folder of the table that holds a path: the longest that fits.
    function folderOf(path) {
        while (path != "" && !(path in uses)) if (!sub(/\/[^\/]*$/, "", path)) path = ""
        return path
    }
    BEGIN {
        rows = split(edges, row, "\n")
        for (i = 1; i <= rows; i++) {
            n = split(row[i], word, " ")
            for (j = 2; j <= n; j++) uses[word[1]] = uses[word[1]] " " word[j]
            if (n == 1) uses[word[1]] = ""
        }
        for (f in uses) {
            n = split(uses[f], word, " ")
            for (j = 1; j <= n; j++)
                if (word[j] != "everything" && !(word[j] in uses)) { print "unknown folder in the table: " word[j]; bad = 1 }
        }
    }
    {
        split($0, part, ":")
        file = part[1]; line = part[2]
        target = $0; sub(/^[^"]*"/, "", target); sub(/".*/, "", target)
        own = file; sub(/^src\//, "", own)
        if (own !~ /\//) next # the program itself
        own = folderOf(substr(own, 1, match(own, /\/[^\/]*$/) - 1))
        other = target ~ /\// ? folderOf(substr(target, 1, match(target, /\/[^\/]*$/) - 1)) : own
        if (own == "")   { print file ": its folder is not in the table"; bad = 1; next }
        if (other == "") { print file ":" line ": \"" target "\" lies in no folder of the table"; bad = 1; next }
        if ((own, other) in known) ok = known[own, other]
        else {
            split("", seen)
            ok = known[own, other] = (" " uses[own] " ") ~ / everything / || reach(own, other)
        }
        if (!ok) { print file ":" line ": " own " may not use " other " (\"" target "\")"; bad = 1 }
    }
    END { exit bad }' || {
    echo "The layers of $document are broken, see above." >&2
    exit 1
}

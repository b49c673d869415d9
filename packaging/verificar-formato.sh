#!/bin/sh
# The look of the tracked sources and what must not be among them. `--corrigir` formats instead of complaining.
set -eu
cd "$(dirname "$0")/.."

git rev-parse --is-inside-work-tree >/dev/null 2>&1 || {
    echo "Not a git checkout: the format is not checked."
    exit 0
}

sources() { git ls-files -z --cached --others --exclude-standard -- '*.cpp' '*.h'; }
if [ "${1:-}" = --corrigir ]; then
    sources | xargs -0 -r clang-format -i
    exit 0
fi

echo "Checking the format of $(sources | tr -cd '\0' | wc -c) sources"
sources | xargs -0 -r clang-format --dry-run --Werror || {
    echo "Run packaging/verificar-formato.sh --corrigir" >&2
    exit 1
}

litter=$(git ls-files -c -i -x 'build/' -x 'CMakeCache.txt' -x 'CMakeFiles/' -x '*.o' -x '*.a' -x '*.so' -x '*.moc' \
    -x 'moc_*.cpp' -x 'ui_*.h' -x '*_autogen/' -x '*.user' -x '*.orig' -x '*.rej' -x '*~' -x '*.swp' -x '*.mdb' \
    -x '*-wal' -x '*-shm' -x 'core.*.dump' -x 'Testing/' -x 'compile_commands.json')
if [ -n "$litter" ]; then
    echo "Tracked, but made by building, editing or running:" >&2
    echo "$litter" >&2
    exit 1
fi
conflicts=$(git grep -lE '^(<<<<<<< |>>>>>>> )' -- . || true)
if [ -n "$conflicts" ]; then
    echo "Unresolved merges: $conflicts" >&2
    exit 1
fi

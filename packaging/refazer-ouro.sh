#!/bin/sh
# The golden files of the tests from what the program does now, and what that changes. Arguments: those of ctest, such
# as -R saidas; without any, all tests run.
set -eu
cd "$(dirname "$0")/.."
VISTREL_OURO=1 ctest --test-dir build/release --output-on-failure "$@"
git add --intent-to-add tests/ouro
git --no-pager diff --stat --patch -- tests/ouro

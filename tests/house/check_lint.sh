#!/usr/bin/env bash
# The linter over every source of src/ and programs/ that the build compiles; usage: check_lint.sh SOURCE BUILD
set -euo pipefail
cd "$1"
build=$2
# It takes what the tests beside it leave of the cores, for some of them answer a real line in time. Its error output
# mostly counts what it left out of the system's headers: shown where it fails.
said=$(mktemp)
trap 'rm -f "$said"' EXIT
git ls-files 'src/*.cpp' 'programs/*.cpp' | while read -r file; do
  grep -q "\"$PWD/$file\"" "$build/compile_commands.json" && echo "$file"
done | xargs -P "${JOBS:-$(nproc)}" -n 4 nice -n 19 clang-tidy -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option 2>"$said" || {
  failure=$?
  grep -v 'warnings generated' "$said" >&2 || true
  exit "$failure"
}

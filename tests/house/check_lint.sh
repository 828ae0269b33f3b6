#!/usr/bin/env bash
# The linter over every source of src/ and programs/ that the build compiles; usage: check_lint.sh SOURCE BUILD
set -euo pipefail
cd "$1"
build=$2
# What only the compiler knows of its own switches says nothing about our code.
git ls-files 'src/*.cpp' 'programs/*.cpp' | while read -r file; do
  grep -q "\"$PWD/$file\"" "$build/compile_commands.json" && echo "$file"
done | xargs -P "${JOBS:-$(nproc)}" -n 4 clang-tidy -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option 2>/dev/null

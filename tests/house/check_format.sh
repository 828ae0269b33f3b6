#!/usr/bin/env bash
# Every source as the formatter lays it out.
set -euo pipefail
cd "$1"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run -Werror

#!/usr/bin/env bash
# Checks that every C and C++ source follows .clang-format. With --fix it
# rewrites the files instead.
set -euo pipefail
cd "$(dirname "$0")/.."

mapfile -t files < <(git ls-files --cached --others --exclude-standard \
  '*.h' '*.hpp' '*.c' '*.cpp' | while read -r f; do [[ -f "$f" ]] && echo "$f"; done)
if ((${#files[@]} == 0)); then
  exit 0
fi
if [[ "${1:-}" == "--fix" ]]; then
  clang-format -i "${files[@]}"
  exit 0
fi
if ! clang-format --dry-run --Werror "${files[@]}"; then
  echo "check-format: the files above are not formatted; run scripts/check-format.sh --fix" >&2
  exit 1
fi
echo "check-format: ${#files[@]} files formatted."

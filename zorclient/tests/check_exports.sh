#!/usr/bin/env bash
# Checks that a built library exports exactly the API its public headers declare: every
# function and global declared with ZORCLIENT_API is a defined dynamic symbol, and no other
# symbol is, apart from those the toolchain or a sanitizer runtime adds.
#
# Usage: check_exports.sh LIBRARY HEADER...
set -euo pipefail

library=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Declared names. The compiler's own tokenizer drops the comments; then each declaration is
# put on one line (split at ';', '{' and '}'), and from those that carry ZORCLIENT_API the name
# is the last identifier before the parameter list (or, for a global, the last identifier).
for header in "$@"; do
    "${CC:-cc}" -fpreprocessed -dD -E -P -x c "$header" 2>/dev/null |
        grep -v '^[[:space:]]*#' |
        tr '\n' ' ' | tr ';{}' '\n\n\n' |
        grep 'ZORCLIENT_API' |
        sed -E 's/.*ZORCLIENT_API//; s/\(.*//' |
        grep -oE '[A-Za-z_][A-Za-z0-9_]*[[:space:]]*$' |
        tr -d ' \t\r'
    echo
done | sed '/^$/d' | sort -u >"$work/declared"

# Exported names, without version tags and without what the toolchain and sanitizers add.
nm -D --defined-only "$library" | awk '{print $NF}' | sed 's/@.*//' |
    grep -vE '^(_init|_fini|_edata|_end|__bss_start|_DYNAMIC|_GLOBAL_OFFSET_TABLE_)$' |
    grep -vE '^_{1,3}(asan|ubsan|tsan|lsan|msan|sanitizer|odr_asan)' |
    sort -u >"$work/exported"

declared_count=$(wc -l <"$work/declared")
if [ "$declared_count" -lt 100 ]; then
    echo "only $declared_count declared names found in $*: the header scan is broken" >&2
    exit 1
fi

status=0
missing=$(comm -23 "$work/declared" "$work/exported")
if [ -n "$missing" ]; then
    echo "declared in the headers but not exported by $library:" >&2
    echo "$missing" | sed 's/^/  /' >&2
    status=1
fi
extra=$(comm -13 "$work/declared" "$work/exported")
if [ -n "$extra" ]; then
    echo "exported by $library but not declared in the headers:" >&2
    echo "$extra" | sed 's/^/  /' >&2
    status=1
fi
if [ "$status" -eq 0 ]; then
    echo "$declared_count names declared and exported, nothing else exported"
fi
exit "$status"

#!/usr/bin/env bash
# Makes a smaller copy of ICU's data archive for the statically linked
# command: libicudata.a is one 31 MB object holding every locale's unit,
# language and region names, transliterators and spelled-out number rules.
# The command formats none of those, so they are dropped; what it does use
# (collation, break rules, number and date symbols, time zones, properties,
# charset converters libxml2 reads encodings with) stays, and so do the
# currency tables: decimal symbols are read through them, and without them
# formatting a number fails in every locale but the root one.
#
# usage: trim-icu-data.sh LIBICUDATA.A OUTPUT.A
set -euo pipefail
archive=$1 output=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cd "$work"
ar x "$archive"
member=$(ar t "$archive")
[ "$(echo "$member" | wc -l)" = 1 ] || { echo "trim-icu-data: expected one object in $archive" >&2; exit 1; }
symbol=$(nm --defined-only "$member" | awk '/_dat$/ { print $3 }')
[ -n "$symbol" ] || { echo "trim-icu-data: no ICU data symbol in $archive" >&2; exit 1; }

# icupkg wants the package's own name (icudt72l) on the file it reads.
package=${member%_dat.o}
mkdir full trimmed
objcopy -O binary --only-section=.rodata "$member" "full/$package.dat"
printf '%s\n' 'unit/*' 'lang/*' 'region/*' 'translit/*' 'rbnf/*' > dropped.txt
icupkg -r dropped.txt "full/$package.dat" "trimmed/$package.dat"
genccode -q -o -e "${symbol%_dat}" -m "$member" --skip-dll-export -d trimmed "trimmed/$package.dat"
rm -f "$output"
# genccode writes no stack note, which linkers read as asking for an
# executable stack.
objcopy --add-section .note.GNU-stack=/dev/null "trimmed/${package}_dat.o"
ar rcs "$output" "trimmed/${package}_dat.o"

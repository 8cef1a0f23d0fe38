#!/usr/bin/env bash
# The manual pages and the shell completions: the pages render without
# warnings, carries every option of --help and has the sections a manual
# page is read for (environment, files, exit codes as a list); bash completes
# commands, options, formats and documents, names with blanks whole; every
# shell's script knows every option.
set -euo pipefail
vantel=$1 source_dir=$(cd "$2" && pwd) manual=$3 format_manual=$4
fail() { echo "FAIL: $*" >&2; exit 1; }

warnings=$(MANWIDTH=80 man --warnings -l "$manual" 2>&1 > /dev/null)
[ -z "$warnings" ] || fail "man warns: $warnings"
page=$(MANWIDTH=80 man -l "$manual" 2> /dev/null)

commands=$("$vantel" --help | sed -n '/^Commands:/,/^$/p' | awk 'NR > 1 && /^  [a-z]/ {print $1}')
[ "$(echo $commands)" = "render thumbnail info validate new fdl" ] || fail "commands in --help: $commands"
for command in $commands "fdl apply"; do
  # shellcheck disable=SC2086  # "fdl apply" is two words
  for option in $("$vantel" $command --help | grep -o -- '--[a-z][a-z-]*' | sort -u); do
    grep -q -- "${option//-/\\\\-}\|$option" "$manual" || fail "manual lacks $command $option"
    grep -q -- "$option" "$source_dir/completions/vantel.bash" || fail "bash completion lacks $option"
    grep -q -- "$option" "$source_dir/completions/_vantel" || fail "zsh completion lacks $option"
    [ "$option" = --help ] || grep -q -- "-l ${option#--}" "$source_dir/completions/vantel.fish" \
      || fail "fish completion lacks $option"
  done
done
grep -q "vantel render FILE -o OUT" <<< "$page" || fail "manual lacks the render forms"
grep -q "vantel fdl apply SOURCE TEMPLATE -o RESULT" <<< "$page" || fail "manual lacks fdl apply"
section() { echo "$page" | sed -n "/^$1\$/,/^[A-Z]/p"; }
for variable in SOURCE_DATE_EPOCH TMPDIR https_proxy; do
  section ENVIRONMENT | grep -qw -- "$variable" || fail "ENVIRONMENT lacks $variable"
done
section FILES | grep -q "vantel.thumbnailer" || fail "FILES lacks the thumbnailer entry"
[ "$(section "EXIT STATUS" | grep -cE '^ {7}[0-3] +[a-z]')" -eq 4 ] || fail "EXIT STATUS is not a list of codes: $(section "EXIT STATUS")"
section "SEE ALSO" | grep -q "vantel-aspectratio(5)" || fail "SEE ALSO does not point to the format's page"

# The format's page, made from docs/format.md: no warnings, and every key
# of its tables a tagged entry.
warnings=$(MANWIDTH=80 man --warnings -l "$format_manual" 2>&1 > /dev/null)
[ -z "$warnings" ] || fail "man warns about the format's page: $warnings"
format_page=$(MANWIDTH=80 man -l "$format_manual" 2> /dev/null)
# A here-string, not a pipe: grep -q quits at the first match, and the
# writer's SIGPIPE would fail the pipeline.
for key in $(sed -n 's/^| `\([A-Za-z_0-9]*\)` |.*/\1/p' "$source_dir/docs/format.md"); do
  grep -qE "^ {7}$key( |\$)" <<< "$format_page" || fail "the format's page has no entry for $key"
done
grep -q -- "<!-- a red outline" <<< "$format_page" || fail "the format's page lacks the commented example"

# bash: what Tab offers after the words typed so far.
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
touch "$work/a.aspectratio" "$work/b.png" "$work/my shot.aspectratio"
completions() { # the candidates, sorted, joined by "|"
  (cd "$work" && bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1));
                          _vantel; printf "%s\n" "${COMPREPLY[@]}"' _ "$source_dir/completions/vantel.bash" "$@" | sort | paste -sd '|')
}
[ "$(completions vantel re)" = render ] || fail "vantel re<Tab>: $(completions vantel re)"
[ "$(completions vantel render --fo)" = --format ] || fail "render --fo<Tab>"
[ "$(completions vantel render -f jp)" = "jp2|jpeg|jpeg2000|jpg" ] || fail "render -f jp<Tab>: $(completions vantel render -f jp)"
[ "$(completions vantel render '')" = "a.aspectratio|my shot.aspectratio" ] || fail "render <Tab>: $(completions vantel render '')"
[ "$(completions vantel render -o my)" = "my shot.aspectratio" ] || fail "render -o my<Tab>: $(completions vantel render -o my)"
touch "$work/shot.fdl"
[ "$(completions vantel fdl '')" = "--help|apply" ] || fail "fdl <Tab>: $(completions vantel fdl '')"
[ "$(completions vantel fdl apply --te)" = --template ] || fail "fdl apply --te<Tab>"
[ "$(completions vantel fdl apply a.fdl '')" = shot.fdl ] || fail "fdl apply a.fdl <Tab>: $(completions vantel fdl apply a.fdl '')"

for shell in zsh fish; do
  if command -v $shell > /dev/null; then
    $shell -n "$source_dir/completions/$([ $shell = zsh ] && echo _vantel || echo vantel.fish)" \
      || fail "$shell cannot read its completion script"
  fi
done
echo "manual and completions: ok"

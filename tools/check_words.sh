#!/bin/sh
# Fails, naming file:line, where a tracked file or its name talks about a document or a procedure instead
# of in the program's own words: the old name of the classic device list, a document's part numbers or
# "notes", a narrated step number, comments about what other systems do, and the short form of
# "specification" as a word or inside an identifier. The full word stays free ("the OpenGL extension's
# specification"), as do web addresses, which are removed from a line before it is checked.
#
# Every pattern below has one letter in brackets, so that this file does not match itself.
#
# Usage: tools/check_words.sh [REPOSITORY]   (default: the repository holding this script)
# Needs git and awk only. Exits 0 when clean, 1 with a list otherwise, 77 outside a git checkout.
set -eu

repo=${1:-$(dirname "$0")}
if ! top=$(git -C "$repo" rev-parse --show-toplevel 2>/dev/null); then
    echo "check_words: $repo is not in a git checkout; nothing to check"
    exit 77
fi
cd "$top"

# The rules, applied to "path:line:text" lines; line 0 holds the path itself, to check the file's name.
rules='
function report(why) { print where ": " why; found = 1 }
function check(text,    lower) {
    gsub(/https?:\/\/[^ \t"<>)]*/, "", text)
    lower = tolower(text)
    if (lower ~ /se[e]d/ && lower !~ /ran[d]|rn[g]/) report("name the list for what it holds (classic, later)")
    if (lower ~ /desig[n] notes/) report("say what the data is, not which document it came from")
    if (text ~ /Par[t]s? [0-9]+\.[0-9]+/ || text ~ /(^|[^A-Za-z])[Tt]he Par[t]s?([^A-Za-z]|$)/)
        report("names a part of a document")
    if (lower ~ /spe[c]\.md/) report("names a document")
    if (lower ~ /(^|[^a-z])ste[p]s? [0-9]/) report("narrates a step; say why instead")
    if (lower ~ /othe[r] platforms?/ || lower ~ /window[s] context/)
        report("speaks of other systems; say what this program does and why")
    if (text ~ /(^|[^A-Za-z])[Ss]pe[c]([^a-z]|s([^a-z]|$)|$)/ || text ~ /[a-z0-9]Spe[c]([^a-z]|$)/)
        report("short for specification: name what the thing holds (link, note, table)")
}
{
    first = index($0, ":")
    rest = substr($0, first + 1)
    second = index(rest, ":")
    line = substr(rest, 1, second - 1)
    where = line == "0" ? substr($0, 1, first - 1) " (file name)" : substr($0, 1, first) line
    check(substr(rest, second + 1))
}
END { exit found }
'

status=0
git ls-files | awk '{ print $0 ":0:" $0 }' | awk "$rules" || status=1
git grep -n -I -i -E -e 'se[e]d' -e 'desig[n]' -e 'par[t]' -e 'spe[c]' -e 'ste[p]' -e 'othe[r] platform' \
    -e 'window[s] context' -- . | awk "$rules" || status=1
exit $status

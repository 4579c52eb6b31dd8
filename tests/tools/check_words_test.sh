#!/bin/sh
# Runs tools/check_words.sh over a scratch repository whose files hold every kind of line it must report and
# the everyday uses it must let pass, and compares the reported places with the expected ones.
# Usage: check_words_test.sh PATH/TO/check_words.sh
set -eu

checker=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
git -C "$scratch" init -q

# The words the checker looks for, split here so that this file does not hold them whole.
sd="se""ed" sp="Sp""ec" spl="sp""ec" pt="Pa""rt" dn="des""ign notes" st="St""ep" op="oth""er platforms"
wc="Wind""ows context"

mkdir -p "$scratch/src" "$scratch/tools"
cat > "$scratch/src/flagged.cpp" <<EOF
// The $sd rows come first.
// Generated from the $dn' tables.
// See $pt 3.3 for the rules.
// As the $pt says, it ends here.
// Read /work/shared/$spl.md first.
// $st 5 and 6: the GPU list.
// The hidden window of $op has no twin.
// It belongs to the $wc layer.
struct Extension${sp}Entry { const char* link; };
const char* ${spl}Url = "";
// As the $spl says.
EOF
cat > "$scratch/src/allowed.cpp" <<EOF
// Where the OpenGL extension's ${spl}ification is read:
// https://registry.khronos.org/OpenGL/extensions/ARB/ARB_sync.txt, http://www.opengl.org/registry/${spl}s/
// std::srand($sd) keeps the random pattern repeatable.
// GL_EXT_separate_${spl}ular_color, kSeparate${sp}ularColor, time$spl now{}, re${spl}t
// The part of the library we use; step by step; Spectre; Specialist; the party.
EOF
touch "$scratch/src/extension_${spl}_table.h" "$scratch/tools/${sd}_devices.txt" "$scratch/tools/classic_devices.txt"
git -C "$scratch" add -A

status=0
sh "$checker" "$scratch" > "$scratch/report.txt" || status=$?
if [ "$status" -ne 1 ]; then
    echo "expected exit status 1, got $status"
    cat "$scratch/report.txt"
    exit 1
fi

awk -F": " "{ print \$1 }" "$scratch/report.txt" | sed "s/ (file name)\$//" | sort -u > "$scratch/places.txt"
sort > "$scratch/expected.txt" <<EOF
src/extension_${spl}_table.h
src/flagged.cpp:1
src/flagged.cpp:2
src/flagged.cpp:3
src/flagged.cpp:4
src/flagged.cpp:5
src/flagged.cpp:6
src/flagged.cpp:7
src/flagged.cpp:8
src/flagged.cpp:9
src/flagged.cpp:10
src/flagged.cpp:11
tools/${sd}_devices.txt
EOF
if ! diff -u "$scratch/expected.txt" "$scratch/places.txt"; then
    echo "reported places differ from the expected ones (- expected, + reported); full report:"
    cat "$scratch/report.txt"
    exit 1
fi

# Without the flagged files the same repository passes.
git -C "$scratch" rm -q --cached src/flagged.cpp "src/extension_${spl}_table.h" "tools/${sd}_devices.txt"
sh "$checker" "$scratch"

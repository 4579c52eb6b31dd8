#!/bin/sh
# Regenerates the golden reports in tests/golden/machines from the fixture machines under tests/fixtures.
# This OVERWRITES the committed golden files: run it only after a deliberate change of what a machine
# reports, then read the diff before committing it.
set -eu
root="$(cd "$(dirname "$0")/.." && pwd)"
cmake -S "$root" -B "$root/build-test" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=ON >/dev/null
cmake --build "$root/build-test" --target machine_golden_writer -j2
echo "Regenerating the golden reports in tests/golden/machines (overwriting them)."
"$root/build-test/tests/machine_golden_writer" "$root/tests/golden/machines"

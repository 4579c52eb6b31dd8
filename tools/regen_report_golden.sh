#!/bin/sh
# Regenerates the golden reports in tests/golden/report from the fixture machines of tests/report.
# This OVERWRITES the committed golden files: run it only after a deliberate change of the report's form,
# then read the diff before committing it.
set -eu
root="$(cd "$(dirname "$0")/.." && pwd)"
cmake -S "$root" -B "$root/build-test" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBUILD_TESTING=ON >/dev/null
cmake --build "$root/build-test" --target report_golden_writer -j2
echo "Regenerating the golden reports in tests/golden/report (overwriting them)."
"$root/build-test/tests/report_golden_writer" "$root/tests/golden/report"

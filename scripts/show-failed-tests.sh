#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# After a failed test run: each failed test's own output again, last, where a log cut to its end still shows
# it (with two jobs, CTest prints a failure's output between hundreds of other lines).
# Usage: show-failed-tests.sh <build dir>
set -uo pipefail
temporary="${1:?usage: show-failed-tests.sh <build dir>}/Testing/Temporary"
[ -f "$temporary/LastTestsFailed.log" ] || exit 0
while IFS= read -r line; do
  name="${line#*:}"
  echo "===== output of the failed test $name ====="
  awk -v name="$name" '
    $0 ~ /^[0-9]+\/[0-9]+ Test: / && substr($0, index($0, "Test: ") + 6) == name { inside = 1; next }
    inside && /^<end of output>/ { exit }
    inside { print }
  ' "$temporary/LastTest.log" | tail -n 120
done < "$temporary/LastTestsFailed.log"

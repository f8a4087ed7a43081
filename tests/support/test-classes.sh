#!/usr/bin/env bash
# Every test class derives from ZelTest, or from a suite that does, so that a warning of the toolkit
# fails it.
#
#   test-classes.sh SOURCE_FOLDER
set -euo pipefail

suites=$(find "$1/tests" -name '*Test.h' -exec sed -nE 's/^class ([A-Za-z]+) : public ZelTest$/|\1/p' {} + | tr -d '\n')
status=0
count=0
while IFS= read -r file; do
    count=$((count + 1))
    name=$(basename "$file" .cpp)
    if ! grep -Eq "^class $name( final)? : public (ZelTest$suites)\$" "$file"; then
        echo "$file: class $name does not derive from ZelTest" >&2
        status=1
    fi
done < <(find "$1/tests" "$1/fuzz" -name 'tst_*.cpp')
if [ "$count" -eq 0 ]; then
    echo "There are no tests in $1." >&2
    exit 1
fi
echo "$count test classes"
exit "$status"

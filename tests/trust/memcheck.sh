#!/usr/bin/env bash
# memcheck.sh [BUILD]: the tool's commands and all tests of a release build under valgrind's memcheck. Errors, memory that is
# definitely lost and failed tests are exit code 1. Takes some minutes, so that nothing runs it by itself.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/../.."
build=${1:-build/release}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# Machine code made of a regular expression reads to the end of its vectors, which memcheck takes for an error.
export QT_QPA_PLATFORM=offscreen QT_ENABLE_REGEXP_JIT=0
failed=0

check() {
    if valgrind -q --error-exitcode=99 --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite \
        --suppressions=tests/trust/memcheck.supp --log-file="$folder/log" "$@" >"$folder/output" 2>&1; then
        echo "nothing  $*"
    else
        echo "FOUND    $*"
        cat "$folder/output" "$folder/log"
        failed=1
    fi
}

tool=$build/src/cli/tracelyn-cli
check "$tool" info samples/bend02.paf
check "$tool" csv samples/bend02.paf "$folder/a.csv"
check "$tool" render samples/bend02.paf "$folder/a.png"
check "$tool" pack samples/bend.xml "$folder/a.paf"
check "$tool" expand samples/bend01.paf "$folder/a.xml"
# Left out: what takes too long, and what counts open files, of which valgrind has some itself.
left_out='*Death*:LargePicture*:*WhicheverAllocationFails:Scratch.IsTheOwnersAlone*'
for name in support xmldom model reader render app cli; do
    check "$build/tests/$name/${name}_test" --gtest_brief=1 --gtest_filter="-$left_out"
done
exit $failed

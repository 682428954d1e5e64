#!/bin/sh
# Builds the consumer with an installed tool, then changes its inputs and looks at what is built anew:
# consumer.sh <CMake generator> <prefix of the installed tool> <folder to work in>
set -u
consumer=$(cd "$(dirname "$0")/../consumer" && pwd)
generator=$1 prefix=$2 work=$3
build=$work/build
pump=$build/tessarine/pump

fail()
{
    echo "$*"
    [ ! -f "$work/log" ] || cat "$work/log"
    exit 1
}

build()
{
    touch "$work/mark"
    cmake --build "$build" "$@" >"$work/log" 2>&1
}

# expect <case> <node-ID that the pump tells> <what is newer than before the build, in alphabetic order>
expect()
{
    build || fail "$1: the build failed"
    newer=$(find "$pump" "$build/level sensor" "$build/pump" -path '*/run' -prune -o -newer "$work/mark" \
        -type f \( -name '*.c' -o -name gen_define.h -o -name pump -o -name stamp \) -print |
        sed "s|$build/||; s|/.tessarine/|/|; s|tessarine/||" | LC_ALL=C sort | tr '\n' ' ')
    [ "$newer" = "$3" ] || fail "$1: expected '$3', got '$newer'"
    "$build/pump" | grep -qx "  nodeIds $2" || fail "$1: the pump has not the node-ID $2"
}

rm -rf "$work"
mkdir -p "$work"
cp -R "$consumer/../../examples" "$work/examples"
options="$work/it's options \$#1.txt" # no name that Ninja takes from a dependency file
cp "$consumer/options.txt" "$options"
project=$work/examples/pump/pump.tsrt
printf '/* user-specific section: start */\n#define OURS 1\n/* user-specific section: end */\n' \
    >"$work/examples/pump/gen_define.h"
export XDG_CONFIG_HOME="$work/config"
user="$work/config/Korvel/CANopen Tessarine.conf"
mkdir -p "$work/config/Korvel"
echo '[General]' >"$user"
cmake -S "$consumer" -B "$build" -G "$generator" -DCMAKE_PREFIX_PATH="$prefix" \
    -DEXAMPLES="$work/examples" -DOPTIONS="$options" >"$work/log" 2>&1 || fail "not configured"
build || fail "first build"
grep -q '#define OURS 1' "$pump/gen_define.h" || fail "the user's section beside the project is lost"
grep -q '^VendorName=Consumer & Co' "$pump/pump.eds" && grep -q '=0x1A2B' "$build/level sensor/empty.eds" || fail "a value for the run is lost"
grep -q '"uri": "' "$build/reports/checked.sarif" || fail "no report of the check"
[ ! -e "$build/tessarine/checked/gen_define.h" ] || fail "the check has written sources"

expect "nothing changed" 21 ""
rm "$pump/gen_objdict.c"
expect "source deleted" 21 "pump pump/gen_objdict.c pump/stamp "
rm "$build/pump.sarif" "$build/pages/the pump.html"
expect "report deleted" 21 "pump/stamp "
rm "$build/level sensor/empty.eds"
expect "description deleted" 21 "level sensor/stamp "
[ -s "$build/pump.sarif" ] && [ -s "$build/pages/the pump.html" ] && [ -s "$build/level sensor/empty.eds" ] ||
    fail "a deleted file is not made again"
echo implinfo=1 >>"$user"
expect "settings of the user changed" 21 "level sensor/stamp pump/stamp "
sleep 1 # the date in the generated files shall be another
touch "$project"
expect "same content" 21 "pump/stamp "
sed -i 's/:21/:22/' "$options"
expect "modifier file changed" 22 "pump pump/gen_define.h pump/stamp "
sed -i 's/Brunnental development/Someone else/' "$project"
expect "project changed where C does not show it" 22 "pump/stamp "
sed -i 's/=LS-2 Level/=LS-3 Level/' "$work/examples/levelsensor/levelsensor.eds"
expect "import changed" 22 "level sensor/gen_objdict.c level sensor/stamp "
echo "GeneralSettings:co_node_id:23" >"$work/more.txt"
cmake -DOPTIONS="$work/more.txt" "$build" >"$work/log" 2>&1 || fail "not configured again"
expect "another modifier file" 23 "pump pump/gen_define.h pump/stamp "

cp "$project" "$work/good"
cp "$work/examples/empty/empty.tsrt" "$project"
! build || fail "a project with errors was built"
grep -q '0x1000 (Device Type) does not exist' "$work/log" || fail "the errors of the project are not told"
! build || fail "a project with errors was built at the second try"
grep -q '"exitCode": 7' "$build/pump.sarif" || fail "the report does not tell of the errors"
cp "$work/good" "$project"
expect "project mended" 23 "pump/stamp "

echo "GeneralSettings:line0type:4" >>"$work/more.txt"
build --target pump_tessarine || fail "another kind of project"
! grep -q coCanOpenStackInit "$pump/gen_objdict.c" || fail "a source of the former kind was left"
[ ! -e "$pump/pump.eds" ] || fail "a description of the former kind was left"

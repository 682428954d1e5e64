#!/bin/bash
# What the tool knows must be told by what is installed with it, and by the README: its options, the settings of
# the user, and the C files it writes. The pages are linked soundly.
# And the completion offers what fits.
cd "$(dirname "$0")/../.." || exit 1
bad=0
complain()
{
    echo "$*"
    bad=1
}

options=$(grep -ohE '\{"-[a-z][a-z-]*"' app/runoptions.cpp | tr -d '{"' | sort -u)
[ -n "$options" ] || complain "no options found"
for option in $options; do
    tr -d '\\' <packaging/tessarine.1 | grep -qE -- "$option\b" || complain "no $option in the manual page"
    grep -qF -- "\`$option" README.md || complain "no $option in README.md"
    grep -qE -- "(^|[ \"])$option([ \"]|$)" packaging/completion.bash || complain "no $option in the completion"
done

settings=$(grep -rhoE 'value\("(General|EDSChecker)", "[A-Za-z_]+"' app check generators --include='*.cpp' |
    cut -d'"' -f4 | sort -u)
[ -n "$settings" ] || complain "no settings of the user found"
for setting in $settings; do
    grep -qE "\b$setting\b" packaging/tessarine.1 || complain "no $setting in the manual page"
    grep -qF "\`$setting\`" README.md || complain "no $setting in README.md"
done

files=$(grep -rhoE '\bgen_[a-z0-9_]+\.[ch]\b' generators --include='*.cpp' | sort -u)
[ -n "$files" ] || complain "no files found"
for file in $files; do
    grep -qE "[ (]$file([ )]|$)" packaging/TessarineGenerate.cmake || complain "no $file in tessarine_generate()"
    grep -qF "\`$file\`" README.md || complain "no $file in README.md"
done

# Links lead to pages and headings that are there.
for page in README.md docs/*.md; do
    for link in $(grep -oE '\]\([^) ]+\)' "$page" | sed 's/^](//; s/)$//' | grep -v '^https:' | sort -u); do
        target=$(dirname "$page")/${link%%#*}
        [ "${link%%#*}" ] || target=$page
        [ -e "$target" ] || complain "$page has a link to $link, which is not there"
        [[ $link != *#* ]] || sed -n 's/^#\+ //p' "$target" | tr 'A-Z ' 'a-z-' | tr -cd 'a-z0-9_\n-' |
            grep -qx -- "${link#*#}" || complain "$page has a link to $link, which is no heading"
    done
done

. packaging/completion.bash
# completes <words before the last> <last word> <completions>
completes()
{
    COMP_WORDS=(tessarine $1 "$2")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMP_LINE="tessarine $1 $2"
    COMP_POINT=${#COMP_LINE}
    _tessarine tessarine "$2"
    [ "${COMPREPLY[*]}" = "$3" ] || complain "'$1 $2' is completed to '${COMPREPLY[*]}', not '$3'"
}
completes "" -pro "-problems -project"
completes "-project" examples/pump/pump "examples/pump/pump.tsrt examples/pump/pump.yaml"
completes "-export" examples/pump/pump "examples/pump/pump.tsrt examples/pump/pump.yaml"
completes "-import" examples/levelsensor/ "examples/levelsensor/levelsensor.eds"
completes "-import" examples/pump/ "examples/pump/pump.tsrt examples/pump/pump.yaml"
completes "-import" 1:examples/levelsensor/ "examples/levelsensor/levelsensor.eds"
completes "-project" examples/pu "examples/pump"
completes "-set" co_node "co_node_id= co_node_id_fct="
completes "-set" line "line0type="
completes "-set" J1939:cia510s "cia510serversupport="
completes "-set" co_node_id=1 ""
completes "-output" examples/pump/ ""
HOME=$PWD/examples
completes "-project" "~/pump/pu" "~/pump/pump.tsrt ~/pump/pump.yaml"
completes "-project" "~/pu" "~/pump"
completes "-output" "~/pump/" ""
completes "-output" examples/pu "examples/pump"
exit $bad

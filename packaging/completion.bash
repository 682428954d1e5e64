# bash completion of tessarine

# The page of the settings, in the installed tree or in that of the sources.
_tessarine_page=${BASH_SOURCE[0]%/*}/../../doc/tessarine/docs/settings.md
[[ -r $_tessarine_page ]] || _tessarine_page=${BASH_SOURCE[0]%/*}/../docs/settings.md

# The keys that -set takes, a line each.
_tessarine_keys()
{
    local line key prefix="" isInTable=""
    while IFS= read -r line; do
        case $line in
        '## '*) isInTable=1 ;;& # before it stands what all of them have in common
        '## GeneralSettings') prefix="" ;;
        '## '*Settings) prefix=${line#'## '} prefix=${prefix%Settings}: ;;
        '| `'*)
            [[ -n $isInTable ]] || continue
            key=${line#'| `'} key=${key%%'`'*}
            # Numbered keys: those of line and target 0 stand for all.
            [[ -n $prefix ]] || key=${key//N/0}
            [[ $prefix == J1939: && $key == *N ]] || printf '%s\n' "$prefix$key"
            ;;
        esac
    done 2>/dev/null <"$_tessarine_page"
}

# The key before the cursor is one word here, but for bash it ends at each colon.
_tessarine_setting()
{
    local given=${COMP_LINE:0:COMP_POINT} done=""
    given=${given##*[[:space:]]}
    [[ $given != *:* || $COMP_WORDBREAKS != *:* ]] || done=${given%"${given##*:}"}
    compopt -o nospace 2>/dev/null
    [[ $given == *=* ]] || mapfile -t COMPREPLY < <(compgen -W "$(_tessarine_keys)" -S = -- "$given")
    COMPREPLY=("${COMPREPLY[@]#"$done"}")
}

# Is it a folder? A tilde at its start is not expanded yet.
_tessarine_is_folder()
{
    local path=$1 home
    if [[ $path =~ ^~([A-Za-z0-9._-]*)(/.*)?$ ]]; then
        eval "home=~${BASH_REMATCH[1]}"
        path=$home${BASH_REMATCH[2]}
    fi
    [[ -d $path ]]
}

_tessarine()
{
    local kinds="" line="" given word=$2 previous="${COMP_WORDS[COMP_CWORD - 1]}"
    COMPREPLY=()
    compopt +o filenames 2>/dev/null
    given=${COMP_LINE:0:COMP_POINT}
    if [[ $given =~ [[:space:]]-set[[:space:]]+[^[:space:]]*$ ]]; then
        _tessarine_setting
        return
    fi
    # The number of a line and its file are one word here, but for bash they end at the colon.
    if [[ $given =~ [[:space:]]-import[[:space:]]+([0-9]+:)([^[:space:]]*)$ ]]; then
        previous=-import word=${BASH_REMATCH[2]}
        [[ $COMP_WORDBREAKS == *:* ]] || line=${BASH_REMATCH[1]}
    fi
    case $previous in
    -project | -export | -compare) kinds='tsrp|tsrt|yaml|yml' ;;
    -import) kinds='csv|dbc|dcf|eds|icsv|tsrp|tsrt|xdc|xdd|yaml|yml' ;;
    -import-node) return ;;
    -dbmod | -depfile | -overview | -report) kinds='*' ;;
    -output) kinds='/' ;; # folders only, for no file has this ending
    *)
        mapfile -t COMPREPLY < <(compgen -W "-check -compare -dbmod -depfile -export -help -import -import-node
            -keep-unchanged -no-commands -output -overview -problems -project -report -s -save -schema -set -version" -- "$2")
        return
        ;;
    esac
    compopt -o filenames 2>/dev/null
    local path
    while IFS= read -r path; do
        # Kinds of files are told in any case of letters.
        if [[ $kinds == '*' || ${path,,} =~ \.($kinds)$ ]] || _tessarine_is_folder "$path"; then
            COMPREPLY+=("$line$path")
        fi
    done < <(compgen -f -- "$word")
}

complete -F _tessarine tessarine

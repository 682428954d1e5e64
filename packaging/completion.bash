# bash completion of tessarine

_tessarine()
{
    local kinds="" previous="${COMP_WORDS[COMP_CWORD - 1]}"
    COMPREPLY=()
    compopt +o filenames 2>/dev/null
    case $previous in
    -project) kinds='tsrp|tsrt' ;;
    -import) kinds='eds|dcf|csv' ;;
    -dbmod | -depfile | -report) kinds='*' ;;
    -output) kinds='/' ;; # folders only, for no file has this ending
    *)
        mapfile -t COMPREPLY < <(compgen -W "-check -dbmod -depfile -help -import -keep-unchanged -no-commands -output
            -problems -project -report -s -save -set -version" -- "$2")
        return
        ;;
    esac
    compopt -o filenames 2>/dev/null
    local path
    while IFS= read -r path; do
        # Kinds of files are told in any case of letters.
        if [[ -d $path || $kinds == '*' || ${path,,} =~ \.($kinds)$ ]]; then
            COMPREPLY+=("$path")
        fi
    done < <(compgen -f -- "$2")
}

complete -F _tessarine tessarine

# Completion of tracelyn-cli and tracelyn for bash.

# Names that end in one of the extensions (a pattern such as "paf|xml"), and folders.
_tracelyn_files() {
    local name
    compopt -o filenames 2>/dev/null
    while IFS= read -r name; do
        [ -n "$name" ] && { [ -d "$name" ] || [[ ${name,,} =~ \.($1)$ ]]; } && COMPREPLY+=("$name")
    done < <(compgen -f -- "$current")
}

_tracelyn_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$current")
}

_tracelyn() {
    local current=$2
    COMPREPLY=()
    if [[ $current == -* ]]; then
        _tracelyn_words "--help --version"
    else
        _tracelyn_files "paf|xml"
    fi
}

_tracelyn_cli() {
    local current=$2 previous=$3 command=${COMP_WORDS[1]}
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        _tracelyn_words "info csv render stats compare pack expand help -h --help --version"
        return
    fi
    # What an option takes.
    case $command:$previous in
    render:--scheme) _tracelyn_words "dark light" ;;
    render:--console) _tracelyn_words "left right none" ;;
    render:--format) _tracelyn_words "png svg pdf" ;;
    stats:--format | compare:--format) _tracelyn_words "table csv json" ;;
    render:--align | compare:--align) _tracelyn_words "sample" ;;
    render:--compare) _tracelyn_files "paf|xml" ;;
    render:--out)
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
        ;;
    *:--code | *:--size | *:--cursor | *:--fixed | *:--zoom | *:--scroll | *:--toggle | *:--from | *:--to | \
        *:--while | *:--tolerance) ;;
    *)
        case $command:$current in
        info:-* | csv:-*) _tracelyn_words "--code" ;;
        render:-*)
            _tracelyn_words "--code --size --scheme --cursor --fixed --zoom --scroll --console --toggle --events
                --compare --align --out --format"
            ;;
        stats:-*) _tracelyn_words "--code --from --to --while --format" ;;
        compare:-*) _tracelyn_words "--code --align --tolerance --format" ;;
        info:* | stats:* | compare:*) _tracelyn_files "paf|xml" ;;
        csv:*) _tracelyn_files "paf|xml|csv" ;;
        render:*) _tracelyn_files "paf|xml|png|svg|pdf" ;;
        pack:* | expand:*) _tracelyn_files "paf|xml" ;;
        esac
        ;;
    esac
}

complete -F _tracelyn tracelyn
complete -F _tracelyn_cli tracelyn-cli

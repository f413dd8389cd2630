# Completion of tolvik and tolvik-page for bash.

# Prints the symbol files that the words name: as sources, as destinations, in response files, or as
# the result of an earlier import of the word.
_tolvik_stores() {
    local word name
    for word; do
        word=${word//[\"\'\\]/}
        word=${word/#\~\//$HOME/}
        case $word in
        -*) ;;
        [@\&]*)
            word=${word#?}
            word=${word%%[(\{[]*}
            [[ -f $word ]] && head -c 65536 -- "$word" | grep -ao '[^][ ,=;"]*\.tvk'
            ;;
        *) printf '%s\n' "${word%%=*}" "${word#*=}" "${word%%.*}.tvk" ;;
        esac
    done | while IFS= read -r name; do
        [[ $name == *.tvk && -f $name ]] && printf '%s\n' "$name"
    done
}

# _tolvik_names KIND PREFIX WORDS...: prints the symbols or objects in the symbol files of the words.
# Time and number are limited, because symbol files may be large.
_tolvik_names() {
    local kind=$1 prefix=$2 strip='s/^_*//; s/_*$//' stores
    shift 2
    mapfile -t stores < <(_tolvik_stores "$@")
    [[ ${#stores[@]} -gt 0 ]] || return
    prefix=$(sed 's/[][\\.*^$]/\\&/g' <<<"$prefix")
    local patterns=(-e "^define=_*$prefix" -e "^refer=_*$prefix")
    case $kind,$* in
    object,*) patterns=(-e "^\\[$prefix") strip= ;;
    *-under*) patterns=(-e "^define=$prefix" -e "^refer=$prefix") strip= ;;
    esac
    LC_ALL=C timeout 3 grep -ahm 2000 "${patterns[@]}" -- "${stores[@]}" |
        sed 's/^\[\([^]]*\).*/\1/; s/^define=\([^,]*\).*/\1/; s/^refer=\([^ ]*\).*/\1/;'"$strip" |
        sort -u
}

# _tolvik_files PREFIX EXTENSION...: prints directories, and files with one of the extensions. An empty
# extension stands for any, "/" for none.
_tolvik_files() {
    local file extension prefix=$1
    shift
    compgen -f -- "$prefix" | while IFS= read -r file; do
        if [[ -d $file ]]; then
            printf '%s/\n' "$file"
            continue
        fi
        for extension; do
            [[ $file == *"$extension" ]] && printf '%s\n' "$file"
        done
    done
}

# Prints the lines of standard input after the text.
_tolvik_after() {
    local line
    while IFS= read -r line; do
        printf '%s\n' "$1$line"
    done
}

_tolvik_options='-tpc -txbox -tgc -tpsx -tps2 -tsgi -tn64 -telf -s -sall -f -def -ref -links -all -0 -1
    -2 -3 -under -html -l -lib -append -v0 -v1 -v2 -v3 -v4 -v5 -v6 -nologo -b0 -b1 -r -sort1 -sort2
    -sort5 -sort6 -sort7 -= -. -w0 -w1 -time0 -time1 -? -h --help -help -history --version -version'
_tolvik_page_options='--title --source-prefix --under --symbols --files --compare --json --fragment
    --help --version'

# _tolvik_candidates COMMAND WORD BEFORE WORDS...: prints the words that may replace the last word,
# which is given without quotes. BEFORE is the word before it.
_tolvik_candidates() {
    local command=$1 word=$2 before=$3
    shift 3
    if [[ $command == *-page ]]; then
        [[ $word == --*=* ]] && before=${word%%=*}
        local value=${word#--*=}
        case $before in
        --symbols) _tolvik_names symbol "$value" "$@" ;;
        --files) _tolvik_names object "$value" "$@" ;;
        --compare) _tolvik_files "$value" .tvk ;;
        --title | --source-prefix) ;;
        *) compgen -W "$_tolvik_page_options" -- "$word" || _tolvik_files "$word" .tvk .html ;;
        esac | { [[ $word == --*=* ]] && _tolvik_after "$before=" || cat; }
        return
    fi
    case $word in
    -=*) _tolvik_files "${word#-=}" "" | _tolvik_after -= ;;
    -r?*) _tolvik_files "${word##*[r;]}" / | _tolvik_after "${word%"${word##*[r;]}"}" ;;
    -*)
        compgen -W "$_tolvik_options" -- "$word"
        case $word in
        -s*) _tolvik_names symbol "${word#-s}" "$@" | _tolvik_after -s ;;
        -f*) _tolvik_names object "${word#-f}" "$@" | _tolvik_after -f ;;
        esac
        ;;
    [@\&]*) _tolvik_files "${word#?}" "" | _tolvik_after "${word:0:1}" ;;
    *=*) _tolvik_files "${word#*=}" "" | _tolvik_after "${word%%=*}=" ;;
    *) _tolvik_files "$word" .a .o .lib .obj .tvk ;;
    esac
}

# Appends the words of the text to `words`, with their quotes and backslashes.
_tolvik_split() {
    local text=$1
    local word='^[[:blank:]]*(([^[:blank:]\\"'\'']|\\.|"([^"\\]|\\.)*"?|'\''[^'\'']*'\''?)*)'
    while [[ $text =~ $word && -n ${BASH_REMATCH[0]} ]]; do
        words+=("${BASH_REMATCH[1]}")
        text=${text:${#BASH_REMATCH[0]}}
    done
    [[ $1 == *[[:blank:]] ]] && words+=("")
}

# COMP_WORDS is divided also at characters such as '=' and ':', so the words are taken from the line.
# Only the last part, $2, is replaced.
_tolvik() {
    local words=() word before kept quote=
    local open='^([^"'\'']|"[^"]*"|'\''[^'\'']*'\'')*(["'\''])[^"'\'']*$'
    _tolvik_split "${COMP_LINE:0:COMP_POINT}"
    word=${words[-1]}
    before=${words[-2]}
    _tolvik_split "${COMP_LINE:COMP_POINT}"
    [[ $word =~ $open ]] && quote=${BASH_REMATCH[2]}
    word=${word//[\"\'\\]/}
    word=${word/#\~\//$HOME/}
    kept=${word%"${2//[\"\'\\]/}"}
    mapfile -t COMPREPLY < <(_tolvik_candidates "$1" "$word" "$before" "${words[@]:1}" | sort -u)
    [[ ${#COMPREPLY[@]} -gt 0 ]] || return
    COMPREPLY=("${COMPREPLY[@]#"$kept"}")
    mapfile -t COMPREPLY < <(case $quote in
        \") printf '%s\n' "${COMPREPLY[@]}" | sed 's/[\\"$`]/\\&/g' ;;
        \') printf '%s\n' "${COMPREPLY[@]}" | sed "s/'/'\\\\''/g" ;;
        *) printf '%q\n' "${COMPREPLY[@]}" ;;
        esac)
    case ${COMPREPLY[0]}, in
    -[sfl=.], | -version, | */,) compopt -o nospace 2>/dev/null ;;
    esac
}

complete -F _tolvik tolvik tolvik-page

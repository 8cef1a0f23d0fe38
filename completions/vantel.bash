# bash completion for vantel

_vantel() {
    local cur prev words cword
    if declare -F _init_completion > /dev/null; then
        _init_completion || return
    else
        cur=${COMP_WORDS[COMP_CWORD]}
        prev=${COMP_WORDS[COMP_CWORD - 1]}
        words=("${COMP_WORDS[@]}")
        cword=$COMP_CWORD
    fi

    local commands="render thumbnail info validate new fdl"
    local formats="png tiff tif bmp gif jpeg jpg jpeg2000 jp2 pdf svg fdl"
    local command="" i
    for ((i = 1; i < cword; i++)); do
        case ${words[i]} in
            render | thumbnail | info | validate | new | fdl) command=${words[i]}; break ;;
        esac
    done

    if [[ -z $command ]]; then
        COMPREPLY=($(compgen -W "$commands --help --version" -- "$cur"))
        return
    fi

    # fdl holds commands of its own; so far only apply.
    if [[ $command == fdl ]]; then
        if [[ " ${words[*]:0:cword} " != *" apply "* ]]; then
            COMPREPLY=($(compgen -W "apply --help" -- "$cur"))
            return
        fi
        command="fdl apply"
    fi

    case $prev in
        -f | --format) COMPREPLY=($(compgen -W "$formats" -- "$cur")); return ;;
        --colors) COMPREPLY=($(compgen -W "hex hex-alpha rgba" -- "$cur")); return ;;
        -p | --preset) COMPREPLY=($(compgen -W "default test cinema social safe" -- "$cur")); return ;;
        --out-dir) mapfile -t COMPREPLY < <(compgen -d -- "$cur"); return ;;
        -o | --output) mapfile -t COMPREPLY < <(compgen -f -- "$cur"); return ;;
        -j | --jobs | -s | --size | -w | --width | --height | -z | --zoom | --background | -g | --guide | --canvas | --margin | --decision | --template) return ;;
    esac

    if [[ $cur == -* ]]; then
        local options="--help"
        case $command in
            render) options+=" --output --out-dir --format --width --height --zoom --stretch --background --flatten --jobs --canvas --decision --desqueeze" ;;
            thumbnail) options+=" --size --background --flatten" ;;
            info) options+=" --json --colors" ;;
            new) options+=" --output --preset --guide --canvas --margin --background --binary --force" ;;
            "fdl apply") options+=" --output --canvas --decision --template" ;;
        esac
        COMPREPLY=($(compgen -W "$options" -- "$cur"))
        return
    fi

    # A template is applied to framing decision lists only.
    if [[ $command == "fdl apply" ]]; then
        mapfile -t COMPREPLY < <(compgen -d -- "$cur"; compgen -f -X '!*.fdl' -- "$cur")
        return
    fi

    # Inputs: overlay documents and folders to find them in. File names are
    # read a line each, so that names with blanks stay one candidate.
    mapfile -t COMPREPLY < <(compgen -d -- "$cur"; compgen -f -X '!*.aspectratio' -- "$cur")
    # Every command but new also reads framing decision lists.
    if [[ $command != new ]]; then
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -X '!*.fdl' -- "$cur")
    fi
}
complete -o filenames -F _vantel vantel

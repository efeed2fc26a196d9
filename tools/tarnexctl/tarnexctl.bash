# Completion of tarnexctl for bash: commands, options and their values.

_tarnexctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="identify set get on off reset errors measure watch log ramp sweep list delay query console find"
    local common="--help --version --resource --options --timeout --json --trace"
    local command= word i

    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        case $word in
        -r | --resource | -o | --options | -t | --timeout) ((++i)) ;;
        -*) ;;
        *)
            command=$word
            break
            ;;
        esac
    done

    COMPREPLY=()
    case $previous in
    --at-limit)
        mapfile -t COMPREPLY < <(compgen -W "regulate trip" -- "$current")
        return
        ;;
    --end)
        local ends="off last"
        [[ $command == delay ]] && ends="off on last"
        mapfile -t COMPREPLY < <(compgen -W "$ends" -- "$current")
        return
        ;;
    --csv | --plot)
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
        return
        ;;
    -r | --resource | -o | --options | --voltage | --current | --ovp | --interval | --count | --from | --to | --step | \
        --limit | --settle | --cycles | --rate | --give-up | -t | --timeout)
        return # a number or text without completion
        ;;
    esac

    local options= arguments=
    case $command in
    "") arguments=$commands ;;
    set)
        options="--voltage --current --at-limit --ovp --no-ovp --no-confirm"
        arguments="OutputChannel1 OutputChannel2"
        ;;
    get | measure) arguments="OutputChannel1 OutputChannel2" ;;
    on | off)
        options="--no-confirm"
        arguments="OutputChannel1 OutputChannel2"
        ;;
    reset) options="--no-confirm" ;;
    watch)
        options="--interval --count"
        arguments="OutputChannel1 OutputChannel2"
        ;;
    log)
        options="--interval --count --resume"
        if [[ $current != -* ]]; then
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
        fi
        ;;
    ramp)
        options="--to --rate --from --interval --on --give-up"
        arguments="OutputChannel1 OutputChannel2"
        ;;
    sweep)
        options="--from --to --step --limit --settle --csv --plot --give-up"
        arguments="OutputChannel1 OutputChannel2"
        ;;
    list | delay)
        options="--cycles --end --on --give-up"
        if [[ $current != -* ]]; then
            mapfile -t COMPREPLY < <(compgen -f -- "$current")
            return
        fi
        ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options $common" -- "$current")
    else
        mapfile -t COMPREPLY < <(compgen -W "$arguments" -- "$current")
    fi
}

complete -o filenames -F _tarnexctl tarnexctl

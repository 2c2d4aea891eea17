# phnctl itself knows what may come next: see "phnctl __complete".
_phnctl() {
    local cur prev words cword word
    _get_comp_words_by_ref -n = cur prev words cword
    while IFS=$'\t' read -r word _; do
        case $word in
        :files) cur=${cur#--*=} && _filedir ;;
        :folders) cur=${cur#--*=} && _filedir -d ;;
        "$cur"*) [[ $word == --*=* && $COMP_WORDBREAKS == *=* ]] && word=${word#*=}
            COMPREPLY+=("$word") ;;
        esac
    done < <("$1" __complete "${words[@]:1:cword}" 2>/dev/null)
} && complete -F _phnctl phnctl

_phnsim() {
    local cur prev
    _get_comp_words_by_ref cur prev
    case $prev in
    --data | --script | --log | --record | --pcap | --to-pcap | --between | --replay | --mask) _filedir ;;
    --devices) _filedir -d ;;
    --port | --usb | --modem | --tcp | --fault | --seed | --web) ;;
    *) COMPREPLY=($(compgen -W '$(_parse_help "$1")' -- "$cur")) ;;
    esac
} && complete -F _phnsim phnsim

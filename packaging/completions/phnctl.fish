# phnctl itself knows what may come next: see "phnctl __complete".
function __phnctl_candidates
    set -l words (commandline -opc) (commandline -ct)
    command $words[1] __complete $words[2..-1] 2>/dev/null
end
complete -c phnctl -f -a '(__phnctl_candidates | string match -v ":*")'
complete -c phnctl -n '__phnctl_candidates | string match -q ":files"' -F
complete -c phnctl -n '__phnctl_candidates | string match -q ":folders"' -a '(__fish_complete_directories)'

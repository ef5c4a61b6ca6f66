# Completion of channelstrip in fish. The program itself knows what may follow: an empty line among
# its answers stands for the names of files.
function __channelstrip_complete
    set -l words (commandline --tokenize --cut-at-cursor --current-process)
    set -l current (commandline --current-token --cut-at-cursor)
    for answer in ($words[1] complete -- $words[2..] $current 2>/dev/null)
        if test -n "$answer"
            echo $answer
        else
            set -l option (string match --regex '^--[^=]*=' -- $current)
            string join \n -- "$option"(__fish_complete_path (string replace -- "$option" "" $current))
        end
    end
end
complete --command channelstrip --no-files --arguments '(__channelstrip_complete)'

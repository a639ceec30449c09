# Completion of vamba-host for fish. It asks the program itself for the candidates.
function __vamba_host_offers
    set -l before (commandline -opc)
    set -l current (commandline -ct)
    for line in ($before[1] --complete $before[2..-1] "$current" 2>/dev/null)
        if test "$line" = ':files'
            # What is offered is the whole word: "--entry=ent" becomes "--entry=entry.json".
            set -l option (string match -r '^--[a-z-]+=' -- "$current")
            for file in (__fish_complete_path (string replace -r '^--[a-z-]+=' '' -- "$current"))
                echo "$option$file"
            end
        else
            echo $line
        end
    end
end

complete -c vamba-host -f -a '(__vamba_host_offers)'

# Completion of halvorn(1) for fish.
function __halvorn_wants
    # Whether the command is one of these; without any, whether there is none yet.
    for word in (commandline -opc)[2..-1]
        string match -q -- '-*' $word; and continue
        contains -- $word $argv
        return
    end
    test (count $argv) -eq 0
end

complete -c halvorn -f
complete -c halvorn -n __halvorn_wants -a audit -d 'Compare an installed product with its source'
complete -c halvorn -n __halvorn_wants -a check -d 'What the installer reads from a product'
complete -c halvorn -n __halvorn_wants -a image -d 'Make a medium of a product and its installer'
complete -c halvorn -n __halvorn_wants -a install -d 'Install without a window'
complete -c halvorn -n __halvorn_wants -a plan -d 'What an installation would do'
complete -c halvorn -n __halvorn_wants -a remove -d 'Move an installed product to the Trash'
complete -c halvorn -n __halvorn_wants -a report -d 'Tell of the last installation'
complete -c halvorn -n __halvorn_wants -l help -d 'Tell the commands'
complete -c halvorn -l json -d 'Answer with JSON'
complete -c halvorn -n '__halvorn_wants audit check image remove' -a '(__fish_complete_directories)'
complete -c halvorn -n '__halvorn_wants check image install plan report' -l installer -r -a '(__fish_complete_directories)' -d 'The bundle of the installer'
complete -c halvorn -n '__halvorn_wants image report' -s o -l output -rF -d 'The file to write'
complete -c halvorn -n '__halvorn_wants image' -l read-me -rF -d 'Shown first'
complete -c halvorn -n '__halvorn_wants image' -l documentation -rF -d 'Behind the help button'
complete -c halvorn -n '__halvorn_wants image' -l inside -d 'The installer lies in the product'
complete -c halvorn -n '__halvorn_wants image' -l beside -d 'The installer stays on the medium'
complete -c halvorn -n '__halvorn_wants image' -l sign -x -d 'A key of gpg'
complete -c halvorn -n '__halvorn_wants install remove report' -l yes -d 'Nobody is asked'
complete -c halvorn -n '__halvorn_wants install' -l no-launch -d 'Start nothing at the end'
complete -c halvorn -n '__halvorn_wants install' -l administrator -d 'With administrator rights'
for key in sourcePath destinationPath readMePath documentationPath iconPath wrapperPath
    complete -c halvorn -n '__halvorn_wants install plan' -o $key -rF
end
for key in productName version minSystemVersion productCode quitCode completionSound completionQuit
    complete -c halvorn -n '__halvorn_wants install plan' -o $key -x
end

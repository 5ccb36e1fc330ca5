# Completion of tracelyn-cli for fish.

set -l commands info csv render stats compare pack expand help

complete -c tracelyn-cli -f
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -s h -l help -d "Print the usage"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -l version -d "Print the version"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a help -d "Print the usage"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a info -d "What is in a recording, as JSON"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a csv -d "The values as a table"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a render -d "The picture of a recording"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a stats -d "The figures of every signal"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a compare -d "How far recordings are from a good one"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a pack -d "A document into a container"
complete -c tracelyn-cli -n "not __fish_seen_subcommand_from $commands" -a expand -d "A container into its document"

complete -c tracelyn-cli -n "__fish_seen_subcommand_from info csv render stats compare pack expand" -F
complete -c tracelyn-cli -n "__fish_seen_subcommand_from info csv render stats compare" -l code -x -d "Access code"

set -l render -c tracelyn-cli -n "__fish_seen_subcommand_from render"
complete $render -l size -x -d "Width and height, WxH"
complete $render -l scheme -x -a "dark light" -d "Colours"
complete $render -l cursor -x -d "Sample of the cursor"
complete $render -l fixed -x -d "Sample of the fixed cursor"
complete $render -l zoom -x -d "Zoom around the cursor"
complete $render -l scroll -x -d "First sample in view"
complete $render -l console -x -a "left right none" -d "Where the values are"
complete $render -l toggle -x -d "Group to open or close"
complete $render -l events -d "Draw every sample"
complete $render -l compare -r -F -d "Recording behind this one"
complete $render -l align -x -a sample -d "Common zero"
complete $render -l out -x -a "(__fish_complete_directories)" -d "Folder for pictures of many files"
complete $render -l format -x -a "png svg pdf" -d "What the pictures are"

set -l stats -c tracelyn-cli -n "__fish_seen_subcommand_from stats"
complete $stats -l from -x -d "First sample"
complete $stats -l to -x -d "Last sample"
complete $stats -l while -x -d "On/off signal that is on"
complete $stats -l format -x -a "table csv json" -d "What is printed"

set -l compare -c tracelyn-cli -n "__fish_seen_subcommand_from compare"
complete $compare -l align -x -a sample -d "Common zero"
complete $compare -l tolerance -x -d "NAME=VALUE"
complete $compare -l format -x -a "table csv json" -d "What is printed"

# Completion of tracelyn for fish.
complete -c tracelyn -l help -d "Print the usage"
complete -c tracelyn -l version -d "Print the version"

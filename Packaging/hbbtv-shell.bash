# Completion of hbbtv-shell for bash: its options, and files.
complete -F _longopt hbbtv-shell

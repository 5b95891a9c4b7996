# For the scripts that test with programs of others.

# Tries a command until it succeeds, for half a minute at most. In vain, it shows how the outputs of
# the programs end.
until_true() { # COMMAND...
    tries=600
    until "$@" >/dev/null 2>&1; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || {
            echo "in vain: $*" >&2
            find "$work" -type f -exec tail -n 5 {} + >&2
            exit 1
        }
        sleep 0.05
    done
}

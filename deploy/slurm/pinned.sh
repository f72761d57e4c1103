#!/usr/bin/env bash
# Writes down which processors the step may run on, and becomes the command. Not for users.
#
#   pinned.sh FILE COMMAND...

set -euo pipefail

case ${1:-} in
    -h | --help)
        sed -n '2,${/^#/!q; s/^# \{0,1\}//; p}' "$0"
        exit 0
        ;;
esac
sed -n 's/^Cpus_allowed_list:[[:space:]]*//p' /proc/self/status >"$1"
exec "${@:2}"

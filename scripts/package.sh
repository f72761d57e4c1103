#!/usr/bin/env bash
# Makes the Debian packages in out/packages: ntkperf (programs), libntk12 (the measured library) and
# ntkperf-dev (to measure another one). Installs what is missing for that, and has lintian look at
# the packages: its errors fail.
#
#   scripts/package.sh               takes no arguments
#   scripts/package.sh -h, --help    this text
#
# To install them: apt install ./out/packages/*.deb

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || refuse "'$1' is not known: takes no arguments"
need_writable "$top/build" "$top/out"
"$top/scripts/install.sh" --packages
build package
packages=$top/out/packages
rm -rf "$packages"
say "packing"
(cd "$top" && cpack --preset package -B "$packages" </dev/null)
rm -r "$packages/_CPack_Packages"
say "lintian"
lintian --fail-on error "$packages"/*.deb
ls -l "$packages"

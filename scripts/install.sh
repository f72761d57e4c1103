#!/usr/bin/env bash
# Installs the Debian packages that the project needs and that are missing. Does nothing, and
# needs no rights, when all are there.
#
#   scripts/install.sh              what building, measuring and testing need
#   scripts/install.sh --tests      also what reads the project's files in tests that are skipped
#                                   without it
#   scripts/install.sh --checks     also what .ci/run checks the sources with
#   scripts/install.sh --packages   also what scripts/package.sh makes packages with
#   scripts/install.sh --bare       also what scripts/package-test.sh tries them with
#   scripts/install.sh --cluster    also what scripts/cluster-test.sh makes a cluster of

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

packages=(
    g++ cmake ninja-build                  # to build
    liblz4-dev libdeflate-dev libisal-dev  # inside the measured library
    libdivsufsort-dev liblzo2-dev libzfp-dev
    zlib1g-dev                             # checksums of the corpus; comparisons and tests
    bzip2 libbz2-dev                       # comparisons and tests
    libcli11-dev nlohmann-json3-dev        # command lines, JSON
    libjs-chart.js                         # plots of the report
    libbenchmark-dev                       # compared with ntkcompare
    libgtest-dev                           # tests
    perl                                   # man pages and completions
)
case ${1:-} in
    --tests)
        packages+=(libbenchmark-tools python3-numpy python3-scipy) # reports in other formats
        packages+=(chromium chromium-driver python3-selenium)      # the report as a page
        packages+=(python3-jsonschema)                             # records for programs
        packages+=(man-db bash-completion zsh)                     # man pages and completions
        ;;
    --checks)
        packages+=(clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev shellcheck valgrind)
        ;;
    --packages) packages+=(dpkg-dev file fakeroot lintian) ;;
    --bare) packages+=(debootstrap) ;;
    --cluster) packages+=(slurm-wlm munge util-linux) ;;
    "") ;;
    *) refuse "'$1' is not known: the arguments are --tests, --checks, --packages, --bare and --cluster" ;;
esac

is_installed() {
    [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

apt() {
    local as_root=()
    if ((EUID != 0)); then
        as_root=(sudo)
    fi
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get --quiet --option DPkg::Lock::Timeout=120 "$@" </dev/null
}

if ! command -v dpkg-query >/dev/null; then
    say "no Debian packages on this machine: not checking for ${packages[*]}"
    exit 0
fi

missing=()
for package in "${packages[@]}"; do
    is_installed "$package" || missing+=("$package")
done
if ((${#missing[@]} == 0)); then
    say "all needed packages are installed"
    exit 0
fi

if ((EUID != 0)) && ! command -v sudo >/dev/null; then
    fail "packages are missing: ${missing[*]}. Run this as root: apt-get install ${missing[*]}"
fi
say "installing ${missing[*]}"
# One source of several may be out of reach and the packages still be known.
apt update || say "not all package lists could be read (see above), going on with those at hand"
apt install --yes --no-install-recommends "${missing[@]}" ||
    fail "the installation failed (see above); still missing: ${missing[*]}"

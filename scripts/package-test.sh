#!/usr/bin/env bash
# Tries the packages of scripts/package.sh in a bare Debian 12: installs them, uses them, purges
# them, and fails unless nothing is left. By hand and as root: it fetches a Debian of some 200 MB
# (debootstrap, which it installs; kept in build/bare.tar) and changes its root to build/bare.
#
#   scripts/package-test.sh               takes no arguments
#   scripts/package-test.sh -h, --help    this text

# shellcheck source-path=SCRIPTDIR source=common.sh
. "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || refuse "'$1' is not known: takes no arguments"
((EUID == 0)) || fail "only root can change the root: run it as root"
compgen -G "$top/out/packages/*.deb" >/dev/null ||
    fail "no packages in out/packages: run scripts/package.sh first"
"$top/scripts/install.sh" --bare
bare=$top/build/bare
packages=(ntkperf ntkperf-dev libntk12)

inside() {
    chroot "$bare" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root \
        TERM=dumb DEBIAN_FRONTEND=noninteractive "$@"
}

apt_inside() {
    inside apt-get --quiet=2 --no-install-recommends --option Dpkg::Use-Pty=0 "$@" </dev/null
}

# shown COMMAND: what a user types, in the folder that the corpus is in.
shown() {
    printf '$ %s\n' "$1"
    inside bash -c "cd /root && $1" 2>&1 </dev/null ||
        fail "it ended with status $?"
}

# All files but those that apt, dpkg, ldconfig and mandb keep about others.
files_inside() {
    (cd "$bare" && find . -xdev \( -path ./proc -o -path ./sys -o -path ./var/cache -o \
        -path ./var/lib/apt -o -path ./var/log -o -path ./tmp -o -path ./root \) -prune -o -print |
        grep -v '^./var/lib/dpkg/.*-old$\|^./var/lib/dpkg/triggers\|^./etc/ld.so.cache$' |
        LC_ALL=C sort)
}

leave() {
    ! mountpoint -q "$bare/proc" || umount "$bare/proc"
}

fetch_bare() {
    say "fetching a bare Debian 12"
    debootstrap --variant=minbase bookworm "$bare" >"$top/build/bare.log" ||
        fail "debootstrap failed: see build/bare.log"
    # Readers of what the packages bring; not needed to measure.
    apt_inside update
    apt_inside install man-db bash-completion >/dev/null
    apt_inside clean
    tar -cf "$bare.tar" --one-file-system -C "$bare" .
}

make_bare() {
    trap leave EXIT
    leave
    rm -rf --one-file-system "$bare"
    mkdir -p "$bare"
    if [[ -e $bare.tar ]]; then
        tar -xf "$bare.tar" -C "$bare"
    else
        fetch_bare
    fi
    mountpoint -q "$bare/proc" || mount -t proc proc "$bare/proc"
}

make_bare
files_inside >"$top/build/bare.before"
mkdir "$bare/root/packages"
cp "$top"/out/packages/*.deb "$bare/root/packages"
say "installing"
shown 'apt-get -qq --no-install-recommends install ./packages/*.deb 2>/dev/null | grep "^Setting up .*ntk"'
say "using"
shown 'ntkperf -h | sed -n 5,8p'
shown 'ntkcorpus corpus | tail -n 1'
shown 'cd corpus && ntkperf -B -f=ntksEncodeLZ4_8u -dCodeFile=book1 -dCodeLength=65536 | grep "perf=\|Successes"'
shown 'ntkcompare -q -t 0.2 own own -- -f=ntksAdler32_8u -dCodeLength=65536 | tail -n 1'
inside env LD_LIBRARY_PATH=/usr/lib/x86_64-linux-gnu ntkperf -B -fAdler -dCodeLength=1000 |
    grep 'was loaded from' && fail "the package's own library counts as another build, see above"
shown 'man ntkperf | sed -n 3,4p'
shown 'man -k ntk'
cp "$top/tests/packaging/bash_completion.sh" "$bare/root"
shown '. ./bash_completion.sh; _completion_loader ntkperf; offered "ntkperf -L"; offered "ntkperf -f=ntksDecodeLZO"'
say "purging"
apt_inside purge "${packages[@]}" >/dev/null
apt_inside autoremove --purge >/dev/null
files_inside >"$top/build/bare.after"
diff "$top/build/bare.before" "$top/build/bare.after" || fail "something is left, see above"
say "nothing is left"

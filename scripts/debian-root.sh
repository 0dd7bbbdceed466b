# SPDX-License-Identifier: Apache-2.0
# shellcheck shell=bash
#
# A fresh Debian 12 in a directory, for the scripts that source this file.

DEBIAN_MIRROR=${DEBIAN_MIRROR:-http://deb.debian.org}
DEBIAN_SUITES="debian/bookworm debian/bookworm-updates debian-security/bookworm-security"

require_root() {
    if [ "$(id -u)" -ne 0 ]; then
        echo "$0: needs root, to install a Debian system in a directory" >&2
        exit 1
    fi
}

# make_root DIRECTORY PACKAGE...: the smallest system, and the packages. Logs to DIRECTORY.log.
make_root() {
    local root=$1
    shift
    logged "$root.log" debootstrap --variant=minbase bookworm "$root" "$DEBIAN_MIRROR/debian"
    local suite mounted
    for suite in $DEBIAN_SUITES; do
        echo "deb $DEBIAN_MIRROR/${suite%/*} ${suite#*/} main"
    done > "$root/etc/apt/sources.list"
    cp /etc/resolv.conf /etc/hosts "$root/etc/"
    for mounted in proc dev dev/pts; do
        mount --bind "/$mounted" "$root/$mounted"
    done
    apt_in_root "$root" update
    apt_in_root "$root" upgrade
    [ $# -eq 0 ] || apt_in_root "$root" install --no-install-recommends "$@"
}

# in_root DIRECTORY COMMAND...
in_root() {
    local root=$1
    shift
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@"
}

# apt_in_root DIRECTORY COMMAND...: what apt prints goes to DIRECTORY.log.
apt_in_root() {
    local root=$1
    shift
    echo "apt-get $*"
    logged "$root.log" in_root "$root" apt-get -y "$@"
}

# logged FILE COMMAND...: prints the end of the log if the command fails.
logged() {
    local log=$1
    shift
    "$@" >> "$log" 2>&1 || { tail -n 200 "$log"; echo "$0: $1 has failed" >&2; exit 1; }
}

# remove_root DIRECTORY: also after make_root has failed, or was not called.
remove_root() {
    local root=$1 mounted
    for mounted in dev/pts dev proc; do
        ! mountpoint -q "$root/$mounted" 2> /dev/null || umount "$root/$mounted" || return
    done
    rm -rf --one-file-system "$root"
}

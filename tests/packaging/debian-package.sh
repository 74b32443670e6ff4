#!/usr/bin/env bash
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
#
# debian-package.sh FILE.deb: what becomes of a bare Debian 12 and of a user's data when the package is installed, used
# in a session with a panel of Xfce, upgraded, removed and purged. Called by tools/package --check.
set -euo pipefail
# shellcheck source=../../tools/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../tools/common.sh"

[[ $EUID -eq 0 ]] || fail "needs root, for a root folder of its own"
package=$(realpath "$1")

# Mounts are made in a name space of our own, so that nothing of them is left, however this ends.
if [[ -z ${LAPSA_CHECK_FOLDER:-} ]]; then
    install_missing fresh package
    LAPSA_CHECK_FOLDER=$(mktemp -d "${TMPDIR:-/tmp}/lapsa-debian.XXXXXX")
    export LAPSA_CHECK_FOLDER
    trap 'rm -rf --one-file-system "$LAPSA_CHECK_FOLDER"' EXIT
    unshare --mount --pid --fork --kill-child "$0" "$package"
    exit
fi

fresh=$LAPSA_CHECK_FOLDER
home=/home/anna
data="$fresh$home/.local/share/Lapsa"
conffile=/etc/xdg/autostart/org.lapsa.Lapsa.desktop

claim() { say "ok: $*"; }

# Both words of a claim that does not hold end the run.
expect() {
    local what=$1
    shift
    "$@" || fail "does not hold: $what"
    claim "$what"
}

inside() {
    chroot "$fresh" /usr/bin/env -i HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin "$@" </dev/null
}

# Where this machine's own apt gets Debian 12 from, unless another place is given.
mirror() {
    if [[ -n ${LAPSA_MIRROR:-} ]]; then
        printf '%s\n' "$LAPSA_MIRROR"
    else
        # shellcheck disable=SC2016 # the names in it are apt's
        apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT) $(CREATED_BY)' |
            awk '$2 == "bookworm" && $3 == "main" && $4 == "Packages" { print $1; exit }'
    fi
}

bare_system() {
    local log="$fresh.log"
    # shellcheck disable=SC2046 # no word at all where apt knows no mirror
    debootstrap --variant=minbase bookworm "$fresh" $(mirror) >"$log" 2>&1 || { tail -n 5 "$log" >&2; return 1; }
    rm -f "$log"
    chmod 0755 "$fresh"
    mount --bind "$fresh" "$fresh"
    mount -t proc proc "$fresh/proc"
    mount --rbind /sys "$fresh/sys"
    mount --rbind /dev "$fresh/dev"
    mount -t tmpfs -o mode=1777 tmpfs "$fresh/dev/shm"
    mount -t tmpfs -o mode=755 tmpfs "$fresh/run"
    mount -t tmpfs -o mode=1777 tmpfs "$fresh/tmp"
    cp "$package" "$fresh/root/"
    inside apt-get -q update >/dev/null
}

deb="/root/${package##*/}"

# What apt would do, in its own words.
cost() {
    local option
    for option in --install-recommends --no-install-recommends; do
        say "apt $option:"
        inside apt-get --assume-no "$option" install "$deb" 2>/dev/null |
            grep -E 'newly installed|Need to get|additional disk space' | sed 's/^/    /' >&2 || true
    done
}

apt() {
    inside apt-get -q -y -o Dpkg::Options::=--force-confdef -o Dpkg::Options::=--force-confold "$@"
}

defaults() {
    local type
    for type in inode/directory application/octet-stream text/plain application/zip; do
        inside gio mime "$type" | head -n 1
    done
}

# The user's data as it is: names, times, contents.
inventory() { (cd "$data" && find . -type f -printf '%P %T@ ' -exec sha256sum {} \; | sort); }

# shellcheck disable=SC2016 # the names in it are dpkg's
status_is() { [[ "$(inside dpkg-query -W -f='${db:Status-Status} ${Version}' lapsa 2>/dev/null)" == "$1" ]]; }

# Whether the pages lead only to what comes with them.
pages_lead_on() {
    local page link broken=0
    while IFS= read -r page; do
        while IFS= read -r link; do
            [[ -e ${page%/*}/$link ]] || { say "$page leads to $link"; broken=1; }
        done < <(grep -oE '(\]\(|src=")[^)":#]+' "$page" | sed -E 's,^(\]\(|src="),,')
    done < <(find "$fresh/usr/share/doc/lapsa" -name '*.md')
    return $broken
}

# The same package as a later version.
later() {
    inside sh -c "cd /root && dpkg-deb -R '$deb' later && sed -i 's/^Version: .*/&+later/' later/DEBIAN/control &&
        dpkg-deb --root-owner-group -b later later.deb >/dev/null"
}

version=$(dpkg-deb -f "$package" Version)
say "A bare Debian 12"
bare_system
cost

say "Installing"
apt install "$deb" >"$fresh/root/install.log" 2>&1 || { tail -n 20 "$fresh/root/install.log" >&2; fail "apt install failed"; }
expect "it is installed" status_is "installed $version"
expect "every file is as packed" inside dpkg -V lapsa
expect "the unit is one that systemd understands" inside env XDG_RUNTIME_DIR=/tmp \
    systemd-analyze --user verify --man=no /usr/lib/systemd/user/app-org.lapsa.Lapsa.service
expect "the pages lead to what is there" pages_lead_on
expect "no library is missing" inside sh -c '! ldd /usr/bin/lapsa | grep "not found"'

say "A desktop around it"
apt install --no-install-recommends xfce4-panel xfwm4 xvfb xdotool x11-utils thunar pcmanfm xfconf dbus-daemon \
    desktop-file-utils man-db >"$fresh/root/desktop.log" 2>&1 ||
    { tail -n 20 "$fresh/root/desktop.log" >&2; fail "the desktop could not be installed"; }
expect "the desktop entry is in order" inside desktop-file-validate /usr/share/applications/org.lapsa.Lapsa.desktop
inside useradd --create-home --shell /bin/bash anna
with_lapsa=$(defaults)

# A session of its own bus, without a user manager: that would want a machine that was booted.
install -m 0755 "$root/tests/packaging/debian-session.sh" "$fresh/usr/local/bin/check-session"
inside setpriv --reuid anna --regid anna --init-groups env HOME="$home" USER=anna dbus-run-session -- check-session >&2 ||
    fail "the session under the panel of Xfce failed"

say "Upgrading"
inside sh -c "echo Hidden=true >>$conffile"
before=$(inventory)
[[ $before == *state.json* ]] || fail "the session left no data"
later
apt install /root/later.deb >"$fresh/root/upgrade.log" 2>&1 || { tail -n 20 "$fresh/root/upgrade.log" >&2; fail "the upgrade failed"; }
expect "it is upgraded" status_is "installed $version+later"
expect "what was switched off stays off" grep -q '^Hidden=true' "$fresh$conffile"
expect "an upgrade leaves the data alone" test "$(inventory)" = "$before"

say "Removing"
apt remove lapsa >"$fresh/root/remove.log" 2>&1 || { tail -n 20 "$fresh/root/remove.log" >&2; fail "the removal failed"; }
expect "it is removed" status_is "config-files $version+later"
expect "the removal says where the data is" grep -q 'local/share/Lapsa' "$fresh/root/remove.log"
expect "the program is gone" test ! -e "$fresh/usr/bin/lapsa"
expect "the settings of the administrator are kept" test -e "$fresh$conffile"
expect "a removal leaves the data alone" test "$(inventory)" = "$before"
expect "no kind of file has another default than with Lapsa" test "$(defaults)" = "$with_lapsa"

say "Installing again, and purging"
apt install "$deb" >/dev/null 2>&1 || fail "the second installation failed"
expect "it is installed again" status_is "installed $version"
expect "it is still switched off" grep -q '^Hidden=true' "$fresh$conffile"
apt purge lapsa >"$fresh/root/purge.log" 2>&1 || { tail -n 20 "$fresh/root/purge.log" >&2; fail "the purge failed"; }
expect "nothing of it is left in the system" \
    test -z "$(find "$fresh/usr" "$fresh/etc" "$fresh/var" -iname '*lapsa*' -not -path '*/apt/archives/*')"
expect "a purge leaves the data alone" test "$(inventory)" = "$before"
say "All of it holds."

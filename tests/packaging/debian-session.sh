#!/usr/bin/env bash
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
#
# Run by debian-package.sh inside the bare system, as an ordinary user: a session with the panel of Xfce, in which the
# installed Lapsa is started from the panel, at login and over the bus, and crashes.
set -euo pipefail

say() { printf '%s\n' "$*"; }

fail() {
    say "does not hold: $*"
    tail -n 20 "$HOME/session.log" || true
    exit 1
}

# until_true WHAT COMMAND...: looks until it holds; the limit is for a machine under load.
until_true() {
    local what=$1 deadline=$((SECONDS + 60))
    shift
    until "$@" >/dev/null 2>&1; do
        ((SECONDS < deadline)) || fail "$what"
        sleep 0.1
    done
    say "ok: $what"
}

has_owner() { [[ "$(gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
    --method org.freedesktop.DBus.NameHasOwner org.lapsa.Lapsa)" == "(true,)" ]]; }
has_no_owner() { ! has_owner; }

process() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.GetConnectionUnixProcessID org.lapsa.Lapsa 2>/dev/null | grep -oE '[0-9]+,' | tr -d ,
}

shown_in_tray() {
    gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path /StatusNotifierWatcher \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierWatcher RegisteredStatusNotifierItems |
        grep -q "StatusNotifierItem"
}

window() { xdotool search --onlyvisible --class '^lapsa$'; }
no_window() { [[ -z "$(window 2>/dev/null)" ]]; }
# 430 x 560 and what surrounds it; the splash is a square.
panel_open() {
    local id
    for id in $(window); do
        [[ "$(xdotool getwindowname "$id")" == Lapsa ]] &&
            xdotool getwindowgeometry "$id" | grep -qE 'Geometry: (4[3-9][0-9])x(5[6-9]|6[0-9])[0-9]' && return 0
    done
    return 1
}

listed() { grep -qE "\"displayName\" ?: \"$1\"" "$HOME/.local/share/Lapsa/state.json"; }

exec_of() { sed -n "s/^Exec=//p" "$1" | head -n 1; }

cd "$HOME"
mkdir -p .config/xfce4/xfconf/xfce-perchannel-xml Downloads
printf 'report\n' >Downloads/report.zip
printf 'other\n' >Downloads/other.pdf
cat >.config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/><value type="int" value="2"/><value type="int" value="3"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="launcher">
      <property name="items" type="array"><value type="string" value="org.lapsa.Lapsa.desktop"/></property>
    </property>
    <property name="plugin-2" type="string" value="separator">
      <property name="expand" type="bool" value="true"/><property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-3" type="string" value="systray"/>
  </property>
</channel>
END

export XDG_CURRENT_DESKTOP=XFCE XDG_SESSION_TYPE=x11 NO_AT_BRIDGE=1 LANG=C.UTF-8
exec 3>"$HOME/session.log"
Xvfb -displayfd 4 -screen 0 1280x1024x24 -nolisten tcp 4>"$HOME/display" >&3 2>&1 &
until_true "the X server runs" test -s "$HOME/display"
DISPLAY=":$(cat "$HOME/display")"
export DISPLAY
dbus-update-activation-environment DISPLAY
xfwm4 >&3 2>&1 &
until_true "the window manager runs" xprop -root _NET_SUPPORTING_WM_CHECK
xfce4-panel --disable-wm-check >&3 2>&1 &
until_true "the panel of Xfce shows a tray" gdbus introspect --session --dest org.kde.StatusNotifierWatcher \
    --object-path /StatusNotifierWatcher
until_true "the panel of Xfce is on the screen" xdotool search --onlyvisible --class xfce4-panel

has_no_owner || fail "Lapsa runs before it was started"
# The panel may still put its buttons in order; but a click that counted must not be followed by another.
press_launcher() {
    xdotool mousemove 14 14 click 1
    local deadline=$((SECONDS + 10))
    until has_owner; do
        ((SECONDS < deadline)) || return 1
        sleep 0.1
    done
}
until_true "a click on its launcher in the panel starts Lapsa" press_launcher
until_true "its icon is in the tray" shown_in_tray
until_true "the splash goes" no_window
xdotool mousemove 14 14 click 1
until_true "another click on the launcher opens its panel" panel_open
gio launch /usr/share/applications/org.lapsa.Lapsa.desktop "$HOME/Downloads/report.zip"
until_true "a file given to the desktop entry is on countdown" listed report.zip
gapplication action org.lapsa.Lapsa quit
until_true "its action ends it" has_no_owner

login=$(exec_of /etc/xdg/autostart/org.lapsa.Lapsa.desktop)
$login >&3
until_true "the autostart entry starts it" has_owner
first=$(process)
until_true "its icon is in the tray again" shown_in_tray
until_true "the splash goes again" no_window
$login >&3
[[ "$(process)" == "$first" ]] || fail "the autostart entry started another one"
no_window || fail "the autostart entry opened a window of the one that ran"
say "ok: started twice at login, it is one process and shows no panel"

kill -KILL "$first"
until_true "after a crash it is gone" has_no_owner
gio launch /usr/share/applications/org.lapsa.Lapsa.desktop "$HOME/Downloads/other.pdf"
until_true "the next call brings it back" has_owner
until_true "and it takes files" listed other.pdf
listed report.zip || fail "the crash has cost a file its countdown"
gapplication action org.lapsa.Lapsa quit
until_true "Quit ends it for good" has_no_owner

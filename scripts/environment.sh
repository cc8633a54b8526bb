# shellcheck shell=bash
# Sourced by ./run, ./test and scripts/*: the environment that every program of this project runs in, and the
# functions that make Wine prefixes and an X server of our own. Starts nothing by itself.
#
#   make_prefix_template          build/wine/template, once; made anew when Wine or this file's recipe changes
#   new_prefix DIR [managed]      DIR becomes a fresh prefix, whatever it was; "managed" gives its windows to the
#                                 window manager, for a real display
#   ensure_prefix DIR [managed]   the same, but keeps a prefix that is still good
#   remove_prefix DIR             ends it and removes it
#   end_prefix DIR                ends every program of that prefix and waits until its registry is on disk
#   start_xvfb / stop_xvfb        an X server on a free display: exports DISPLAY and ZARN_WINE_DISPLAY; ZARN_SCREEN is
#                                 its size (1280x900)
#   with_xvfb COMMAND [ARG...]    runs the command with such a server; its exit status
#
# A prefix shares C:\windows with the template: a program that writes there needs `cp -a` of the template instead.

ZARN_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
ZARN_BUILD=$ZARN_ROOT/build
ZARN_WINE=$ZARN_BUILD/wine
export ZARN_ROOT ZARN_BUILD ZARN_WINE

# File names outside ASCII can be created under Wine only with an existing UTF-8 locale.
export LC_ALL=C.UTF-8
export WINEARCH=win32
export WINEDEBUG=${WINEDEBUG:--all}
# No offers to download a browser engine or .NET, no menu entries in the user's desktop.
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe='
# Debian's Wine leaves a folder for its server's socket in TMPDIR for every prefix and never removes it.
export TMPDIR=$ZARN_BUILD/tmp
mkdir -p "$TMPDIR" "$ZARN_WINE"

prefix_recipe=4 # one more whenever the recipe below changes

# Says what a prefix was made of; its place counts because prefixes point into the template.
prefix_stamp() { printf '%s recipe %s in %s\n' "$(wine --version 2>/dev/null)" "$prefix_recipe" "$ZARN_WINE"; }

# The prefix of wine-run's programs. Windows of a prefix live on one display only, so each display has its own.
default_prefix() { printf '%s/tests%s' "$ZARN_WINE" "${ZARN_WINE_DISPLAY:+-display${ZARN_WINE_DISPLAY#:}}"; }

# Ends every program of the prefix $1; the server writes the registry before it goes, so it is never killed by signal.
end_prefix() {
  [ -d "$1" ] || return 0
  local prefix
  prefix=$(cd "$1" && pwd)
  WINEPREFIX=$prefix wineserver -k >/dev/null 2>&1 || true
  WINEPREFIX=$prefix wineserver -w >/dev/null 2>&1 || true
}

# Removes the socket folder of the prefix $1, whose programs have ended: Debian's Wine notes its name in the prefix.
forget_socket() {
  local folder
  folder=$(cat "$1/wineserver" 2>/dev/null || true)
  case $folder in
    */* | '') ;;
    wine-*) rm -rf "${TMPDIR:?}/$folder" ;;
  esac
  rm -f "$1/wineserver"
}

remove_prefix() {
  [ -e "$1" ] || return 0
  end_prefix "$1"
  forget_socket "$1"
  rm -rf "$1"
}

make_prefix_template() {
  local template=$ZARN_WINE/template lock
  exec {lock}>"$ZARN_WINE/template.lock"
  flock "$lock"
  if [ "$(cat "$template/zarn-stamp" 2>/dev/null)" != "$(prefix_stamp)" ]; then
    build_prefix_template "$template" || {
      exec {lock}>&-
      echo "cannot make the Wine prefix template, see $ZARN_WINE/template.log" >&2
      return 1
    }
  fi
  exec {lock}>&-
}

build_prefix_template() {
  local template=$1
  remove_prefix "$template"
  # Without a display and with the lock's descriptor closed: Wine's server outlives this function and inherits both.
  (
    exec {lock}>&- >"$ZARN_WINE/template.log" 2>&1 </dev/null
    unset DISPLAY
    export WINEPREFIX=$template
    wineboot -i || exit 1
    # Wine of Debian does not look for its own fonts where fonts-wine puts them; dialogs get their true size with them.
    cp /usr/share/wine/fonts/*.ttf /usr/share/wine/fonts/*.fon "$template/drive_c/windows/Fonts/" || exit 1
    # Managed=N: Wine draws title bars itself and hiding a window does not wait 2 s for a window manager.
    # The other two: a crash ends the program at once with a status of its own instead of a debugger's window.
    write_registry "$template" '[HKEY_CURRENT_USER\Software\Wine\X11 Driver]' '"Managed"="N"' \
      '[HKEY_CURRENT_USER\Software\Wine\WineDbg]' '"ShowCrashDialog"=dword:00000000' \
      '[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]' '"Debugger"="false"' \
      '[HKEY_CURRENT_USER\Software\Wine\Fonts\Replacements]' '"MS UI Gothic"="VL Gothic"' \
      '"SimSun"="VL Gothic"' '"Segoe UI Symbol"="Liberation Sans"' || exit 1
    end_prefix "$template"
    forget_socket "$template"
    # Desktop, Documents and the like are links into the user's real home folder.
    local link
    for link in "$template"/drive_c/users/*/*; do
      if [ -L "$link" ]; then
        rm "$link" && mkdir "$link" || exit 1
      fi
    done
  ) || return 1
  prefix_stamp >"$template/zarn-stamp"
}

# write_registry PREFIX LINE... : imports the lines as a registry file.
write_registry() {
  local prefix=$1 file=$1/import.reg
  shift
  printf 'REGEDIT4\n' >"$file"
  printf '\n%s' "$@" >>"$file"
  printf '\n' >>"$file"
  env -u DISPLAY WINEPREFIX="$prefix" wine regedit /S "Z:${file//\//\\}" >/dev/null 2>&1 </dev/null
  local status=$?
  rm -f "$file"
  return "$status"
}

new_prefix() {
  local prefix=$1 kind=${2:-unmanaged} template=$ZARN_WINE/template
  make_prefix_template || return 1
  remove_prefix "$prefix"
  mkdir -p "$prefix/drive_c"
  prefix=$(cd "$prefix" && pwd)
  cp "$template"/*.reg "$template/.update-timestamp" "$prefix/"
  cp -a "$template/dosdevices" "$prefix/"
  cp -a "$template/drive_c/users" "$template/drive_c/ProgramData" "$template/drive_c/Program Files" "$prefix/drive_c/"
  ln -s "$template/drive_c/windows" "$prefix/drive_c/windows"
  if [ "$kind" = managed ]; then
    sed -i 's/^"Managed"="N"/"Managed"="Y"/' "$prefix/user.reg"
  fi
  printf '%s %s\n' "$(prefix_stamp)" "$kind" >"$prefix/zarn-stamp"
}

ensure_prefix() {
  local prefix=$1 kind=${2:-unmanaged}
  make_prefix_template || return 1
  if [ "$(cat "$prefix/zarn-stamp" 2>/dev/null)" != "$(prefix_stamp) $kind" ]; then
    new_prefix "$prefix" "$kind"
  fi
}

start_xvfb() {
  local output number=
  exec {output}< <(
    exec Xvfb -displayfd 1 -screen 0 "${ZARN_SCREEN:-1280x900}x24" -nolisten tcp -noreset 2>"$ZARN_BUILD/xvfb.log" </dev/null
  )
  xvfb_pid=$!
  read -r -t 30 -u "$output" number || true
  exec {output}<&-
  if [ -z "$number" ]; then
    stop_xvfb
    echo "Xvfb does not start, see $ZARN_BUILD/xvfb.log" >&2
    return 1
  fi
  # wine-run hands a display to programs only if this one is set, so that tests do not open windows on a user's screen.
  export DISPLAY=:$number ZARN_WINE_DISPLAY=:$number
}

stop_xvfb() {
  [ -n "${xvfb_pid:-}" ] || return 0
  [ -z "${ZARN_WINE_DISPLAY:-}" ] || remove_prefix "$(default_prefix)"
  kill "$xvfb_pid" 2>/dev/null || true
  wait "$xvfb_pid" 2>/dev/null || true
  xvfb_pid=
  unset DISPLAY ZARN_WINE_DISPLAY
}

# In a subshell, so that the server ends however the command ends.
with_xvfb() (
  trap stop_xvfb EXIT
  trap 'exit 143' TERM
  trap 'exit 130' INT
  start_xvfb || exit 1
  "$@"
)

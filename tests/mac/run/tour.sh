#!/usr/bin/env bash
# One installation after the other through the macOS window, in GNUstep's AppKit on an X server of its own: clicked and typed
# by real events, each state held in a picture, what was copied compared byte by byte.
#   tour.sh PROGRAM RESOURCES FOLDER
# PROGRAM is mac_installer; RESOURCES the folder of the installer's resources; FOLDER is made anew, with the pictures in it.
set -euo pipefail
program=$(readlink -f "$1"); resources=$(readlink -f "$2"); rm -rf "$3"; mkdir -p "$3"; folder=$(readlink -f "$3")
failures=0

fail() { echo "FAILED: $*" >&2; failures=$((failures + 1)); }
# until SECONDS COMMAND...: whether the command succeeds within that time.
until_true() {
  local end=$((SECONDS + $1)); shift
  until "$@" >/dev/null 2>&1; do [ "$SECONDS" -lt "$end" ] || return 1; sleep 0.05; done
}
expect() { local what=$1; shift; until_true 20 "$@" || fail "$what"; }

# --- what there is to install, and the installer's bundle
export HOME="$folder/home"; mkdir -p "$HOME/Library/Logs" "$HOME/Applications"
app="$folder/HalvornInstaller.app"
mkdir -p "$app/Contents/MacOS"
cp -r "$resources" "$app/Contents/Resources"
cp "$(dirname "$resources")/Info.plist" "$app/Contents/Info.plist"
ln -s "$program" "$app/Contents/MacOS/HalvornInstaller"
product() {  # product FOLDER VERSION [MORE]
  mkdir -p "$1/Contents/MacOS" "$1/Contents/Resources"
  cat >"$1/Contents/Info.plist" <<PLIST
<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0"><dict>
<key>CFBundleExecutable</key><string>Sample</string><key>CFBundleIconFile</key><string>Sample</string>
<key>CFBundleSignature</key><string>SMPL</string><key>CFBundleShortVersionString</key><string>$2</string>
<key>CFBundleIdentifier</key><string>example.sample</string>${3:-}
</dict></plist>
PLIST
  printf '#!/bin/sh\necho %s\n' "$2" >"$1/Contents/MacOS/Sample"; chmod 755 "$1/Contents/MacOS/Sample"
  cp "$resources/HalvornInstaller.icns" "$1/Contents/Resources/Sample.icns"
  head -c 300000 /dev/urandom >"$1/Contents/Resources/data"
}
product "$folder/image/Sample.app" 2.0
product "$folder/old.app" 1.0
product "$folder/new/Sample.app" 3.0 '<key>LSMinimumSystemVersion</key><string>99.0</string>'
readme="$folder/image/Read Me.rtf"
printf '%s\n' '{\rtf1\ansi{\fonttbl{\f0\fswiss Helvetica;}}\f0\fs36 Sample 2.0\par\fs24\par This is what is new:\par' \
  'it is made for two kinds of desktops\par it is copied by the engine of the system\par}' >"$readme"
printf '<html><body>Guide</body></html>' >"$folder/image/Guide.html"
destination="$HOME/Applications/Sample.app"

# --- a screen
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp -noreset 3>"$folder/display" >/dev/null 2>&1 &
server=$!
installer=
leave() {
  [ -z "$installer" ] || kill "$installer" 2>/dev/null || true
  kill "$server" 2>/dev/null || true
  # What GNUstep starts beside a program, for this home folder alone.
  for pid in $(pgrep -f 'gdnc|gpbs' || true); do
    if tr '\0' '\n' <"/proc/$pid/environ" 2>/dev/null | grep -qx "HOME=$HOME"; then kill "$pid" || true; fi
  done
}
trap leave EXIT
until_true 20 test -s "$folder/display" || { echo "no X server" >&2; exit 1; }
DISPLAY=":$(cat "$folder/display")"; export DISPLAY
log="$HOME/Library/Logs/HalvornInstaller.log"

# start NAME ARGUMENT...: the installer, and its window.
start() {
  state=$1; shift
  : >"$log"; : >"$folder/$state.out"
  HALVORN_MAC_BUNDLE="$app" HALVORN_AS_ROOT=container "$app/Contents/MacOS/HalvornInstaller" "$@" >"$folder/$state.out" 2>&1 &
  installer=$!
  until_true 20 find_window || { fail "$state: no window"; cat "$log" "$folder/$state.out" >&2; return 1; }
  read -r left top < <(xwininfo -id "$window" | awk '/Absolute upper-left X/{x=$NF} /Absolute upper-left Y/{y=$NF} END{print x, y}')
}
# The largest of the program's windows.
find_window() {
  window=
  local id width height
  while read -r id; do
    read -r width height < <(xwininfo -id "$id" | awk '/Width:/{w=$2} /Height:/{h=$2} /Map State/{m=$NF} END{if (m=="IsViewable") print w, h; else print 0, 0}')
    if [ "${width:-0}" -ge 600 ] && [ "${height:-0}" -ge 380 ]; then window=$id; fi
  done < <(xdotool search --onlyvisible --class . 2>/dev/null)
  [ -n "$window" ]
}
# picture NAME [OTHER]: a state is reached when the screen stays the same in two looks and no longer looks like the other.
picture() {
  local before=none now other=none end=$((SECONDS + 20))
  [ ! -e "$folder/${2:-}.png" ] || other=$(md5sum <"$folder/$2.png")
  while [ "$SECONDS" -lt "$end" ]; do
    import -window root "$folder/$1.png" 2>/dev/null
    now=$(md5sum <"$folder/$1.png")
    if [ "$now" = "$before" ] && [ "$now" != "$other" ]; then return; fi
    before=$now; sleep 0.1
  done
  fail "$1 looks like ${2:-something that moves}"
}
click() {  # click X Y in the window
  xdotool mousemove $((left + $1)) $((top + $2)) mousedown 1
  sleep 0.05
  xdotool mouseup 1
}
# moving NAME OTHER: a state in which something turns is reached when the screen no longer looks like the other.
moving() {
  local end=$((SECONDS + 20)) other
  other=$(md5sum <"$folder/$2.png")
  while [ "$SECONDS" -lt "$end" ]; do
    import -window root "$folder/$1.png" 2>/dev/null
    if [ "$(md5sum <"$folder/$1.png")" != "$other" ]; then return; fi
    sleep 0.1
  done
  fail "$1 looks like $2"
}
# same NAME OTHER: the screen comes to look like the other again.
same() {
  local end=$((SECONDS + 20)) other
  other=$(md5sum <"$folder/$2.png")
  while [ "$SECONDS" -lt "$end" ]; do
    import -window root "$folder/$1.png" 2>/dev/null
    if [ "$(md5sum <"$folder/$1.png")" = "$other" ]; then return; fi
    sleep 0.1
  done
  fail "$1 does not look like $2"
}
# The document comes after the window's first picture.
words_show() {
  import -window root -crop "420x90+$((left + 30))+$((top + 8))" "$folder/words.png"
  [ "$(identify -format %k "$folder/words.png")" -gt 3 ]
}
right_button() { click 598 398; }
left_button() { click 500 398; }
help_button() { click 30 398; }
key() { xdotool windowfocus "$window" key "$1"; }
ends() {  # ends STATUS: the program ends with it
  local status=0
  until_true 20 bash -c "! kill -0 $installer 2>/dev/null" || { fail "$state: the program goes on"; kill -9 "$installer"; }
  wait "$installer" || status=$?
  installer=
  # The next one is not to find windows that are going.
  until_true 10 bash -c '! xdotool search --onlyvisible --class .' || fail "$state: a window stays"
  [ "$status" = "$1" ] || fail "$state: ended with $status"
}
logged() { grep -qF -- "$1" "$log" || grep -qF -- "$1" "$folder/$state.out"; }

# --- an installation, by mouse: read-me, Go Back, Install, progress, the final message
export HALVORN_MAC_GATE="$folder/gate"
cp -r "$folder/old.app" "$destination"
if start install -sourcePath "$folder/image/Sample.app" -readMePath "$readme" -documentationPath "$folder/image/Guide.html" \
  -destinationPath "$destination"; then
  expect "the read-me's words show" words_show
  picture 1-read-me
  right_button; picture 2-install 1-read-me
  left_button; same 2a-back 1-read-me
  key Return; picture 2b-again 2a-back
  help_button
  right_button
  expect "the copy begins" test ! -e "$destination"
  moving 3-progress 2b-again
  moving 3a-progress 3-progress
  [ -d "$HOME/.Trash/Sample.app" ] || fail "the old copy is not in the Trash"
  : >"$folder/gate"
  expect "the product is there" test -e "$destination/Contents/Resources/data"
  expect "registered" logged "registered app: 0"
  picture 4-done 3-progress
  right_button
  ends 0
  diff -r "$folder/image/Sample.app" "$destination" >&2 || fail "the copy differs"
  diff -r "$folder/old.app" "$HOME/.Trash/Sample.app" >&2 || fail "the Trash has something else"
  [ "$(stat -c %a "$destination/Contents/MacOS/Sample")" = 755 ] || fail "the mode differs"
fi

# --- a failure: an original that is gone
rm -rf "$destination" "$HOME/.Trash"
cp -r "$folder/image/Sample.app" "$folder/image/Gone.app"
rm -f "$folder/gate"
if start failure -sourcePath "$folder/image/Gone.app" -destinationPath "$destination"; then
  picture 5-without-read-me
  right_button
  rm -rf "$folder/image/Gone.app"
  : >"$folder/gate"
  expect "the failure is logged" logged "ERROR -- Could not copy myself to"
  # The page is as it was and can be used again; the sentence is told around the window.
  same 6-failed 5-without-read-me
  key Escape
  ends 0
fi

# --- a set-up error
if start setup -productName Sample -unknown value; then
  expect "the reason is logged" logged "missing source path"
  picture 7-set-up-error
  key Return
  ends 0
fi

# --- a product that needs a newer system: the alert, ended by its first button
if start version -sourcePath "$folder/new/Sample.app" -destinationPath "$destination"; then
  picture 8-version
  key Return
  ends 0
  [ ! -e "$destination" ] || fail "something was installed"
fi

# --- the window is closed, and another language
if HALVORN_MAC_LANGUAGE=de start german -sourcePath "$folder/image/Sample.app" -destinationPath "$destination"; then
  picture 9-german 5-without-read-me
  key Escape
  ends 0
fi

[ "$failures" = 0 ] || { echo "$failures failures; pictures in $folder" >&2; exit 1; }
echo "all states were reached; pictures: $folder/*.png"

#!/usr/bin/env bash
# Installs into a scratch folder, starts the programs from there without a display, and removes it all again.
# Usage: test_install.sh CMAKE BUILD_FOLDER BIN_FOLDER
set -euo pipefail
cmake=$1 build=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export DESTDIR=$scratch/stage HOME=$scratch/home XDG_RUNTIME_DIR=$scratch/runtime LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY QT_QPA_PLATFORM XDG_CONFIG_HOME XDG_DATA_HOME
mkdir -m 700 "$HOME" "$XDG_RUNTIME_DIR"
bin=$DESTDIR/usr/$3

fail() {
  echo "$*" >&2
  exit 1
}

# expect CODE TEXT COMMAND...: the command's exit code, and a text in what it prints.
expect() {
  local code=0 output
  output=$("${@:3}" 2>&1) || code=$?
  [[ $code -eq $1 && $output == *"$2"* ]] || fail "${*:3}: $code, not $1, or without \"$2\": $output"
}

"$cmake" --install "$build" --prefix /usr >/dev/null
diff <(cd "$DESTDIR" && find . ! -type d | cut -c2- | sort) <(sed -e '$a\' "$build/install_manifest.txt" | sort) ||
  fail "The manifest is not what was installed"

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
for program in brevio brevio-gateway; do
  expect 0 "Usage: " "$bin/$program" --help
  expect 0 "$program $version" "$bin/$program" --version
  expect 2 "Try --help." "$bin/$program" --bogus
done

# What no other option would mend does not point to the help.
output=$("$bin/brevio-gateway" status --database / 2>&1) && fail "A folder was taken for a database"
[[ $output == *"/: "* && $output != *--help* ]] || fail "Of a folder in place of a database: $output"

# Nothing links what is loaded when it is wanted.
plugin=$(dirname "$(realpath "$bin/brevio")")/plugins/numberjudge.so
[[ $(ldd "$plugin") == *libphonenumber* ]] || fail "The plugin is missing: $plugin"

# The settings are written once the country table, which lies beside the program, has been read.
"$bin/brevio" -platform offscreen &
program=$!
settings=$HOME/.config/Corvane/Brevio.json
for _ in $(seq 100); do
  [ -s "$settings" ] && break
  sleep 0.1
done
[ -s "$settings" ] || started=no
kill "$program"
wait "$program" || fail "The program ended with $?"
[ -z "${started:-}" ] || fail "The program did not get beyond its start"

"$cmake" -P "$build/Uninstall.cmake" >/dev/null
left=$(find "$DESTDIR" ! -type d -o -name 'brevio*')
[ -z "$left" ] || fail "Left behind: $left"

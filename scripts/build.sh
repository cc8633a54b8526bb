# shellcheck shell=bash
# Sourced by ./run, ./test and bench/*: configures and builds. Needs environment.sh.

# configure_and_build PRESET [TARGET...]: quiet unless it fails; the whole output is in build/PRESET.log.
configure_and_build() {
  local preset=$1 log=$ZARN_BUILD/$1.log
  shift
  mkdir -p "$ZARN_BUILD"
  if ! { cmake -S "$ZARN_ROOT" --preset "$preset" &&
    cmake --build "$ZARN_BUILD/$preset" ${1:+--target "$@"}; } >"$log" 2>&1; then
    grep -E 'error|Error|FAILED' -A3 "$log" | head -n 60 >&2
    echo "building $preset failed, see build/$(basename "$log")" >&2
    return 1
  fi
}

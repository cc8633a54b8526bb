# shellcheck shell=bash
# Sourced by bench/receive and bench/list: their surroundings and their server. Needs environment.sh.

ZARN_BENCH=$ZARN_BUILD/bench

# start_bench_server [ARG...]: starts bench/ftp_server.py with the arguments; sets bench_port and bench_server_pid. It
# ends with this script.
start_bench_server() {
  local output
  exec {output}< <(exec python3 "$ZARN_ROOT/bench/ftp_server.py" "$@" 2>"$ZARN_BENCH/server-errors.log" </dev/null)
  bench_server_pid=$!
  bench_port=
  read -r -t 60 -u "$output" bench_port || true
  exec {output}<&-
  [ -n "$bench_port" ] && return 0
  echo "the benchmark's server does not start, see build/bench/server-errors.log" >&2
  return 1
}

stop_bench_server() {
  [ -n "${bench_server_pid:-}" ] || return 0
  kill "$bench_server_pid" 2>/dev/null || true
  bench_server_pid=
}

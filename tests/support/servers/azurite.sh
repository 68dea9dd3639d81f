#!/usr/bin/env bash
# Azurite (the Azure Blob emulator, npm azurite@3.35.0) on 127.0.0.1 for the
# Azure tests, in memory, with telemetry off (otherwise it reaches out to the
# internet).
#
#   azurite.sh start DIR   install Azurite into the npm cache folder when it
#                          is missing, start it on a free port
#   azurite.sh stop DIR    stop it by its pid
#
# The cache folder is $NVB_NPM_CACHE (default ~/.cache/nvb/npm); one install
# serves every build. After a start DIR holds "port" and azurite.pid. The
# account is the emulator's well-known development account:
#   devstoreaccount1 / Eby8vdM02xNOcqFlqUwJPLlmEtlCDXJ1OUzFT50uSRZ6IFsuFq2UVErCz4I6tq/K1SZFPTOtr/KBHBeksoGMGw==
# Without node and npm DIR/unavailable holds the reason and the script still
# succeeds, so the tests can skip clearly (under CI they fail instead).
set -euo pipefail

command=${1:-}
dir=${2:-}
if [[ -z "$command" || -z "$dir" ]]; then
    echo "usage: $0 start|stop DIR" >&2
    exit 2
fi
version=3.35.0
cache=${NVB_NPM_CACHE:-$HOME/.cache/nvb/npm}

stop_server() {
    local pidfile="$dir/azurite.pid"
    [[ -f "$pidfile" ]] || return 0
    local pid
    pid=$(cat "$pidfile")
    if [[ -n "$pid" ]] && kill -0 "$pid" 2>/dev/null; then
        kill "$pid"
        for _ in $(seq 30); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -0 "$pid" 2>/dev/null && kill -9 "$pid"
    fi
    rm -f "$pidfile"
}

unavailable() {
    echo "$1" > "$dir/unavailable"
    echo "azurite.sh: $1" >&2
    exit 0
}

case "$command" in
stop)
    [[ -d "$dir" ]] && stop_server
    exit 0
    ;;
start) ;;
*)
    echo "usage: $0 start|stop DIR" >&2
    exit 2
    ;;
esac

mkdir -p "$dir"
stop_server
rm -f "$dir/unavailable" "$dir/port"
command -v node >/dev/null || unavailable "node is not installed (packages nodejs npm)"
command -v npm >/dev/null || unavailable "npm is not installed (package npm)"
blob="$cache/azurite-$version/node_modules/.bin/azurite-blob"
if [[ ! -x "$blob" ]]; then
    mkdir -p "$cache/azurite-$version"
    npm install --no-audit --no-fund --prefix "$cache/azurite-$version" "azurite@$version" \
        > "$dir/npm.log" 2>&1 || unavailable "npm could not install azurite@$version, see $dir/npm.log"
fi

port=$(python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])')
"$blob" --blobHost 127.0.0.1 --blobPort "$port" --inMemoryPersistence --skipApiVersionCheck --disableTelemetry \
    --silent > "$dir/azurite.log" 2>&1 &
echo $! > "$dir/azurite.pid"
for _ in $(seq 300); do
    kill -0 "$(cat "$dir/azurite.pid")" 2>/dev/null || { echo "azurite.sh: Azurite died, see $dir/azurite.log" >&2; exit 1; }
    if python3 -c "import socket,sys; socket.create_connection(('127.0.0.1', $port), 0.2)" 2>/dev/null; then
        echo "$port" > "$dir/port"
        exit 0
    fi
    sleep 0.1
done
stop_server
echo "azurite.sh: Azurite did not listen within 30 s, see $dir/azurite.log" >&2
exit 1

#!/usr/bin/env bash
# A one-replica OpenStack Swift on 127.0.0.1 for the object-store tests: the
# proxy speaks Swift (tempauth v1) and S3 (s3api, which checks signatures).
#
#   swift.sh start DIR   write rings and configs into DIR, start memcached,
#                        the account, container and object servers and the proxy
#   swift.sh stop DIR    stop what "start" left in DIR, each by its pid
#
# After a start DIR holds:
#   port                 the proxy's port (S3 and Swift at http://127.0.0.1:PORT)
#   s3_access, s3_secret the S3 keys ("test:tester", "testing"); region us-east-1
#   keystone_port        a small identity service of ours (keystone_fake.py):
#                        Keystone v2.0 and v3 for user "demo", password
#                        "secret", project "demo", domain "Default", whose
#                        catalog points at this Swift
#   *.pid, *.log         one per process
# Every port is a free one picked at start. When Swift is not installed,
# DIR/unavailable holds the reason and the script still succeeds, so the tests
# can skip clearly (under CI they fail instead).
set -euo pipefail

command=${1:-}
dir=${2:-}
if [[ -z "$command" || -z "$dir" ]]; then
    echo "usage: $0 start|stop DIR" >&2
    exit 2
fi

processes="keystone proxy object container account memcached"

stop_all() {
    # All at once: each server takes a moment to wind down.
    local pids=()
    for name in $processes; do
        local pidfile="$dir/$name.pid"
        [[ -f "$pidfile" ]] || continue
        local pid
        pid=$(cat "$pidfile")
        if [[ -n "$pid" ]] && kill -0 "$pid" 2>/dev/null; then
            kill "$pid"
            pids+=("$pid")
        fi
        rm -f "$pidfile"
    done
    for _ in $(seq 30); do
        local alive=0
        for pid in "${pids[@]}"; do
            kill -0 "$pid" 2>/dev/null && alive=1
        done
        [[ $alive -eq 0 ]] && return 0
        sleep 0.1
    done
    for pid in "${pids[@]}"; do
        kill -9 "$pid" 2>/dev/null || true
    done
}

unavailable() {
    echo "$1" > "$dir/unavailable"
    echo "swift.sh: $1" >&2
    exit 0
}

free_port() {
    python3 -c 'import socket; s = socket.socket(); s.bind(("127.0.0.1", 0)); print(s.getsockname()[1])'
}

case "$command" in
stop)
    [[ -d "$dir" ]] && stop_all
    exit 0
    ;;
start) ;;
*)
    echo "usage: $0 start|stop DIR" >&2
    exit 2
    ;;
esac

mkdir -p "$dir"
stop_all
rm -rf "$dir/srv" "$dir/unavailable" "$dir"/*.builder "$dir"/*.ring.gz "$dir"/*.conf "$dir"/port "$dir"/keystone_port
for tool in swift-proxy-server swift-object-server swift-container-server swift-account-server swift-ring-builder memcached; do
    command -v "$tool" >/dev/null || unavailable "$tool is not installed (packages swift-proxy swift-object swift-container swift-account memcached)"
done

mkdir -p "$dir/srv/d1"
proxy_port=$(free_port)
object_port=$(free_port)
container_port=$(free_port)
account_port=$(free_port)
memcached_port=$(free_port)

cat > "$dir/swift.conf" <<CONF
[swift-hash]
swift_hash_path_suffix = nvbtest
swift_hash_path_prefix = nvbtest

[storage-policy:0]
name = Policy-0
default = yes
CONF

for kind in object container account; do
    port_var="${kind}_port"
    swift-ring-builder "$dir/$kind.builder" create 6 1 1 >/dev/null
    swift-ring-builder "$dir/$kind.builder" add "r1z1-127.0.0.1:${!port_var}/d1" 100 >/dev/null
    swift-ring-builder "$dir/$kind.builder" rebalance >/dev/null
    cat > "$dir/$kind-server.conf" <<CONF
[DEFAULT]
swift_dir = $dir
devices = $dir/srv
mount_check = false
bind_ip = 127.0.0.1
bind_port = ${!port_var}
workers = 0
log_name = $kind
log_level = WARNING

[pipeline:main]
pipeline = $kind-server

[app:$kind-server]
use = egg:swift#$kind
CONF
done

cat > "$dir/proxy-server.conf" <<CONF
[DEFAULT]
swift_dir = $dir
bind_ip = 127.0.0.1
bind_port = $proxy_port
workers = 0
log_level = WARNING

[pipeline:main]
pipeline = catch_errors gatekeeper healthcheck proxy-logging cache listing_formats s3api tempauth copy dlo slo proxy-logging proxy-server

[app:proxy-server]
use = egg:swift#proxy
account_autocreate = true

[filter:catch_errors]
use = egg:swift#catch_errors

[filter:gatekeeper]
use = egg:swift#gatekeeper

[filter:healthcheck]
use = egg:swift#healthcheck

[filter:proxy-logging]
use = egg:swift#proxy_logging

[filter:cache]
use = egg:swift#memcache
memcache_servers = 127.0.0.1:$memcached_port

[filter:listing_formats]
use = egg:swift#listing_formats

[filter:s3api]
use = egg:swift#s3api
location = us-east-1
storage_domain = s3.localhost

[filter:tempauth]
use = egg:swift#tempauth
user_test_tester = testing .admin
user_test2_tester2 = testing2 .admin

[filter:copy]
use = egg:swift#copy

[filter:dlo]
use = egg:swift#dlo

[filter:slo]
use = egg:swift#slo
CONF

memcached -l 127.0.0.1 -p "$memcached_port" -U 0 -u "$(id -un)" > "$dir/memcached.log" 2>&1 &
echo $! > "$dir/memcached.pid"
for kind in account container object proxy; do
    "swift-$kind-server" "$dir/$kind-server.conf" > "$dir/$kind.log" 2>&1 &
    echo $! > "$dir/$kind.pid"
done

# Ready when a v1 login answers with a token (the proxy, memcached, the
# account ring) and a container can be made with it (the account and
# container servers answer too; before that the proxy says 503).
ready() {
    local headers token storage
    headers=$(curl -sf -D - -o /dev/null -H 'X-Auth-User: test:tester' -H 'X-Auth-Key: testing' \
        "http://127.0.0.1:$proxy_port/auth/v1.0") || return 1
    token=$(printf '%s\n' "$headers" | tr -d '\r' | sed -n 's/^[Xx]-[Aa]uth-[Tt]oken: //p')
    storage=$(printf '%s\n' "$headers" | tr -d '\r' | sed -n 's/^[Xx]-[Ss]torage-[Uu]rl: //p')
    [[ -n "$token" && -n "$storage" ]] || return 1
    curl -sf -o /dev/null -X PUT -H "X-Auth-Token: $token" "$storage/nvb-ready" || return 1
    curl -sf -o /dev/null -X DELETE -H "X-Auth-Token: $token" "$storage/nvb-ready" || true
}

for _ in $(seq 300); do
    for name in proxy object container account memcached; do
        kill -0 "$(cat "$dir/$name.pid")" 2>/dev/null || { stop_all; echo "swift.sh: $name died, see $dir/$name.log" >&2; exit 1; }
    done
    if ready; then
        python3 "$(dirname "$0")/keystone_fake.py" "$dir/keystone_port" "http://127.0.0.1:$proxy_port" \
            test:tester testing > "$dir/keystone.log" 2>&1 &
        echo $! > "$dir/keystone.pid"
        for _ in $(seq 100); do
            [[ -f "$dir/keystone_port" ]] && break
            sleep 0.1
        done
        [[ -f "$dir/keystone_port" ]] || { stop_all; echo "swift.sh: the identity fake did not start" >&2; exit 1; }
        echo "$proxy_port" > "$dir/port"
        echo "test:tester" > "$dir/s3_access"
        echo "testing" > "$dir/s3_secret"
        exit 0
    fi
    sleep 0.2
done
stop_all
echo "swift.sh: the proxy did not answer within 60 s, see $dir/proxy.log" >&2
exit 1

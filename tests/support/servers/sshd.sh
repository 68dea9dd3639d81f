#!/usr/bin/env bash
# A private OpenSSH server on 127.0.0.1 for the SFTP tests.
#
#   sshd.sh start DIR   make keys, a config and the test user, start sshd
#   sshd.sh stop DIR    stop the sshd that "start" left in DIR, by its pid
#
# Needs root: it creates (once) the local user "nvbsftptest", an SFTP-only
# account (shell /usr/sbin/nologin, ForceCommand internal-sftp) that can only
# log in to this server, since the server allows no other user. Every start
# gives it a new random password. The system's own sshd is not touched.
#
# After a start DIR holds:
#   port                 the port sshd listens on (2222, or the next free one)
#   user, password       the test login
#   user_key, user_key.pub   the login's key pair (authorized in authorized_keys)
#   known_hosts          the server's host key for [127.0.0.1]:PORT
#   known_hosts_changed  another key for the same host, to test a changed key
#   data/                a folder the test user owns, for listings
#   sshd_config, sshd.log, server.pid
# When the server cannot be started (not root, no sshd) DIR/unavailable holds
# the reason and the script still succeeds, so the tests can skip clearly.
set -euo pipefail

command=${1:-}
dir=${2:-}
if [[ -z "$command" || -z "$dir" ]]; then
    echo "usage: $0 start|stop DIR" >&2
    exit 2
fi

user=nvbsftptest
sshd=/usr/sbin/sshd

stop_server() {
    local pidfile="$dir/server.pid"
    [[ -f "$pidfile" ]] || return 0
    local pid
    pid=$(cat "$pidfile")
    if [[ -n "$pid" ]] && kill -0 "$pid" 2>/dev/null; then
        kill "$pid"
        for _ in $(seq 50); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -0 "$pid" 2>/dev/null && kill -9 "$pid"
    fi
    rm -f "$pidfile"
}

unavailable() {
    echo "$1" > "$dir/unavailable"
    echo "sshd.sh: SFTP test server not started: $1" >&2
    exit 0
}

port_free() {
    ! (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

case "$command" in
stop)
    stop_server
    exit 0
    ;;
start)
    ;;
*)
    echo "usage: $0 start|stop DIR" >&2
    exit 2
    ;;
esac

mkdir -p "$dir"
dir=$(cd "$dir" && pwd)
stop_server
rm -rf "$dir/data" "$dir/unavailable" "$dir"/*_key* "$dir"/known_hosts* "$dir/authorized_keys" "$dir/port"
chmod 755 "$dir"

[[ $(id -u) -eq 0 ]] || unavailable "it needs root to create the test user and check passwords"
[[ -x "$sshd" ]] || unavailable "$sshd is not installed (package openssh-server)"
command -v ssh-keygen >/dev/null || unavailable "ssh-keygen is not installed (package openssh-client)"

if ! id "$user" >/dev/null 2>&1; then
    useradd --system --no-create-home --home-dir /nonexistent --shell /usr/sbin/nologin "$user"
fi
password=$(head -c 18 /dev/urandom | od -An -tx1 | tr -d ' \n')
echo "$user:$password" | chpasswd
echo "$user" > "$dir/user"
echo "$password" > "$dir/password"
chmod 600 "$dir/password"

ssh-keygen -q -t ed25519 -N '' -C nvb-test-host -f "$dir/host_ed25519_key"
ssh-keygen -q -t ed25519 -N '' -C nvb-test-other-host -f "$dir/other_host_key"
ssh-keygen -q -t ed25519 -N '' -C nvb-test-user -f "$dir/user_key"
cp "$dir/user_key.pub" "$dir/authorized_keys"
chmod 644 "$dir/authorized_keys"

mkdir -p "$dir/data"
chown "$user" "$dir/data"
chmod 755 "$dir/data"

# Privilege separation directory of sshd.
mkdir -p /run/sshd
chmod 755 /run/sshd

port=2222
started=no
for _ in $(seq 20); do
    while ! port_free "$port"; do
        port=$((port + 1))
    done
    cat > "$dir/sshd_config" <<CONFIG
ListenAddress 127.0.0.1
Port $port
HostKey $dir/host_ed25519_key
PidFile $dir/sshd.pid
AuthorizedKeysFile $dir/authorized_keys
AllowUsers $user
PermitRootLogin no
PubkeyAuthentication yes
PasswordAuthentication yes
KbdInteractiveAuthentication no
UsePAM no
StrictModes no
X11Forwarding no
AllowTcpForwarding no
Subsystem sftp internal-sftp
ForceCommand internal-sftp
LogLevel VERBOSE
CONFIG
    "$sshd" -t -f "$dir/sshd_config" || unavailable "sshd refused the test configuration"
    # Detached from our output, or ctest would wait for the pipes to close.
    "$sshd" -D -f "$dir/sshd_config" -E "$dir/sshd.log" </dev/null >/dev/null 2>&1 &
    pid=$!
    echo "$pid" > "$dir/server.pid"
    for _ in $(seq 50); do
        if ! kill -0 "$pid" 2>/dev/null; then
            break
        fi
        if ! port_free "$port"; then
            started=yes
            break
        fi
        sleep 0.1
    done
    [[ $started == yes ]] && break
    # Lost the port to someone else between the check and the start: next one.
    stop_server
    port=$((port + 1))
done
[[ $started == yes ]] || unavailable "sshd did not start; see $dir/sshd.log"

echo "$port" > "$dir/port"
echo "[127.0.0.1]:$port $(cut -d' ' -f1,2 "$dir/host_ed25519_key.pub")" > "$dir/known_hosts"
echo "[127.0.0.1]:$port $(cut -d' ' -f1,2 "$dir/other_host_key.pub")" > "$dir/known_hosts_changed"
echo "sshd.sh: SFTP test server on 127.0.0.1:$port (pid $(cat "$dir/server.pid"))"

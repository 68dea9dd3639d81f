#!/usr/bin/env bash
# A private OpenSSH server on 127.0.0.1 for the SFTP tests.
#
#   sshd.sh start DIR   make keys, a config and the test user, start sshd
#   sshd.sh stop DIR    stop the sshd that "start" left in DIR, by its pid
#
# Needs root: it creates a local user of its own, "nvbsftp" and a random
# suffix (so that runs side by side never share or remove each other's), which
# can only log in to these servers (they allow no other user; the system's own
# sshd is not touched), with a random password; "stop" removes it.
# Three servers start, all with the same host key:
#   the main one       SFTP only (ForceCommand internal-sftp), password or key
#   stall_*            lets the login through, then its sftp subsystem is
#                      /bin/sleep: a server that stops answering
#   kbd_*              password only through keyboard-interactive (PAM)
#
# After a start DIR holds:
#   port, stall_port, kbd_port   the ports (from 2222 on, the next free ones)
#   user, password       the test login
#   user_key, user_key.pub   the login's key pair (authorized in authorized_keys)
#   enc_key, enc_key.pub, enc_passphrase  a passphrase-protected key, authorized
#   known_hosts          the server's host key for every port
#   known_hosts_changed  another key for the main port, to test a changed key
#   host_fingerprint     the host key's SHA256 fingerprint as ssh prints it
#   data/                a folder the test user owns, for listings
#   *sshd_config, *sshd.log, *server.pid
# When the server cannot be started (not root, no sshd) DIR/unavailable holds
# the reason and the script still succeeds, so the tests can skip clearly.
set -euo pipefail

command=${1:-}
dir=${2:-}
if [[ -z "$command" || -z "$dir" ]]; then
    echo "usage: $0 start|stop DIR" >&2
    exit 2
fi

sshd=/usr/sbin/sshd
# Every user this script makes has this prefix; "stop" removes no other.
user_prefix=nvbsftp
user=

stop_one() {
    local pidfile="$dir/$1server.pid"
    [[ -f "$pidfile" ]] || return 0
    local pid
    pid=$(cat "$pidfile")
    if [[ -n "$pid" ]] && kill -0 "$pid" 2>/dev/null; then
        # Sessions (and the stall server's sleep) are children of the listener.
        local children
        children=$(pgrep -P "$pid" 2>/dev/null || true)
        for child in $children; do
            pkill -P "$child" 2>/dev/null || true
            kill "$child" 2>/dev/null || true
        done
        kill "$pid"
        for _ in $(seq 50); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -0 "$pid" 2>/dev/null && kill -9 "$pid"
    fi
    rm -f "$pidfile"
}

stop_server() {
    stop_one ""
    stop_one stall_
    stop_one kbd_
}

# Removes the user that the start in DIR made, and only that one.
remove_user() {
    local made
    made=$(cat "$dir/user" 2>/dev/null || true)
    [[ "$made" == "$user_prefix"* ]] || return 0
    if id "$made" >/dev/null 2>&1; then
        # Sessions that outlived their listener would keep the user busy.
        for pid in $(pgrep -u "$made" 2>/dev/null || true); do
            kill "$pid" 2>/dev/null || true
        done
        userdel -f "$made" 2>/dev/null || true
    fi
    rm -f "$dir/user"
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
    remove_user
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
remove_user
rm -rf "$dir/data" "$dir/unavailable" "$dir"/*_key* "$dir"/known_hosts* "$dir/authorized_keys" "$dir"/*port
chmod 755 "$dir"

[[ $(id -u) -eq 0 ]] || unavailable "it needs root to create the test user and check passwords"
[[ -x "$sshd" ]] || unavailable "$sshd is not installed (package openssh-server)"
command -v ssh-keygen >/dev/null || unavailable "ssh-keygen is not installed (package openssh-client)"

# A real shell: sshd runs the stall server's forced command through it. The
# main server still forces internal-sftp, and every server allows only this
# user, on 127.0.0.1, with a password that lives as long as the servers.
for _ in $(seq 10); do
    user=$user_prefix$(head -c 4 /dev/urandom | od -An -tx1 | tr -d ' \n')
    id "$user" >/dev/null 2>&1 || break
done
useradd --system --no-create-home --home-dir /nonexistent --shell /bin/sh "$user"
# Written at once, so that "stop" removes the user even if the start fails later.
echo "$user" > "$dir/user"
password=$(head -c 18 /dev/urandom | od -An -tx1 | tr -d ' \n')
echo "$user:$password" | chpasswd
echo "$password" > "$dir/password"
chmod 600 "$dir/password"

ssh-keygen -q -t ed25519 -N '' -C nvb-test-host -f "$dir/host_ed25519_key"
ssh-keygen -q -t ed25519 -N '' -C nvb-test-other-host -f "$dir/other_host_key"
ssh-keygen -q -t ed25519 -N '' -C nvb-test-user -f "$dir/user_key"
enc_passphrase=$(head -c 12 /dev/urandom | od -An -tx1 | tr -d ' \n')
echo "$enc_passphrase" > "$dir/enc_passphrase"
ssh-keygen -q -t ed25519 -N "$enc_passphrase" -C nvb-test-encrypted -f "$dir/enc_key"
cat "$dir/user_key.pub" "$dir/enc_key.pub" > "$dir/authorized_keys"
chmod 644 "$dir/authorized_keys"

mkdir -p "$dir/data"
chown "$user" "$dir/data"
chmod 755 "$dir/data"

# Privilege separation directory of sshd.
mkdir -p /run/sshd
chmod 755 /run/sshd

# launch NAME FIRSTPORT EXTRA: starts one server with the shared settings plus
# EXTRA, writes its port to NAME + "port"; sets $launched_port.
launch() {
    local name=$1 port=$2 extra=$3 started=no pid
    for _ in $(seq 20); do
        while ! port_free "$port"; do
            port=$((port + 1))
        done
        cat > "$dir/${name}sshd_config" <<CONFIG
ListenAddress 127.0.0.1
Port $port
HostKey $dir/host_ed25519_key
PidFile $dir/${name}sshd.pid
AuthorizedKeysFile $dir/authorized_keys
AllowUsers $user
PermitRootLogin no
StrictModes no
X11Forwarding no
AllowTcpForwarding no
PermitTTY no
LogLevel VERBOSE
$extra
CONFIG
        "$sshd" -t -f "$dir/${name}sshd_config" || unavailable "sshd refused the test configuration ${name}sshd_config"
        # Detached from our output, or ctest would wait for the pipes to close.
        "$sshd" -D -f "$dir/${name}sshd_config" -E "$dir/${name}sshd.log" </dev/null >/dev/null 2>&1 &
        pid=$!
        echo "$pid" > "$dir/${name}server.pid"
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
        stop_one "$name"
        port=$((port + 1))
    done
    [[ $started == yes ]] || unavailable "sshd did not start; see $dir/${name}sshd.log"
    echo "$port" > "$dir/${name}port"
    launched_port=$port
}

launch "" 2222 "PubkeyAuthentication yes
PasswordAuthentication yes
KbdInteractiveAuthentication no
UsePAM no
Subsystem sftp internal-sftp
ForceCommand internal-sftp"
port=$launched_port
# The sleep ends by itself, so nothing of it outlives the tests for long.
launch stall_ $((port + 1)) "PubkeyAuthentication yes
PasswordAuthentication yes
KbdInteractiveAuthentication no
UsePAM no
Subsystem sftp /bin/sleep 120
ForceCommand /bin/sleep 120"
stall_port=$launched_port
launch kbd_ $((stall_port + 1)) "PubkeyAuthentication no
PasswordAuthentication no
KbdInteractiveAuthentication yes
UsePAM yes
Subsystem sftp internal-sftp
ForceCommand internal-sftp"
kbd_port=$launched_port

host_key=$(cut -d' ' -f1,2 "$dir/host_ed25519_key.pub")
{
    echo "[127.0.0.1]:$port $host_key"
    echo "[127.0.0.1]:$stall_port $host_key"
    echo "[127.0.0.1]:$kbd_port $host_key"
} > "$dir/known_hosts"
ssh-keygen -l -E sha256 -f "$dir/host_ed25519_key.pub" | cut -d' ' -f2 > "$dir/host_fingerprint"
echo "[127.0.0.1]:$port $(cut -d' ' -f1,2 "$dir/other_host_key.pub")" > "$dir/known_hosts_changed"
echo "sshd.sh: SFTP test servers on 127.0.0.1:$port, stall $stall_port, kbd $kbd_port (pid $(cat "$dir/server.pid"))"

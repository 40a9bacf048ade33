#!/usr/bin/env bash
# Starts or stops a throw-away PostgreSQL cluster on loopback for the data tests.
#   pg-for-tests.sh start <state-dir> [port]   creates the cluster, writes <state-dir>/connect.txt
#   pg-for-tests.sh stop  <state-dir>          stops it and removes its data folder
# Without a port (or with an empty one) the server takes a free loopback port: it tries ports
# from a random starting point and moves on when the port is taken, so that several checkouts
# can run their tests at once. The port in use is written to <state-dir>/port and is part of
# connect.txt. Each run has its own data folder under /tmp.
# PostgreSQL refuses to run as root, so as root the server runs as the postgres user.
set -euo pipefail
action=${1:?start or stop}
state=${2:?state folder}
port=${3:-}

bindir=$(ls -d /usr/lib/postgresql/*/bin 2>/dev/null | sort -V | tail -n 1)
[ -x "$bindir/initdb" ] || { echo "PostgreSQL server binaries not found (install the postgresql package)" >&2; exit 1; }

as_server_user() {
    if [ "$(id -u)" = 0 ]; then runuser -u postgres -- "$@"; else "$@"; fi
}

stop_cluster() {
    local data
    [ -f "$state/datadir" ] || return 0
    data=$(cat "$state/datadir")
    if [ -d "$data" ]; then
        as_server_user "$bindir/pg_ctl" -D "$data/cluster" -m immediate -w stop >/dev/null 2>&1 || true
        rm -rf "$data"
    fi
    rm -f "$state/datadir" "$state/connect.txt" "$state/port"
}

# True when something already accepts connections on 127.0.0.1:$1.
port_answers() {
    (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null
}

# Starts the server on port $1; fails when it cannot. A port another process holds shows in
# the server log as "Address already in use".
start_on() {
    rm -f "$data/server.log"
    as_server_user "$bindir/pg_ctl" -D "$data/cluster" -l "$data/server.log" -w -t 60 \
        -o "-c listen_addresses=127.0.0.1 -p $1 -k $data -c fsync=off -c full_page_writes=off" start >/dev/null 2>&1
}

case "$action" in
start)
    mkdir -p "$state"
    stop_cluster
    data=$(mktemp -d /tmp/panelkestrin-pg.XXXXXX)
    [ "$(id -u)" = 0 ] && chown postgres:postgres "$data"
    echo "$data" > "$state/datadir"
    as_server_user "$bindir/initdb" -D "$data/cluster" -U postgres --auth=trust -E UTF8 --locale=C.UTF-8 >"$state/initdb.log" 2>&1 \
        || { cat "$state/initdb.log" >&2; exit 1; }
    if [ -n "$port" ]; then
        start_on "$port" || { cat "$data/server.log" >&2; exit 1; }
    else
        # Unprivileged ports below the kernel's ephemeral range (32768 and up by default).
        candidate=$((20000 + RANDOM % 10000))
        for attempt in $(seq 1 50); do
            if ! port_answers "$candidate"; then
                if start_on "$candidate"; then
                    port=$candidate
                    break
                fi
                grep -q "Address already in use" "$data/server.log" || { cat "$data/server.log" >&2; exit 1; }
            fi
            candidate=$((20000 + (candidate - 20000 + 1 + RANDOM % 97) % 10000))
        done
        [ -n "$port" ] || { echo "no free loopback port found for the PostgreSQL test server" >&2; exit 1; }
    fi
    echo "$port" > "$state/port"
    as_server_user "$bindir/psql" -h 127.0.0.1 -p "$port" -U postgres -v ON_ERROR_STOP=1 -q \
        -c "CREATE ROLE pktest LOGIN PASSWORD 'pktest'" -c "CREATE DATABASE pktest OWNER pktest"
    echo "Provider=PostgreSQL;Host=127.0.0.1;Port=$port;Database=pktest;User ID=pktest;Password=pktest" > "$state/connect.txt"
    echo "PostgreSQL $("$bindir/postgres" --version | awk '{print $3}') running on 127.0.0.1:$port"
    ;;
stop)
    stop_cluster
    echo "PostgreSQL test server stopped"
    ;;
*)
    echo "usage: $0 start <state-dir> [port] | stop <state-dir>" >&2
    exit 2
    ;;
esac

#!/usr/bin/env bash
# Starts or stops a throw-away PostgreSQL cluster on loopback for the data tests.
#   pg-for-tests.sh start <state-dir> <port>   creates the cluster, writes <state-dir>/connect.txt
#   pg-for-tests.sh stop  <state-dir> <port>   stops it and removes its data folder
# PostgreSQL refuses to run as root, so as root the server runs as the postgres user.
set -euo pipefail
action=${1:?start or stop}
state=${2:?state folder}
port=${3:?port}

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
    rm -f "$state/datadir" "$state/connect.txt"
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
    as_server_user "$bindir/pg_ctl" -D "$data/cluster" -l "$data/server.log" -w -t 60 \
        -o "-c listen_addresses=127.0.0.1 -p $port -k $data -c fsync=off -c full_page_writes=off" start >/dev/null \
        || { cat "$data/server.log" >&2; exit 1; }
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
    echo "usage: $0 start|stop <state-dir> <port>" >&2
    exit 2
    ;;
esac

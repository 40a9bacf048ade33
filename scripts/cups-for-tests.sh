#!/usr/bin/env bash
# Starts or stops a throw-away CUPS scheduler with one PDF queue for the printer tests.
#   cups-for-tests.sh start <state-dir>   starts it and writes <state-dir>/env
#   cups-for-tests.sh stop  <state-dir>   stops it and removes its folders
# The scheduler has a configuration, spool, cache and state of its own and listens only on a
# Unix socket of its own, so it touches no system queue and several checkouts can run their
# tests at once. Its logs and the PDF files land in <state-dir>; the rest lives in a folder
# of the run under /tmp, because the filters run as the lp user, who may not reach the build
# tree (a checkout under /root), and a socket path must stay short. <state-dir>/env holds
# KEY=VALUE lines:
#   CUPS_SERVER      the socket, for libcups and so for Qt's printer support
#   PK_CUPS_QUEUE    the queue, pk-pdf, also the server's default destination
#   PK_CUPS_PDF_DIR  where the queue writes each job as a PDF file whose name starts with the
#                    job's title (lower case, punctuation dropped) and ends in its job id
#   PK_CUPS_PAGE_LOG the page log: a "total" line per finished job, with its title and the
#                    number of sheets (pages times copies)
# The PDF backend reads its settings only from the system's CUPS folder, from a file named
# after the device URI, so a run writes /etc/cups/cups-pdf-<run id>.conf and removes it on
# stop. That backend runs only under a scheduler started as root: this script needs root.
set -euo pipefail
action=${1:?start or stop}
state=${2:?state folder}
queue=pk-pdf
backend_conf_dir=/etc/cups

stop_server() {
    local pid runtime
    if [ -f "$state/cupsd.pid" ]; then
        pid=$(cat "$state/cupsd.pid")
        if kill "$pid" 2>/dev/null; then
            for _ in $(seq 1 100); do kill -0 "$pid" 2>/dev/null || break; sleep 0.1; done
            kill -9 "$pid" 2>/dev/null || true
        fi
    fi
    [ -f "$state/runid" ] && rm -f "$backend_conf_dir/cups-pdf-$(cat "$state/runid").conf"
    if [ -f "$state/runtime" ]; then
        runtime=$(cat "$state/runtime")
        case "$runtime" in /tmp/panelkestrin-cups.*) rm -rf "$runtime" ;; esac
    fi
    rm -rf "$state/log" "$state/pdf" "$state/cupsd.pid" "$state/runid" "$state/runtime" "$state/env"
}

# Backend settings left behind by runs that were killed before their stop, recognised by an
# output folder that no longer exists.
remove_stale_backend_settings() {
    local f out
    for f in "$backend_conf_dir"/cups-pdf-pk[0-9]*.conf; do
        [ -e "$f" ] || continue
        out=$(sed -n 's/^Out //p' "$f")
        [ -d "$out" ] || rm -f "$f"
    done
}

answers() {
    CUPS_SERVER=$socket lpstat -r 2>/dev/null | grep -q "is running"
}

fail() {
    echo "the CUPS test server did not start: $1" >&2
    cat "$state/log/cupsd.out" "$state/log/error_log" >&2 2>/dev/null || true
    stop_server
    exit 1
}

case "$action" in
start)
    command -v cupsd >/dev/null && command -v lpadmin >/dev/null \
        || { echo "CUPS not found (install the cups package)" >&2; exit 1; }
    [ -x /usr/lib/cups/backend/cups-pdf ] \
        || { echo "the PDF backend is not installed (install printer-driver-cups-pdf)" >&2; exit 1; }
    [ "$(id -u)" = 0 ] \
        || { echo "the CUPS test server must be started as root: its PDF backend runs only under a root scheduler" >&2; exit 1; }
    mkdir -p "$state"
    state=$(cd "$state" && pwd)
    stop_server
    remove_stale_backend_settings
    runid=pk$(date +%s)$$
    echo "$runid" > "$state/runid"
    rt=$(mktemp -d /tmp/panelkestrin-cups.XXXXXX)
    echo "$rt" > "$state/runtime"
    mkdir -p "$rt/server/ppd" "$rt/run" "$rt/spool/tmp" "$rt/cache" "$state/log" "$state/pdf"
    chmod 0755 "$rt" "$rt/server" "$rt/run" "$rt/cache"
    chmod 0710 "$rt/spool"
    chmod 1777 "$rt/spool/tmp"
    socket=$rt/cups.sock

    cat > "$rt/server/cups-files.conf" <<EOF
ServerRoot $rt/server
RequestRoot $rt/spool
TempDir $rt/spool/tmp
CacheDir $rt/cache
StateDir $rt/run
ErrorLog $state/log/error_log
AccessLog $state/log/access_log
PageLog $state/log/page_log
SystemGroup root
FileDevice No
EOF
    cat > "$rt/server/cupsd.conf" <<EOF
LogLevel info
Listen $socket
Browsing No
WebInterface No
DefaultAuthType None
<Policy default>
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
EOF
    # Jobs land in the build tree, named "<title>...-job_<id>.pdf".
    cat > "$backend_conf_dir/cups-pdf-$runid.conf" <<EOF
Out $state/pdf
AnonDirName $state/pdf
Spool $rt/pdf-spool
GSTmp $rt/pdf-spool
Label 2
Grp root
Log $state/log
EOF

    cupsd -t -c "$rt/server/cupsd.conf" -s "$rt/server/cups-files.conf" >"$state/log/cupsd.out" 2>&1 \
        || fail "its configuration was refused"
    cupsd -f -c "$rt/server/cupsd.conf" -s "$rt/server/cups-files.conf" >>"$state/log/cupsd.out" 2>&1 &
    echo $! > "$state/cupsd.pid"
    for _ in $(seq 1 100); do
        answers && break
        kill -0 "$(cat "$state/cupsd.pid")" 2>/dev/null || break
        sleep 0.1
    done
    answers || fail "it does not answer on $socket"

    # PDF to PostScript through pdftocairo: the default Ghostscript route loses the fonts'
    # Unicode mapping on its way back to PDF, and pdftotext would read symbols.
    CUPS_SERVER=$socket lpadmin -p "$queue" -v "cups-pdf:/$runid" -E \
        -m lsb/usr/cups-pdf/CUPS-PDF_opt.ppd -o pdftops-renderer-default=pdftocairo \
        >"$state/log/lpadmin.out" 2>&1 || { cat "$state/log/lpadmin.out" >&2; fail "the queue could not be added"; }
    CUPS_SERVER=$socket lpadmin -d "$queue" >>"$state/log/lpadmin.out" 2>&1 \
        || { cat "$state/log/lpadmin.out" >&2; fail "the queue could not be made the default"; }
    cat > "$state/env" <<EOF
CUPS_SERVER=$socket
PK_CUPS_QUEUE=$queue
PK_CUPS_PDF_DIR=$state/pdf
PK_CUPS_PAGE_LOG=$state/log/page_log
EOF
    echo "CUPS test server running on $socket: queue $queue writes PDF files to $state/pdf"
    ;;
stop)
    [ -d "$state" ] || { echo "CUPS test server not running"; exit 0; }
    state=$(cd "$state" && pwd)
    stop_server
    echo "CUPS test server stopped"
    ;;
*)
    echo "usage: $0 start <state-dir> | stop <state-dir>" >&2
    exit 2
    ;;
esac

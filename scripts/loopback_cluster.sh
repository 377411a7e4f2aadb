#!/usr/bin/env bash
# A Slurm cluster of this computer alone: one controller and two nodes on loopback, everything in one folder, nothing
# of the system's own configuration touched.
#
#   scripts/loopback_cluster.sh [COMMAND...]    runs a command, or a shell, beside such a cluster
#
# Scripts that source it get:
#
#   cluster_start FOLDER    starts munge, the controller and the nodes; Slurm's commands then talk to them
#   cluster_lose NODE       ends a node's daemon and everything that it runs, as a power cut does
#   cluster_stop            ends what still runs

cluster_pids=()

# Waits for a command to succeed, at most so many seconds.
cluster_wait() {
  local seconds=$1
  shift
  for ((i = 0; i < seconds * 5; i++)); do
    "$@" >/dev/null 2>&1 && return 0
    sleep 0.2
  done
  return 1
}

# A port on which nobody listens. The ports of one cluster follow each other.
cluster_free_ports() {
  python3 - "$1" <<'PORTS'
import random, socket, sys
count = int(sys.argv[1])
while True:
    first = random.randrange(20000, 60000)
    try:
        sockets = [socket.socket() for _ in range(count)]
        for i, s in enumerate(sockets):
            s.bind(("127.0.0.1", first + i))
    except OSError:
        continue
    print(first)
    break
PORTS
}

cluster_start() {
  cluster=$1
  mkdir -p "$cluster"/munge "$cluster"/state
  chmod 755 "$cluster" "$cluster/munge"
  head -c 1024 /dev/urandom >"$cluster/munge/key"
  chmod 400 "$cluster/munge/key"
  munged --foreground --force --key-file="$cluster/munge/key" --socket="$cluster/munge/socket" \
    --pid-file="$cluster/munge/pid" --log-file="$cluster/munge/log" --seed-file="$cluster/munge/seed" \
    --num-threads=2 2>"$cluster/munge/errors" &
  cluster_pids+=($!)
  cluster_wait 10 test -S "$cluster/munge/socket" || { cat "$cluster"/munge/{errors,log} >&2; return 1; }

  local user port node
  user=$(id -un)
  port=$(cluster_free_ports 3)
  cat >"$cluster/slurm.conf" <<CONF
ClusterName=loopback
SlurmctldHost=localhost(127.0.0.1)
SlurmctldPort=$port
SlurmUser=$user
SlurmdUser=$user
AuthType=auth/munge
AuthInfo=socket=$cluster/munge/socket,cred_expire=5
StateSaveLocation=$cluster/state
SlurmdSpoolDir=$cluster/%n
SlurmctldPidFile=$cluster/controller.pid
SlurmdPidFile=$cluster/%n.pid
SlurmctldLogFile=$cluster/controller.log
SlurmdLogFile=$cluster/%n.log
ProctrackType=proctrack/pgid
TaskPlugin=task/none
MpiDefault=none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SchedulerParameters=batch_sched_delay=0,sched_interval=1
# A lost node shows after seconds, not minutes.
SlurmdTimeout=5
KillWait=2
NodeName=node1 NodeHostname=localhost NodeAddr=127.0.0.1 Port=$((port + 1)) CPUs=1
NodeName=node2 NodeHostname=localhost NodeAddr=127.0.0.1 Port=$((port + 2)) CPUs=1
PartitionName=all Nodes=ALL Default=YES
CONF
  export SLURM_CONF=$cluster/slurm.conf
  slurmctld -D 2>"$cluster/controller.errors" &
  cluster_pids+=($!)
  for node in node1 node2; do
    mkdir -p "$cluster/$node"
    slurmd -D -N $node 2>"$cluster/$node.errors" &
    echo $! >"$cluster/$node.process"
    disown $! # its end is no news
  done
  cluster_wait 30 cluster_is_idle || { sinfo >&2; tail -n 5 "$cluster"/*.log "$cluster"/*.errors >&2; return 1; }
}

cluster_is_idle() {
  [ "$(sinfo --noheader --Node --format=%T)" = $'idle\nidle' ]
}

# What runs on a node, in the order in which nobody is left to report the end of the others: the processes that watch
# over jobs, the jobs, the daemon.
cluster_processes() {
  local task watcher tasks=()
  for task in $(grep -lzsx "SLURM_CONF=$cluster/slurm.conf" /proc/[0-9]*/environ | cut -d/ -f3); do
    grep -qzsx "SLURMD_NODENAME=$1" "/proc/$task/environ" || continue
    tasks+=("$task")
    watcher=$(ps -o ppid= -p "$task" | tr -d ' ')
    [ "$(cat "/proc/$watcher/comm" 2>/dev/null)" != slurmstepd ] || echo "$watcher"
  done
  [ ${#tasks[@]} -eq 0 ] || printf '%s\n' "${tasks[@]}"
  cat "$cluster/$1.process"
}

cluster_lose() {
  local doomed
  mapfile -t doomed < <(cluster_processes "$1")
  [ ${#doomed[@]} -eq 0 ] || kill -KILL "${doomed[@]}" 2>/dev/null || true
}

cluster_stop() {
  local node
  for node in node1 node2; do cluster_lose $node; done
  [ ${#cluster_pids[@]} -eq 0 ] || kill "${cluster_pids[@]}" 2>/dev/null || true
  wait "${cluster_pids[@]}" 2>/dev/null || true
}

if [ "${BASH_SOURCE[0]}" = "$0" ]; then
  set -uo pipefail
  folder=$(mktemp -d)
  trap 'cluster_stop; rm -rf "$folder"' EXIT
  cluster_start "$folder" || exit 1
  [ $# -gt 0 ] || set -- bash
  "$@"
fi

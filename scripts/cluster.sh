# shellcheck shell=bash
# A cluster of Slurm on this machine, with its real daemons, in a folder of its own; sourced by
# cluster-test.sh, after common.sh. Nothing outside of the folder is read or written, and no other
# Slurm of the machine is touched: munged has its own key and socket, all ports are free ones.
#
# Each node is a slurmd in a namespace of its own, with its name as that of the host: whatever it
# starts ends with the namespace, as with a machine that loses its power.

# shellcheck disable=SC2154 # top is of common.sh
cluster=$top/build/cluster
nodes=(n1 n2 n3 n4)
declare -A pids=()

# free_ports N: the first of N ports in a row that nobody listens at.
free_ports() {
    local first tries port
    for ((tries = 0; tries < 100; ++tries)); do
        first=$((20000 + RANDOM % 10000))
        for ((port = first; port < first + $1; ++port)); do
            ! (: <>"/dev/tcp/127.0.0.1/$port") 2>/dev/null || continue 2
        done
        printf '%d' "$first"
        return
    done
    fail "there are no $1 free ports in a row"
}

# Here nodes share a machine, so more processors are declared than there are, those of the newer kind
# as two threads of one core. A real cluster has its own sizes, proctrack/cgroup in place of
# linuxproc, task/cgroup before task/affinity, and longer times.
write_configuration() {
    local ports
    ports=$(free_ports 5)
    cat >"$cluster/slurm.conf" <<END
ClusterName=trial
SlurmctldHost=$(hostname -s)(127.0.0.1)
SlurmctldPort=$ports
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
AuthType=auth/munge
CryptoType=crypto/munge
# How long a task that went back into the queue waits; at least 5 seconds.
AuthInfo=socket=$cluster/munge.socket,cred_expire=5
StateSaveLocation=$cluster/state
SlurmdSpoolDir=$cluster/spool.%n
SlurmctldPidFile=$cluster/slurmctld.pid
SlurmdPidFile=$cluster/slurmd.%n.pid
SlurmctldLogFile=$cluster/slurmctld.log
SlurmdLogFile=$cluster/slurmd.%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/affinity
TaskProlog=$cluster/prolog.sh
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
MpiDefault=none
MailProg=/bin/true
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SlurmdParameters=config_overrides
PreemptType=preempt/partition_prio
PreemptMode=REQUEUE
SchedulerParameters=sched_interval=2,bf_interval=2,batch_sched_delay=1
ReturnToService=2
# A node that does not answer for so long is down.
SlurmdTimeout=10
KillWait=2
NodeName=DEFAULT CPUs=2 RealMemory=1000 State=UNKNOWN
NodeName=n[1-2] NodeHostname=localhost NodeAddr=127.0.0.1 Port=[$((ports + 1))-$((ports + 2))] Feature=older CoresPerSocket=2
NodeName=n[3-4] NodeHostname=localhost NodeAddr=127.0.0.1 Port=[$((ports + 3))-$((ports + 4))] Feature=newer CoresPerSocket=1 ThreadsPerCore=2
PartitionName=DEFAULT Nodes=ALL MaxTime=INFINITE State=UP
PartitionName=measuring Default=YES PriorityTier=1
PartitionName=urgent PriorityTier=10
END
    # None is used; it has to name one all the same.
    printf 'CgroupPlugin=cgroup/v1\n' >"$cluster/cgroup.conf"
}

# What all tasks on nodes of a kind get into their environment: nothing, until there is such a file.
write_prolog() {
    cat >"$cluster/prolog.sh" <<END
#!/bin/sh
cat "$cluster/environment.\$SLURM_JOB_CONSTRAINTS" "$cluster/environment.\$(hostname)" 2>/dev/null
exit 0
END
    chmod +x "$cluster/prolog.sh"
}

start_munge() {
    head -c 1024 /dev/urandom >"$cluster/munge.key"
    chmod 400 "$cluster/munge.key"
    # --force: a group may write to a folder above, as in the homes of some systems.
    munged --foreground --force --key-file="$cluster/munge.key" --socket="$cluster/munge.socket" \
        --pid-file="$cluster/munge.pid" --log-file="$cluster/munge.log" \
        --seed-file="$cluster/munge.seed" >"$cluster/munged.out" 2>&1 &
    pids[munged]=$!
    await "munged" test -S "$cluster/munge.socket"
}

start_slurmctld() {
    slurmctld -D -f "$SLURM_CONF" >"$cluster/slurmctld.out" 2>&1 &
    pids[slurmctld]=$!
    await "slurmctld" sinfo --noheader
}

# start_node NAME: the shell inside waits for what slurmd leaves behind.
start_node() {
    local own=()
    ((EUID == 0)) || own=(--user --map-current-user)
    mkdir -p "$cluster/spool.$1"
    unshare "${own[@]}" --pid --fork --kill-child --mount-proc --uts bash -c \
        "hostname $1 2>/dev/null; slurmd -D -f '$SLURM_CONF' -N $1 & wait" >"$cluster/$1.out" 2>&1 &
    pids[$1]=$!
}

# kill_node NAME: with all its processes, at once.
kill_node() {
    kill -KILL "${pids[$1]}"
    wait "${pids[$1]}" 2>/dev/null || true
    unset "pids[$1]"
}

are_idle() {
    (($(sinfo --noheader --Node --states=idle --format=%N --partition=measuring | wc -l) == ${#nodes[@]}))
}

# await WHAT COMMAND...: until it succeeds, two minutes at most. Nothing is judged by this time.
await() {
    local tries daemon
    for ((tries = 0; tries < 1200; ++tries)); do
        ! "${@:2}" >/dev/null 2>&1 || return 0
        for daemon in "${!pids[@]}"; do
            kill -0 "${pids[$daemon]}" 2>/dev/null ||
                fail "$daemon has ended: $(tail -n 2 "$cluster/$daemon.out")"
        done
        sleep 0.1
    done
    fail "$1 did not come within two minutes; the logs are in $cluster"
}

start_cluster() {
    local node
    rm -rf "$cluster"
    mkdir -p "$cluster/state"
    chmod 755 "$cluster"
    trap stop_cluster EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    export SLURM_CONF=$cluster/slurm.conf
    write_configuration
    write_prolog
    start_munge
    start_slurmctld
    for node in "${nodes[@]}"; do
        start_node "$node"
    done
    await "the nodes" are_idle
}

# However the script ends. What a node runs ends with it.
stop_cluster() {
    local daemon
    for daemon in "${nodes[@]}" slurmctld munged; do
        if [[ -n ${pids[$daemon]:-} ]]; then
            kill "-$([[ $daemon == n? ]] && echo KILL || echo TERM)" "${pids[$daemon]}" 2>/dev/null || true
            wait "${pids[$daemon]}" 2>/dev/null || true
        fi
    done
    pids=()
}

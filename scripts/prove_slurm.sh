#!/usr/bin/env bash
# scripts/prove_slurm.sh [COUNT]: proves slices under Slurm, as docs/scale.md has them. A job array of eight works on
# COUNT documents (20,000), on two nodes. The nodes are two slurmd on this machine, with munge, over the loopback alone
# and without cgroups. One task is killed half-way and requeued. Root runs it; it takes some minutes, and half a GB in
# $TMPDIR (else /tmp).
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/setup.sh
source scripts/scale.sh

((EUID == 0)) || fail 'root runs this, since slurmd starts jobs for their users'
count=${1:-20000}
need "${RUN_PACKAGES[@]}" munge slurm-wlm unzip zip
build release pluvo
pluvo=$PWD/build/release/bin/pluvo
folder=$(mktemp -d "${TMPDIR:-/tmp}/pluvo-slurm-XXXXXX")
daemons=()
finish() {
  local status=$?
  ((!status)) || tail -n 15 "$folder"/slurm*.log >&2 || true
  # The last started goes first.
  local i
  for ((i = ${#daemons[@]} - 1; i >= 0; --i)); do
    kill "${daemons[i]}" 2>/dev/null || true
    wait "${daemons[i]}" 2>/dev/null || true
  done
  rm -rf --one-file-system "$folder"
}
trap finish EXIT
chmod 755 "$folder"
cd "$folder"

# Daemons of this script's own, which know nothing of any others on the machine.
start() {
  "$@" >>daemons.log 2>&1 &
  daemons+=($!)
}
mkdir munge state spool-near spool-far
chmod 755 munge
dd if=/dev/urandom of=munge/key bs=1024 count=1 status=none
chmod 400 munge/key
start munged --foreground --force --key-file="$folder/munge/key" --socket="$folder/munge/socket" \
  --pid-file="$folder/munge/pid" --log-file="$folder/munge/log" --seed-file="$folder/munge/seed"
port=$((20000 + RANDOM % 10000))
cat >slurm.conf <<CONF
ClusterName=pluvo
SlurmctldHost=$(hostname -s)(127.0.0.1)
SlurmctldPort=$port
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
# A job that is requeued waits as long as its credentials may last.
AuthInfo=socket=$folder/munge/socket,cred_expire=5
CredType=cred/munge
CommunicationParameters=NoAddrCache
StateSaveLocation=$folder/state
SlurmdSpoolDir=$folder/spool-%n
SlurmctldPidFile=$folder/slurmctld.pid
SlurmdPidFile=$folder/slurmd-%n.pid
SlurmctldLogFile=$folder/slurmctld.log
SlurmdLogFile=$folder/slurmd-%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SlurmdParameters=config_overrides
SchedulerParameters=batch_sched_delay=0,sched_interval=2
MpiDefault=none
ReturnToService=2
NodeName=near NodeHostname=$(hostname -s) NodeAddr=127.0.0.1 Port=$((port + 1)) CPUs=2
NodeName=far NodeHostname=$(hostname -s) NodeAddr=127.0.0.1 Port=$((port + 2)) CPUs=2
PartitionName=all Nodes=near,far Default=YES MaxTime=INFINITE State=UP
CONF
export SLURM_CONF=$folder/slurm.conf

# within SECONDS COMMAND...: waits until the command succeeds.
within() {
  local left=$(($1 * 10))
  shift
  until "$@" >/dev/null 2>&1; do
    ((left-- > 0)) || fail "this did not come about: $*"
    sleep 0.1
  done
}
within 20 test -S munge/socket
start slurmctld -D
start slurmd -D -N near
start slurmd -D -N far
both_idle() { (($(sinfo --noheader --Node --states=idle | wc -l) == 2)); }
within 60 both_idle

make_documents "$count"
mkdir journal
name=leases
cat >slice.sbatch <<SBATCH
#!/bin/bash
#SBATCH --array=1-8 --cpus-per-task=1 --requeue --output=slice-%a.log --open-mode=append
exec $pluvo insert --begin '$BEGIN' --text '$TEXT' --after --files-from documents.list \\
  --slice \$SLURM_ARRAY_TASK_ID/8 --run-name $name --journal-dir $folder/journal \\
  --jobs \$SLURM_CPUS_PER_TASK --quiet
SBATCH
job=$(sbatch --parsable slice.sbatch)
kill_half_way 3-of-8 $((count / 8))
is() { [[ $(scontrol show job "$job" --oneliner | grep -c "ArrayTaskId=$1 .*JobState=$2") == 1 ]]; }
within 60 is 3 FAILED
scontrol requeue "${job}_3"
within 20 is 3 PENDING
all_completed() { (($(scontrol show job "$job" --oneliner | grep -c 'JobState=COMPLETED') == 8)); }
within 900 all_completed
scontrol show job "$job" --oneliner |
  sed -E 's/.*ArrayTaskId=([0-9]+) .*Restarts=([0-9]+) .*BatchHost=([^ ]+).*/Slice \1 on \3, requeued \2 times/' | sort
require_two_each
require_report "$name" "$count" 3
require_undone "$name"
echo 'Slices under Slurm lose nothing and do nothing twice.'

#!/bin/sh
# One task of a Slurm array: its share of the run's lists, by GNU parallel.
#   array_task.sh RUN LISTS_EACH PARALLEL TASK
# PARALLEL and TASK are command lines; GNU parallel puts the number of a list into the latter.
set -eu
run=$1 lists_each=$2 parallel=$3 task=$4

last=$((SLURM_ARRAY_TASK_ID * lists_each))
first=$((last - lists_each + 1))
# Tasks are started by the shell that is everywhere, whatever shell the user has.
export PARALLEL_SHELL=/bin/sh
joblog=$run/joblog-$SLURM_ARRAY_TASK_ID
sed -n "${first},${last}p" "$run/lists" >"$joblog.lists"
eval "exec $parallel --joblog \"\$joblog\" \"\$task\"" <"$joblog.lists"

#!/bin/sh
# One task of a Slurm array: its share of the run's lists, by GNU parallel.
#   array_task.sh RUN LISTS_EACH SLOTS RETRIES TASK
# TASK is a command line with {} for the number of a list.
set -eu
run=$1 lists_each=$2 slots=$3 retries=$4 task=$5

last=$((SLURM_ARRAY_TASK_ID * lists_each))
first=$((last - lists_each + 1))
# Tasks are started by the shell that is everywhere, whatever shell the user has.
export PARALLEL_SHELL=/bin/sh
sed -n "${first},${last}p" "$run/lists" |
    parallel --retries "$retries" --jobs "$slots" --joblog "$run/joblog-$SLURM_ARRAY_TASK_ID" "$task"

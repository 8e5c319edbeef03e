#!/bin/sh
# run_slurm_tests.sh PYTHON: the tests with a Slurm of three nodes; status 77 where what it takes is not there.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
PATH=$PATH:/usr/sbin:/sbin
for wanted in parallel sbatch slurmctld slurmd munged; do
    command -v "$wanted" >/dev/null && continue
    echo "$wanted is not here: skipped"
    exit 77
done
exec "$here/../../scripts/cluster" "$1" "$here/slurm_test.py"

"""Lists of recordings, one task that looks at a list, and a catalogue of what came of it.

Scheduling, retrying and distributing are GNU parallel's and Slurm's.
"""

"""Runs the programs on one recording, and tells the recording's faults from those of the storage or the node."""

import contextlib
import dataclasses
import enum
import json
import os
import signal
import subprocess
import tempfile
import time

from archive.errors import ArchiveError

# A program may complain without end. Nobody needs more of it than this, but all of it must be read: a program
# blocks when it has written 64 KiB that nobody has read.
COMPLAINT_KEPT = 4096
MESSAGE_LENGTH = 500  # characters

NO_PACKETS = "no transport packets found"


class Fault(enum.Enum):
    """Whose fault it is that there is no overview."""

    RECORDING = enum.auto()  # it would be the same at the next try
    STORAGE = (
        enum.auto()
    )  # or the node's; of a recording that fails so time and again, it is taken for its own
    NODE = enum.auto()  # it says nothing of the recording: no room, somebody ended the program


# By these a program ends for what is in a recording.
OWN_SIGNALS = {signal.SIGABRT, signal.SIGSEGV, signal.SIGFPE, signal.SIGILL, signal.SIGTRAP, signal.SIGSYS}
# By these it is ended with the task. What is left: SIGKILL, of the kernel for want of memory; SIGBUS, a read that
# failed.
OTHERS_SIGNALS = {
    signal.SIGTERM,
    signal.SIGINT,
    signal.SIGHUP,
    signal.SIGQUIT,
    signal.SIGXCPU,
    signal.SIGXFSZ,
}


@dataclasses.dataclass(frozen=True)
class Programs:
    overview: str  # path of mpeg_ts_overview
    analysis: str  # path of mpeg_ts_analysis, only run for reports


@dataclasses.dataclass
class Looked:
    """What came of one recording. Files are open, at their start, and have no name: who is killed leaves none."""

    size: int
    mtime_ns: int
    seconds: float
    exit: int  # status; minus the signal; None: it could not be opened
    message: str  # None where there is an overview
    overview: dict = None  # the JSON, None where there is none
    files: dict = dataclasses.field(default_factory=dict)  # "json", "html", "report": what is to be kept
    fault: Fault = None  # None where there is an overview


def look_at(recording, programs, keep, stack):
    """Runs the programs. Files are closed with the stack. OSError is the node's: no room for an output."""
    try:
        status = os.stat(recording.path)
        os.close(os.open(recording.path, os.O_RDONLY | os.O_NONBLOCK | os.O_CLOEXEC))
    except OSError as error:
        reason = f"cannot open: {error.strerror}"
        return Looked(recording.size, recording.mtime_ns, 0.0, None, reason, fault=Fault.STORAGE)

    start = time.monotonic()
    outputs = {kind: stack.enter_context(tempfile.TemporaryFile()) for kind in {"json", *keep} - {"report"}}
    arguments, others = [programs.overview, "--json=-"], []
    if "html" in outputs:
        others = [outputs["html"].fileno()]
        arguments.append(f"--html=/dev/fd/{others[0]}")
    exit_status, complaint = _run([*arguments, recording.path], outputs["json"], others)
    looked = Looked(status.st_size, status.st_mtime_ns, 0.0, exit_status, None)
    _judge(looked, complaint, outputs)
    if "report" in keep and looked.overview is not None:
        outputs["report"] = stack.enter_context(tempfile.TemporaryFile())
        _run([programs.analysis, recording.path], outputs["report"], [])
    looked.seconds = round(time.monotonic() - start, 3)
    if looked.overview is not None:
        looked.files = {kind: outputs[kind] for kind in keep}
    for file in looked.files.values():
        file.seek(0)
    return looked


def _run(arguments, output, others):
    """The exit status (minus the signal that ended it) and the beginning of what was said on standard error."""
    try:
        program = subprocess.Popen(
            arguments, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.PIPE, pass_fds=others
        )
    except OSError as error:
        raise ArchiveError(f"cannot run '{arguments[0]}': {error.strerror}") from None
    try:
        said = b""
        while block := program.stderr.read1(65536):
            said += block[: COMPLAINT_KEPT - len(said)]
        return program.wait(), said.decode("utf-8", "replace")
    finally:
        with contextlib.suppress(ProcessLookupError):
            program.kill()  # the task is being ended
        program.wait()
        program.stderr.close()


def _judge(looked, complaint, outputs):
    if looked.exit in (0, 2):
        outputs["json"].seek(0)
        try:
            looked.overview = json.load(outputs["json"])
        except ValueError:
            looked.message, looked.fault = "the overview is no JSON", Fault.STORAGE
        return
    lines = [line.strip() for line in complaint.split("\n") if line.strip()]
    said = lines[0].split("mpeg_ts_overview: ", 1)[-1][:MESSAGE_LENGTH] if lines else ""
    if looked.exit < 0:
        looked.message = f"ended by {_signal_name(-looked.exit)}" + (f": {said}" if said else "")
        own, others = -looked.exit in OWN_SIGNALS, -looked.exit in OTHERS_SIGNALS
    else:
        looked.message = said or f"ended with status {looked.exit}"
        own, others = said == NO_PACKETS, said.startswith("cannot write")
    looked.fault = Fault.RECORDING if own else Fault.NODE if others else Fault.STORAGE


def _signal_name(number):
    try:
        return signal.Signals(number).name
    except ValueError:
        return f"signal {number}"

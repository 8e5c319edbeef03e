"""What ends a command with a message and status 1."""


class ArchiveError(Exception):
    """Something that the user is told in one line."""

"""Read, check, format and edit structural-optimisation job files from Python.

The functions and classes are those of the job-document library that ``zentu-cmd`` uses, so that
a script sees the same commands, findings and texts as the command line.
"""

from ._zentu import Command, Error, Finding, Item, Job, Schema, check, format, read

__all__ = ["Command", "Error", "Finding", "Item", "Job", "Schema", "check", "format", "read"]

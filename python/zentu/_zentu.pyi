"""Type stubs of the extension module; the docstrings are those of the module itself."""

import os
from typing import Any, Iterator, Optional, Union

_Path = Union[str, "os.PathLike[str]"]

class Error(Exception):
    """A job that cannot be read, an edit that is refused, or any other library failure."""

    message: Optional[str]
    path: Optional[str]
    line: Optional[int]

class Schema:
    """The commands a job may hold, their items, and the rules that complete a job."""

    @staticmethod
    def builtin() -> Schema:
        """The schema compiled into the library."""
    @staticmethod
    def load(path: _Path) -> Schema:
        """Reads a JSON schema file, as ``zentu-cmd --schema`` does."""
    @property
    def description(self) -> str:
        """What the schema is for."""
    @property
    def keywords(self) -> list[str]:
        """The command keywords that the schema describes."""

class Finding:
    """One problem found in a job file, as ``zentu-cmd check`` reports it."""

    @property
    def severity(self) -> str:
        """'error', 'warning' or 'note'."""
    @property
    def code(self) -> str:
        """A stable code such as 'dangling-reference'."""
    @property
    def message(self) -> str:
        """One line of text for a person."""
    @property
    def line(self) -> Optional[int]:
        """The first line, from 1; None for a file that cannot be read."""
    @property
    def column(self) -> Optional[int]:
        """The first column in characters, from 1."""
    @property
    def end_line(self) -> Optional[int]:
        """The last line."""
    @property
    def end_column(self) -> Optional[int]:
        """The column after the end."""
    @property
    def suggestion(self) -> Optional[str]:
        """The text probably meant, or None."""
    def to_dict(self) -> dict[str, Any]:
        """The finding as ``zentu-cmd check --format json`` writes it."""

class Item:
    """One item of a command."""

    @property
    def name(self) -> str:
        """The item's name."""
    @property
    def kind(self) -> str:
        """The item's kind, such as 'ID_NAME'."""
    @property
    def text(self) -> str:
        """The item's value as text."""
    @property
    def readings(self) -> dict[str, Any]:
        """Every typed reading of the value, by data type."""
    @property
    def reference(self) -> Optional[str]:
        """The identifier of the command that the item names, or None."""
    @property
    def line(self) -> Optional[int]:
        """The line where the item is written, or that of what added it."""
    def to_dict(self) -> dict[str, Any]:
        """The item as Job.to_dict() gives it."""

class Command:
    """One command of a job; it follows the job's edits."""

    @property
    def kind(self) -> str:
        """The command's kind, such as 'DV'."""
    @property
    def keyword(self) -> str:
        """The keyword that opens the command."""
    @property
    def identifier(self) -> Optional[str]:
        """The value of its ID_NAME item, or None."""
    @property
    def line(self) -> Optional[int]:
        """The line of its keyword; None for a default command."""
    @property
    def items(self) -> list[Item]:
        """Its items in the order of their kinds."""
    def set(self, name: str, text: str) -> None:
        """Gives the first item of that name the text, or adds the item."""
    def remove(self, name: str) -> None:
        """Removes the first item of that name from the file."""
    def to_dict(self) -> dict[str, Any]:
        """The command as Job.to_dict() gives it."""

class Job:
    """A job file read with a schema; edits keep the rest of the file as written."""

    def __iter__(self) -> Iterator[Command]: ...
    def __len__(self) -> int: ...
    @property
    def path(self) -> str:
        """The path that the job was read from."""
    @property
    def findings(self) -> list[Finding]:
        """The findings of the job as it is now."""
    def commands(self, kind: Optional[str] = None) -> list[Command]:
        """Its commands in container order, of one kind when given."""
    def find(self, identifier: str) -> Optional[Command]:
        """The command of that identifier, in any case, or None."""
    def to_dict(self) -> dict[str, Any]:
        """The job as ``zentu-cmd dump`` prints it."""
    def add_command(self, keyword: str, identifier: Optional[str] = None) -> Command:
        """Appends a command of the keyword to the file and returns it."""
    def remove(self, command: Command) -> None:
        """Removes a command of this job from the file."""
    def complete(self) -> None:
        """Completes the job by the schema's rules from now on."""
    def text(self, canonical: bool = False) -> str:
        """The file as written with the edits made, or the library writer's text."""
    def write(self, path: _Path, canonical: bool = False) -> None:
        """Writes text(canonical) to the file at path."""

def read(path: _Path, schema: Optional[Schema] = None, complete: bool = True) -> Job:
    """Reads a job file; raises Error at the first error of a file with errors."""

def check(path: _Path, schema: Optional[Schema] = None) -> list[Finding]:
    """The findings of ``zentu-cmd check`` for the file."""

def format(text: str, schema: Optional[Schema] = None, canonical: bool = False) -> str:
    """What ``zentu-cmd format`` (or ``--canonical``) writes for the text."""

#!/usr/bin/env bash
# Runs one command and compares what it did with what it should have done.
#
#   run_case.sh [setting...] -- <argument>...
#
# Settings:
#   --program FILE        the program run with the arguments
#   --expected DIR        the directory that holds the files named by --stdout and --stderr
#   --in DIR              the directory the command runs in, as it is
#   --scratch DIR         instead, when there is a --copy: a directory that is emptied first and
#                         receives the copies
#   --copy FILE           a file copied into the scratch directory (repeatable)
#   --link NAME TARGET    a symbolic link made in the scratch directory
#   --read-only FILE      a file of the scratch directory whose write permissions are taken away
#   --input FILE          a file of the work directory that the command reads as standard input
#   --status N            the expected exit status (0 when not given)
#   --stdout FILE         standard output must equal FILE byte for byte
#   --stdout-regex RE     instead: standard output must match the extended regular expression RE
#                         (\n stands for a line feed)
#   --json-commands N     instead: standard output is a JSON document whose "commands" list has
#                         N entries
#   --stderr FILE         standard error must equal FILE byte for byte
#   --result FILE EXPECTED  FILE of the work directory must equal EXPECTED after the run
# A stream with no expectation must stay empty, so that stray messages are noticed.
set -uo pipefail

program="" expected="" workdir="" scratch="" copies=() link=() read_only="" input="/dev/null"
status=0 stdout_file="" stdout_regex="" json_commands="" stderr_file="" result=()
while (($#)); do
    case "$1" in
        --program) program=$2; shift 2 ;;
        --expected) expected=$2; shift 2 ;;
        --in) workdir=$2; shift 2 ;;
        --scratch) scratch=$2; shift 2 ;;
        --copy) copies+=("$2"); shift 2 ;;
        --link) link=("$2" "$3"); shift 3 ;;
        --read-only) read_only=$2; shift 2 ;;
        --input) input=$2; shift 2 ;;
        --status) status=$2; shift 2 ;;
        --stdout) stdout_file=$2; shift 2 ;;
        --stdout-regex) stdout_regex=$2; shift 2 ;;
        --json-commands) json_commands=$2; shift 2 ;;
        --stderr) stderr_file=$2; shift 2 ;;
        --result) result=("$2" "$3"); shift 3 ;;
        --) shift; break ;;
        *) echo "run_case.sh: unknown setting $1" >&2; exit 2 ;;
    esac
done

if ((${#copies[@]})); then
    rm -rf "$scratch" && mkdir -p "$scratch" || exit 2
    for file in "${copies[@]}"; do cp "$file" "$scratch/" || exit 2; done
    ((${#link[@]})) && ln -s "${link[1]}" "$scratch/${link[0]}"
    [ -n "$read_only" ] && chmod a-w "$scratch/$read_only"
    workdir=$scratch
fi
cd "$workdir" || exit 2

out=$(mktemp) err=$(mktemp)
trap 'rm -f "$out" "$err"' EXIT
echo "in $workdir: $program $*"
"$program" "$@" <"$input" >"$out" 2>"$err"
actual_status=$?

failures=0
fail() { echo "FAILED: $1"; failures=$((failures + 1)); }
# Compares a stream or written file with its expected file, showing a unified diff.
expect_file() { diff -u --label "$2" --label "$3" "$2" "$1" || fail "$3 differs from $2"; }
expect_empty() { [ -s "$1" ] && { fail "$2 should be empty but holds:"; cat "$1"; }; }

if [ "$actual_status" != "$status" ]; then
    fail "exit status $actual_status, expected $status"
    echo "standard output:"; cat "$out"; echo "standard error:"; cat "$err"
fi

if [ -n "$stdout_file" ]; then
    expect_file "$out" "$expected/$stdout_file" "standard output"
elif [ -n "$stdout_regex" ]; then
    text=$(cat "$out"; echo x)
    pattern=$(printf '%b' "$stdout_regex")
    [[ "${text%x}" =~ $pattern ]] || fail "standard output does not match '$stdout_regex':
${text%x}"
elif [ -n "$json_commands" ]; then
    count=$(python3 -c 'import json, sys; print(len(json.load(sys.stdin)["commands"]))' <"$out")
    [ "$count" = "$json_commands" ] ||
        fail "the JSON document lists '$count' commands, expected $json_commands"
else
    expect_empty "$out" "standard output"
fi

if [ -n "$stderr_file" ]; then
    expect_file "$err" "$expected/$stderr_file" "standard error"
else
    expect_empty "$err" "standard error"
fi

if ((${#result[@]})); then
    if [ -f "${result[0]}" ]; then
        expect_file "${result[0]}" "${result[1]}" "${result[0]}"
    else
        fail "${result[0]} was not written"
    fi
fi

((failures == 0)) || { echo "$failures expectation(s) not met"; exit 1; }

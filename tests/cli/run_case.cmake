# Runs one command and compares what it did with what it should have done.
#
#   cmake [-D<setting>=<value>...] -P run_case.cmake -- <program> <argument>...
#
# Settings:
#   WORKDIR        the directory the command runs in, as it is
#   SCRATCH        instead of WORKDIR: a directory that is emptied first and receives COPY
#   COPY           files copied into SCRATCH before the run, separated by |
#   LINK           a symbolic link made in SCRATCH before the run: its name|what it points to
#   READ_ONLY      a file of SCRATCH whose write permissions are taken away before the run
#   INPUT          a file of the work directory that the command reads as standard input
#   STATUS         the expected exit status (0 when not given)
#   STDOUT         a file that standard output must equal byte for byte
#   STDOUT_REGEX   instead of STDOUT: a pattern that standard output must match
#   JSON_COMMANDS  instead of STDOUT: standard output must be a JSON document whose "commands"
#                  list has this many entries
#   STDERR         a file that standard error must equal byte for byte
#   RESULT         a file of the work directory that must equal RESULT_EXPECTED after the run
#   RESULT_EXPECTED
# A stream with no expectation must stay empty, so that stray messages are noticed.
cmake_minimum_required(VERSION 3.25)

set(failures 0)

function(fail message)
    message("FAILED: ${message}")
    math(EXPR count "${failures} + 1")
    set(failures ${count} PARENT_SCOPE)
endfunction()

# Lines pass through a CMake list on their way into variables, and in a list semicolons, square
# brackets and backslashes mean something; meanwhile they travel as these control characters.
string(ASCII 1 semicolon_mark)
string(ASCII 2 open_mark)
string(ASCII 3 close_mark)
string(ASCII 4 backslash_mark)

# Sets <prefix>_count and <prefix>_0, <prefix>_1, ... in the caller to the lines of text.
function(load_lines text prefix)
    string(REPLACE "\\" "${backslash_mark}" text "${text}")
    string(REPLACE ";" "${semicolon_mark}" text "${text}")
    string(REPLACE "[" "${open_mark}" text "${text}")
    string(REPLACE "]" "${close_mark}" text "${text}")
    string(REPLACE "\n" ";" text "${text}")
    set(count 0)
    foreach(line IN LISTS text)
        string(REPLACE "${semicolon_mark}" ";" line "${line}")
        string(REPLACE "${open_mark}" "[" line "${line}")
        string(REPLACE "${close_mark}" "]" line "${line}")
        string(REPLACE "${backslash_mark}" "\\" line "${line}")
        set(${prefix}_${count} "${line}" PARENT_SCOPE)
        math(EXPR count "${count} + 1")
    endforeach()
    set(${prefix}_count ${count} PARENT_SCOPE)
endfunction()

# Whether old line i and new line j are equal, and so are the lines after them (or one text ends
# there): after a difference, a pair of equal lines is a safer place to fall back into step than
# a single blank one.
macro(lines_meet i j result)
    set(${result} FALSE)
    if(${i} LESS old_count AND ${j} LESS new_count AND "${old_${${i}}}" STREQUAL "${new_${${j}}}")
        math(EXPR _next_old "${${i}} + 1")
        math(EXPR _next_new "${${j}} + 1")
        if(_next_old EQUAL old_count OR _next_new EQUAL new_count
           OR "${old_${_next_old}}" STREQUAL "${new_${_next_new}}")
            set(${result} TRUE)
        endif()
    endif()
endmacro()

# Appends count operations sign (" ", "-" or "+") to the edit script of print_diff, moving its
# old line i and new line j past the lines they cover.
macro(record sign count)
    set(_remaining ${count})
    while(_remaining GREATER 0)
        set(op_${ops} "${sign}")
        set(op_old_${ops} ${i})
        set(op_new_${ops} ${j})
        math(EXPR ops "${ops} + 1")
        if(NOT "${sign}" STREQUAL "+")
            math(EXPR i "${i} + 1")
        endif()
        if(NOT "${sign}" STREQUAL "-")
            math(EXPR j "${j} + 1")
        endif()
        math(EXPR _remaining "${_remaining} - 1")
    endwhile()
endmacro()

# Prints a unified diff of two texts. Where they part, the shortest way back into step is taken
# (a greedy match, not a minimal diff, which is plenty to see what went wrong); the differences
# are shown in hunks with three lines of context.
function(print_diff expected actual expected_label actual_label)
    load_lines("${expected}" old)
    load_lines("${actual}" new)
    set(search_limit 200)
    set(context 3)

    # The edit script: op_<k> is " ", "-" or "+", at old line op_old_<k> and new line op_new_<k>.
    set(ops 0)
    set(i 0)
    set(j 0)
    while(i LESS old_count OR j LESS new_count)
        set(skip_old 0)
        set(skip_new 0)
        set(same FALSE)
        if(i LESS old_count AND j LESS new_count AND "${old_${i}}" STREQUAL "${new_${j}}")
            set(same TRUE)
        else()
            set(skip_old "")
            foreach(distance RANGE 1 ${search_limit})
                foreach(step RANGE 0 ${distance})
                    math(EXPR candidate_old "${i} + ${step}")
                    math(EXPR candidate_new "${j} + ${distance} - ${step}")
                    lines_meet(candidate_old candidate_new met)
                    if(met)
                        set(skip_old ${step})
                        math(EXPR skip_new "${distance} - ${step}")
                        break()
                    endif()
                endforeach()
                if(NOT skip_old STREQUAL "")
                    break()
                endif()
            endforeach()
            if(skip_old STREQUAL "")
                math(EXPR skip_old "${old_count} - ${i}")
                math(EXPR skip_new "${new_count} - ${j}")
            endif()
        endif()
        record("-" ${skip_old})
        record("+" ${skip_new})
        if(same)
            record(" " 1)
        endif()
    endwhile()

    set(report "--- ${expected_label}\n+++ ${actual_label}\n")
    set(k 0)
    while(k LESS ops)
        if(op_${k} STREQUAL " ")
            math(EXPR k "${k} + 1")
            continue()
        endif()
        # A hunk: from context lines before this change to context lines after the last change
        # that follows within twice the context.
        math(EXPR first "${k} - ${context}")
        if(first LESS 0)
            set(first 0)
        endif()
        set(last ${k})
        set(scan ${k})
        while(scan LESS ops)
            math(EXPR reach "${last} + 2 * ${context}")
            if(scan GREATER reach)
                break()
            endif()
            if(NOT op_${scan} STREQUAL " ")
                set(last ${scan})
            endif()
            math(EXPR scan "${scan} + 1")
        endwhile()
        math(EXPR stop "${last} + ${context}")
        if(stop GREATER_EQUAL ops)
            math(EXPR stop "${ops} - 1")
        endif()
        set(body "")
        set(old_length 0)
        set(new_length 0)
        foreach(index RANGE ${first} ${stop})
            set(sign "${op_${index}}")
            if(sign STREQUAL "+")
                set(line "${new_${op_new_${index}}}")
            else()
                set(line "${old_${op_old_${index}}}")
                math(EXPR old_length "${old_length} + 1")
            endif()
            if(NOT sign STREQUAL "-")
                math(EXPR new_length "${new_length} + 1")
            endif()
            string(APPEND body "${sign}${line}\n")
        endforeach()
        math(EXPR old_start "${op_old_${first}} + 1")
        math(EXPR new_start "${op_new_${first}} + 1")
        string(APPEND report "@@ -${old_start},${old_length} +${new_start},${new_length} @@\n${body}")
        math(EXPR k "${stop} + 1")
    endwhile()
    message("${report}")
endfunction()

function(expect_file_text actual expected_file what)
    if(NOT EXISTS "${expected_file}")
        fail("${what}: the expected file ${expected_file} does not exist")
    else()
        file(READ "${expected_file}" expected)
        if(NOT actual STREQUAL expected)
            fail("${what} differs from ${expected_file}")
            print_diff("${expected}" "${actual}" "${expected_file}" "${what}")
        endif()
    endif()
    set(failures ${failures} PARENT_SCOPE)
endfunction()

function(expect_empty text what)
    if(NOT text STREQUAL "")
        fail("${what} should be empty but holds:\n${text}")
    endif()
    set(failures ${failures} PARENT_SCOPE)
endfunction()

# The command is everything after "--".
set(command "")
set(in_command FALSE)
math(EXPR last_argument "${CMAKE_ARGC} - 1")
foreach(index RANGE ${last_argument})
    if(in_command)
        list(APPEND command "${CMAKE_ARGV${index}}")
    elseif(CMAKE_ARGV${index} STREQUAL "--")
        set(in_command TRUE)
    endif()
endforeach()
if(NOT command)
    message(FATAL_ERROR "no command: give it after --")
endif()

if(DEFINED SCRATCH)
    file(REMOVE_RECURSE "${SCRATCH}")
    file(MAKE_DIRECTORY "${SCRATCH}")
    string(REPLACE "|" ";" copies "${COPY}")
    foreach(source IN LISTS copies)
        file(COPY "${source}" DESTINATION "${SCRATCH}")
    endforeach()
    if(DEFINED LINK)
        string(REPLACE "|" ";" link "${LINK}")
        list(GET link 0 link_name)
        list(GET link 1 link_target)
        file(CREATE_LINK "${link_target}" "${SCRATCH}/${link_name}" SYMBOLIC)
    endif()
    if(DEFINED READ_ONLY)
        file(CHMOD "${SCRATCH}/${READ_ONLY}" PERMISSIONS OWNER_READ GROUP_READ WORLD_READ)
    endif()
    set(WORKDIR "${SCRATCH}")
endif()
if(NOT IS_DIRECTORY "${WORKDIR}")
    message(FATAL_ERROR "no work directory: give WORKDIR or SCRATCH")
endif()
if(NOT DEFINED STATUS)
    set(STATUS 0)
endif()

set(input_setting "")
if(DEFINED INPUT)
    set(input_setting INPUT_FILE "${WORKDIR}/${INPUT}")
endif()

list(JOIN command " " shown)
message("in ${WORKDIR}: ${shown}")
execute_process(
    COMMAND ${command}
    WORKING_DIRECTORY "${WORKDIR}"
    ${input_setting}
    RESULT_VARIABLE status
    OUTPUT_VARIABLE stdout
    ERROR_VARIABLE stderr)

if(NOT status STREQUAL STATUS)
    fail("exit status ${status}, expected ${STATUS}")
    message("standard output:\n${stdout}\nstandard error:\n${stderr}")
endif()

if(DEFINED STDOUT)
    expect_file_text("${stdout}" "${STDOUT}" "standard output")
elseif(DEFINED STDOUT_REGEX)
    if(NOT stdout MATCHES "${STDOUT_REGEX}")
        fail("standard output does not match '${STDOUT_REGEX}':\n${stdout}")
    endif()
elseif(DEFINED JSON_COMMANDS)
    string(JSON count ERROR_VARIABLE json_error LENGTH "${stdout}" commands)
    if(json_error)
        fail("standard output is not a JSON document with a \"commands\" list: ${json_error}")
    elseif(NOT count EQUAL JSON_COMMANDS)
        fail("the JSON document lists ${count} commands, expected ${JSON_COMMANDS}")
    endif()
else()
    expect_empty("${stdout}" "standard output")
endif()

if(DEFINED STDERR)
    expect_file_text("${stderr}" "${STDERR}" "standard error")
else()
    expect_empty("${stderr}" "standard error")
endif()

if(DEFINED RESULT)
    if(NOT EXISTS "${WORKDIR}/${RESULT}")
        fail("${RESULT} was not written")
    else()
        file(READ "${WORKDIR}/${RESULT}" result)
        expect_file_text("${result}" "${RESULT_EXPECTED}" "${RESULT}")
    endif()
endif()

if(failures GREATER 0)
    message(FATAL_ERROR "${failures} expectation(s) not met")
endif()

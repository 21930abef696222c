include_guard(GLOBAL)
include(GNUInstallDirs)

# Gives a target the project's defaults: C++17 without compiler extensions and the project's
# warning set; every target of the project uses it.
function(zentu_target_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
        if(ZENTU_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
    elseif(MSVC)
        target_compile_options(${target} PRIVATE /W4 $<$<BOOL:${ZENTU_WARNINGS_AS_ERRORS}>:/WX>)
    endif()
endfunction()

# Turns on AddressSanitizer and UndefinedBehaviorSanitizer for everything built after the call;
# any report aborts the process so that a test run cannot pass over it.
macro(zentu_enable_sanitizers)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endmacro()

# Declares one of the project's shared libraries: hidden symbols, an export macro switched to
# "export" by BUILDING_DEFINE, its public headers as a file set rooted at INCLUDE_DIR, and a
# ZentuCmdEngine:: alias so that consumers use the same name in the build tree and installed.
function(zentu_add_shared_library name)
    cmake_parse_arguments(ARG "" "BUILDING_DEFINE;INCLUDE_DIR" "SOURCES;HEADERS" ${ARGN})
    add_library(${name} SHARED)
    add_library(ZentuCmdEngine::${name} ALIAS ${name})
    target_sources(${name}
        PRIVATE ${ARG_SOURCES}
        PUBLIC FILE_SET HEADERS BASE_DIRS ${ARG_INCLUDE_DIR} FILES ${ARG_HEADERS})
    target_compile_definitions(${name} PRIVATE ${ARG_BUILDING_DEFINE})
    set_target_properties(${name} PROPERTIES
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    # The libraries are installed side by side; each finds the ones it depends on beside itself,
    # also for a program that does not name them itself.
    if(NOT APPLE AND NOT WIN32)
        set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN")
    endif()
    zentu_target_defaults(${name})
endfunction()

# Fails unless the README holds the text of SOURCE word for word, so that the code a reader copies
# from it is the code that CI builds.
#
#   cmake -DREADME=<README.md> -DSOURCE=<file> -P readme_shows.cmake
cmake_minimum_required(VERSION 3.25)

file(READ "${README}" readme)
file(READ "${SOURCE}" source)
string(FIND "${readme}" "${source}" position)
if(position EQUAL -1)
    message(FATAL_ERROR "${README} does not show ${SOURCE} as it stands; copy it over again")
endif()

# Cross build for 64-bit Windows with mingw-w64 and the toolkit that build.sh provides.
#
# ZEL_WINDOWS_QT names the toolkit's folder: from the command line, else from the environment, else
# where build.sh keeps it.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The POSIX flavour: the toolkit is built with its thread model.
set(triplet x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER ${triplet}-g++-posix)
set(CMAKE_RC_COMPILER ${triplet}-windres)

if(NOT ZEL_WINDOWS_QT)
    set(ZEL_WINDOWS_QT $ENV{ZEL_WINDOWS_QT})
endif()
if(NOT ZEL_WINDOWS_QT)
    set(cache $ENV{XDG_CACHE_HOME})
    if(NOT cache)
        set(cache $ENV{HOME}/.cache)
    endif()
    set(ZEL_WINDOWS_QT ${cache}/zel-file-creator/qt-5.15.8-windows-x86_64)
endif()
set(ZEL_WINDOWS_QT ${ZEL_WINDOWS_QT} CACHE PATH "Folder of the toolkit for Windows")
# Checks of the compiler run in projects of their own, which must see the same toolkit.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZEL_WINDOWS_QT)

# build.sh writes the stamp last, so a toolkit without one is only half there.
if(NOT EXISTS ${ZEL_WINDOWS_QT}/.complete)
    message(FATAL_ERROR
        "The toolkit for Windows is not in ${ZEL_WINDOWS_QT}: run packaging/windows/build.sh, "
        "which provides it.")
endif()

set(CMAKE_FIND_ROOT_PATH ${ZEL_WINDOWS_QT} /usr/${triplet})
set(CMAKE_PREFIX_PATH ${ZEL_WINDOWS_QT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Nobody debugs what is built here, and symbols make the files five times as large.
set(CMAKE_EXE_LINKER_FLAGS_RELEASE_INIT -s)

# Test programs find the toolkit's and the compiler's libraries where they are.
execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=libstdc++-6.dll
    OUTPUT_VARIABLE runtime OUTPUT_STRIP_TRAILING_WHITESPACE)
get_filename_component(runtime "${runtime}" DIRECTORY)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine/run.sh
    --dlls ${ZEL_WINDOWS_QT}/bin:${runtime}:/usr/${triplet}/lib)

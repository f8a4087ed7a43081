# Writes to OUTPUT the installer commands that remove what is in FOLDER, and nothing else, from where
# it was installed.
file(GLOB_RECURSE entries LIST_DIRECTORIES true RELATIVE ${FOLDER} ${FOLDER}/*)
# Folders come before what they hold, so that the reverse order empties them first.
list(SORT entries ORDER DESCENDING)
set(commands)
foreach(entry ${entries})
    string(REPLACE "/" "\\" installed ${entry})
    if(IS_DIRECTORY ${FOLDER}/${entry})
        string(APPEND commands "RMDir \"$INSTDIR\\${installed}\"\n")
    else()
        string(APPEND commands "Delete \"$INSTDIR\\${installed}\"\n")
    endif()
endforeach()
file(WRITE ${OUTPUT} "${commands}")

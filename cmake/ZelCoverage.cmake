# The target `coverage` builds and runs every test, and prints the line coverage of the program.

find_program(ZEL_GCOVR gcovr REQUIRED)
mark_as_advanced(ZEL_GCOVR)

set(rooms common models tlv widgets views app)
list(JOIN rooms "|" any_room)
set(reports)
foreach(room IN LISTS rooms)
    list(APPEND reports
        COMMAND ${CMAKE_COMMAND} -E echo "--- ${room}"
        COMMAND ${ZEL_GCOVR} --root ${PROJECT_SOURCE_DIR} --filter "${PROJECT_SOURCE_DIR}/${room}/" --exclude ".*_autogen.*"
            ${PROJECT_BINARY_DIR})
endforeach()

add_custom_target(coverage
    COMMAND ${CMAKE_COMMAND} --build ${PROJECT_BINARY_DIR} --target all
    COMMAND find ${PROJECT_BINARY_DIR} -name "*.gcda" -delete
    COMMAND ${CMAKE_CTEST_COMMAND} --test-dir ${PROJECT_BINARY_DIR} -j 2 --output-on-failure
    ${reports}
    COMMAND ${CMAKE_COMMAND} -E echo "--- the whole program"
    COMMAND ${ZEL_GCOVR} --root ${PROJECT_SOURCE_DIR} --filter "${PROJECT_SOURCE_DIR}/(${any_room})/"
        --exclude ".*_autogen.*" ${PROJECT_BINARY_DIR}
    USES_TERMINAL VERBATIM)

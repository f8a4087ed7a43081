# Version information and icons of the program, the folder that is handed out, the portable archive
# and the installer.

configure_file(ZelFileCreator.rc.in ZelFileCreator.rc @ONLY)
add_library(zel_windows_resources OBJECT ${CMAKE_CURRENT_BINARY_DIR}/ZelFileCreator.rc)
set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/ZelFileCreator.rc PROPERTIES
    OBJECT_DEPENDS
    "${PROJECT_SOURCE_DIR}/resources/ZelFile.ico;${PROJECT_SOURCE_DIR}/resources/ZelDocument.ico")
target_link_libraries(ZelFileCreator PRIVATE zel_windows_resources Zel::windows_manifest)
set_target_properties(ZelFileCreator PROPERTIES WIN32_EXECUTABLE ON)

# The folder that is handed out: the program, exactly the libraries and plugins that it loads, and
# the licence texts of what rides along.
set(package ZelFileCreator-${PROJECT_VERSION}-windows-x86_64)
set(stage ${CMAKE_CURRENT_BINARY_DIR}/${package})
set(licenses ${stage}/licenses)

set(qt_libraries Qt5Core Qt5Gui Qt5Widgets)
list(TRANSFORM qt_libraries REPLACE "(.+)" "${ZEL_WINDOWS_QT}/bin/\\1.dll")
set(runtime_libraries)
foreach(name libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
        OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${file}")
        message(FATAL_ERROR "The compiler has no ${name}: install g++-mingw-w64-x86-64-posix.")
    endif()
    list(APPEND runtime_libraries ${file})
endforeach()
set(platform_plugin ${ZEL_WINDOWS_QT}/plugins/platforms/qwindows.dll)
set(style_plugin ${ZEL_WINDOWS_QT}/plugins/styles/qwindowsvistastyle.dll)
file(GLOB toolkit_licenses CONFIGURE_DEPENDS ${ZEL_WINDOWS_QT}/licenses/*)
# What the toolkit itself carries (zlib, PCRE, libpng, FreeType, HarfBuzz, …), and the runtimes.
set(licenses_toolkit_parts /usr/share/doc/libqt5core5a/copyright)
set(licenses_compiler_runtime /usr/share/doc/gcc-mingw-w64-base/copyright)
set(licenses_windows_runtime /usr/share/doc/mingw-w64-common/copyright)
foreach(text ${licenses_toolkit_parts} ${licenses_compiler_runtime} ${licenses_windows_runtime})
    if(NOT EXISTS ${text})
        message(FATAL_ERROR "The licence text ${text} is missing: install the package it belongs to.")
    endif()
endforeach()

add_custom_command(OUTPUT ${stage}.stamp
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${stage}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${stage}/platforms ${stage}/styles ${licenses}/qt
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:ZelFileCreator> ${qt_libraries}
        ${runtime_libraries} ${CMAKE_CURRENT_SOURCE_DIR}/qt.conf ${stage}
    COMMAND ${CMAKE_COMMAND} -E copy ${platform_plugin} ${stage}/platforms
    COMMAND ${CMAKE_COMMAND} -E copy ${style_plugin} ${stage}/styles
    COMMAND ${CMAKE_COMMAND} -E copy ${toolkit_licenses} ${licenses}/qt
    COMMAND ${CMAKE_COMMAND} -E copy ${licenses_toolkit_parts} ${licenses}/qt/third-party.txt
    COMMAND ${CMAKE_COMMAND} -E copy ${licenses_compiler_runtime} ${licenses}/gcc-runtime.txt
    COMMAND ${CMAKE_COMMAND} -E copy ${licenses_windows_runtime} ${licenses}/mingw-w64-runtime.txt
    COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/licenses.txt ${licenses}/README.txt
    COMMAND ${CMAKE_COMMAND} -D STRIP=${CMAKE_STRIP} -D FOLDER=${stage}
        -P ${CMAKE_CURRENT_SOURCE_DIR}/strip.cmake
    COMMAND ${CMAKE_COMMAND} -E touch ${stage}.stamp
    DEPENDS ZelFileCreator qt.conf licenses.txt strip.cmake ${qt_libraries} ${runtime_libraries}
        ${platform_plugin} ${style_plugin} ${toolkit_licenses}
    COMMENT "Gathering ${package}"
    VERBATIM)

set(archive ${CMAKE_BINARY_DIR}/${package}.zip)
add_custom_command(OUTPUT ${archive}
    COMMAND ${CMAKE_COMMAND} -E rm -f ${archive}
    COMMAND ${CMAKE_COMMAND} -E tar cf ${archive} --format=zip ${package}
    DEPENDS ${stage}.stamp
    WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
    COMMENT "Packing ${package}.zip"
    VERBATIM)

find_program(ZEL_MAKENSIS makensis REQUIRED)
set(installer ${CMAKE_BINARY_DIR}/${package}-setup.exe)
add_custom_command(OUTPUT ${installer}
    COMMAND ${CMAKE_COMMAND} -D FOLDER=${stage} -D OUTPUT=${stage}.files.nsh
        -P ${CMAKE_CURRENT_SOURCE_DIR}/file-list.cmake
    COMMAND ${ZEL_MAKENSIS} -V2 -WX -INPUTCHARSET UTF8
        -DVERSION=${PROJECT_VERSION} -DSTAGE=${stage} -DFILES=${stage}.files.nsh
        -DOUTPUT=${installer} -DICON=${PROJECT_SOURCE_DIR}/resources/ZelFile.ico
        ${CMAKE_CURRENT_SOURCE_DIR}/installer.nsi
    DEPENDS ${stage}.stamp installer.nsi file-list.cmake
    COMMENT "Packing ${package}-setup.exe"
    VERBATIM)

add_custom_target(windows_package ALL DEPENDS ${archive} ${installer})
# For the tests.
set_target_properties(windows_package PROPERTIES
    ZEL_STAGE ${stage} ZEL_ARCHIVE ${archive} ZEL_INSTALLER ${installer})

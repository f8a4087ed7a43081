# How this project's libraries, programs and tests are declared.

# Language level, warnings and instrumentation: linked privately by every target of the project.
add_library(zel_build_flags INTERFACE)
target_compile_features(zel_build_flags INTERFACE cxx_std_17)
target_compile_definitions(zel_build_flags INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_DEPRECATED_WARNINGS
    QT_NO_FOREACH)
target_compile_options(zel_build_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Woverloaded-virtual
    -Wnon-virtual-dtor
    $<$<BOOL:${ZEL_WARNINGS_AS_ERRORS}>:-Werror>)
if(ZEL_SANITIZE)
    target_compile_options(zel_build_flags INTERFACE
        -fsanitize=${ZEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(zel_build_flags INTERFACE -fsanitize=${ZEL_SANITIZE})
endif()
if(ZEL_COVERAGE)
    target_compile_options(zel_build_flags INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(zel_build_flags INTERFACE --coverage)
endif()

# zel_add_library(<room> SOURCES <file>... [PUBLIC <library>...] [PRIVATE <library>...])
#
# Adds the static library Zel::<room>. Includes are written from the root of the source tree.
function(zel_add_library room)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PUBLIC;PRIVATE")
    add_library(zel_${room} STATIC ${arg_SOURCES})
    add_library(Zel::${room} ALIAS zel_${room})
    set_target_properties(zel_${room} PROPERTIES AUTOMOC ON)
    target_compile_features(zel_${room} PUBLIC cxx_std_17)
    target_include_directories(zel_${room} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(zel_${room} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} zel_build_flags)
endfunction()

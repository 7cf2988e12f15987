# Targets of the project: one static library per folder, layered in one direction.

include_guard(GLOBAL)

find_program(QUILLORA_CCACHE ccache)
if(QUILLORA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_C_COMPILER_LAUNCHER "${QUILLORA_CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${QUILLORA_CCACHE}")
endif()

# Flags shared by every target of the project.
add_library(quillora_flags INTERFACE)
target_compile_definitions(quillora_flags INTERFACE
    QT_NO_CAST_FROM_ASCII
    QT_NO_CAST_TO_ASCII
    QT_NO_URL_CAST_FROM_STRING
    QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
    QT_USE_QSTRINGBUILDER
    QT_DISABLE_DEPRECATED_BEFORE=0x060000
    POINTERHOLDER_TRANSITION=4)
if(MSVC)
    target_compile_options(quillora_flags INTERFACE /W4 /utf-8 /permissive-)
else()
    target_compile_options(quillora_flags INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
        -Wold-style-cast -Wcast-align -Wsuggest-override)
endif()
if(QUILLORA_WARNINGS_AS_ERRORS)
    target_compile_options(quillora_flags INTERFACE $<IF:$<CXX_COMPILER_ID:MSVC>,/WX,-Werror>)
endif()
if(QUILLORA_SANITIZE)
    target_compile_options(quillora_flags INTERFACE
        -fsanitize=${QUILLORA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(quillora_flags INTERFACE -fsanitize=${QUILLORA_SANITIZE})
endif()
if(QUILLORA_COVERAGE)
    target_compile_options(quillora_flags INTERFACE --coverage)
    target_link_options(quillora_flags INTERFACE --coverage)
endif()

# quillora_add_library(<name> LAYER <n> SOURCES ... [PUBLIC ...] [PRIVATE ...])
#
# Adds the static library quillora_<name> with the alias Quillora::<name>. A library may link only
# libraries of a lower layer; anything else stops the configuration.
function(quillora_add_library name)
    cmake_parse_arguments(ARG "" "LAYER" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    set(target "quillora_${name}")
    add_library(${target} STATIC ${ARG_SOURCES})
    add_library(Quillora::${name} ALIAS ${target})
    set_target_properties(${target} PROPERTIES QUILLORA_LAYER "${ARG_LAYER}")
    foreach(dependency IN LISTS ARG_PUBLIC ARG_PRIVATE)
        if(dependency MATCHES "^Quillora::")
            get_target_property(layer ${dependency} QUILLORA_LAYER)
            if(NOT layer LESS ARG_LAYER)
                message(FATAL_ERROR
                    "${name} (layer ${ARG_LAYER}) must not depend on ${dependency} (layer ${layer})")
            endif()
        endif()
    endforeach()
    target_include_directories(${target} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} quillora_flags)
    if(NOT MSVC)
        target_compile_options(${target} PRIVATE -Wconversion)
    endif()
endfunction()

# quillora_add_test(<name> SOURCES ... LIBS ... [TIMEOUT <seconds>] [LABELS ...])
#
# Adds one Qt Test executable, run without a display and with folders of its own.
function(quillora_add_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} Qt6::Test quillora_flags)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QT_SCALE_FACTOR=1;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp;ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0;UBSAN_OPTIONS=print_stacktrace=1")
endfunction()

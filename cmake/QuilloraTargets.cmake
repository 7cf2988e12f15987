# SPDX-License-Identifier: AGPL-3.0-or-later
# Targets of the project: one library per folder, layered in one direction.

include_guard(GLOBAL)

# Every test holds a copy of the debug information of what it is linked with. Lines are enough for
# stack traces; a debugger wants the preset "debug".
option(QUILLORA_LINES_ONLY "Leave variables out of the debug information" OFF)
if(QUILLORA_LINES_ONLY AND NOT MSVC)
    add_compile_options($<$<CONFIG:RelWithDebInfo>:-g1>)
endif()

option(QUILLORA_SHARED_ENGINE
    "Build the engine as a shared library, so that MuPDF is linked once and not into every test" OFF)
# The tests use the private parts of the engine too, which a DLL would have to export one by one.
if(WIN32)
    set(QUILLORA_SHARED_ENGINE OFF)
endif()

# A compiler cache has to be told that precompiled headers are fine with it.
find_program(QUILLORA_CCACHE ccache)
if(QUILLORA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(launcher "${CMAKE_COMMAND}" -E env
        CCACHE_SLOPPINESS=pch_defines,time_macros
        "${QUILLORA_CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER ${launcher})
    set(CMAKE_CXX_COMPILER_LAUNCHER ${launcher})
endif()

# The fastest linker that is installed.
include(CheckLinkerFlag)
foreach(linker mold lld)
    if(NOT MSVC AND NOT CMAKE_CROSSCOMPILING)
        find_program(QUILLORA_LINKER_${linker} NAMES ld.${linker})
        if(QUILLORA_LINKER_${linker})
            check_linker_flag(CXX -fuse-ld=${linker} QUILLORA_USES_${linker})
            if(QUILLORA_USES_${linker})
                add_link_options(-fuse-ld=${linker})
                break()
            endif()
        endif()
    endif()
endforeach()

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
    if(UNIX)
        # Some libraries ask for it; precompiled headers want it everywhere or nowhere.
        target_compile_options(quillora_flags INTERFACE -pthread)
    endif()
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

# quillora_add_library(<name> LAYER <n> SOURCES ... [PUBLIC ...] [PRIVATE ...] [PRECOMPILED ...]
#                      [SHARED] [NO_MOC])
#
# Adds the library quillora_<name> with the alias Quillora::<name>; it is static unless SHARED is
# given. A library may link only libraries of a lower layer; anything else stops the configuration.
# PRECOMPILED names headers that most of its sources include; NO_MOC says that nothing in it needs
# Qt's meta-object compiler.
function(quillora_add_library name)
    cmake_parse_arguments(ARG "SHARED;NO_MOC" "LAYER" "SOURCES;PUBLIC;PRIVATE;PRECOMPILED" ${ARGN})
    set(target "quillora_${name}")
    set(kind STATIC)
    if(ARG_SHARED)
        set(kind SHARED)
    endif()
    add_library(${target} ${kind} ${ARG_SOURCES})
    if(ARG_PRECOMPILED)
        target_precompile_headers(${target} PRIVATE ${ARG_PRECOMPILED})
    endif()
    if(NOT ARG_NO_MOC)
        set_target_properties(${target} PROPERTIES AUTOMOC ON)
    endif()
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

# quillora_links_to(<result> <target> <wanted>)
#
# Whether a target links to another one, by whatever way.
function(quillora_links_to result target wanted)
    set(waiting ${target})
    set(seen)
    while(waiting)
        list(POP_FRONT waiting next)
        if(next STREQUAL wanted)
            set(${result} TRUE PARENT_SCOPE)
            return()
        endif()
        if(next IN_LIST seen OR NOT TARGET ${next} OR next MATCHES "^Qt6?::")
            continue()
        endif()
        list(APPEND seen ${next})
        get_target_property(links ${next} INTERFACE_LINK_LIBRARIES)
        if(next STREQUAL target)
            get_target_property(links ${next} LINK_LIBRARIES)
        endif()
        if(links)
            list(APPEND waiting ${links})
        endif()
    endwhile()
    set(${result} FALSE PARENT_SCOPE)
endfunction()

# Qt's test library without the two definitions that differ from folder to folder, which no test uses
# and which would keep tests from sharing precompiled headers.
function(quillora_add_qt_test)
    add_library(quillora_qt_test INTERFACE)
    target_link_libraries(quillora_qt_test INTERFACE $<LINK_ONLY:Qt6::Test> Qt6::Core)
    target_include_directories(quillora_qt_test SYSTEM INTERFACE
        $<TARGET_PROPERTY:Qt6::Test,INTERFACE_INCLUDE_DIRECTORIES>)
    target_compile_definitions(quillora_qt_test INTERFACE QT_TESTLIB_LIB)
    add_library(Quillora::QtTest ALIAS quillora_qt_test)
endfunction()

# Headers that are compiled once for all tests: for those of widgets, and for all others. Each belongs
# to an executable that does nothing, because the headers must be compiled with the very flags of
# those that use them.
set(QUILLORA_TEST_HEADERS
    <QtTest/QSignalSpy> <QtTest/QTest>
    <QtCore/QDir> <QtCore/QFile> <QtCore/QTemporaryDir>
    <QtGui/QImage> <QtGui/QPainter>
    <algorithm> <functional> <map> <memory> <optional> <set> <vector>)
function(quillora_add_test_headers name)
    cmake_parse_arguments(ARG "" "" "LIBS;HEADERS" ${ARGN})
    set(target quillora_test_headers_${name})
    file(CONFIGURE OUTPUT ${target}.cpp CONTENT "int main() {}\n")
    add_executable(${target} "${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp")
    target_link_libraries(${target} PRIVATE ${ARG_LIBS} Quillora::QtTest quillora_flags)
    quillora_use_test_options(${target})
    target_precompile_headers(${target} PRIVATE ${QUILLORA_TEST_HEADERS} ${ARG_HEADERS})
endfunction()

# Tests are compiled with little optimisation, because they are built more often than they run, and
# libraries and executables alike, so that they can share precompiled headers.
function(quillora_use_test_options target)
    if(UNIX)
        target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1;-g1;-gz> -fPIC)
        target_link_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-gz>)
    endif()
endfunction()

# Gives the target of a test the precompiled headers that suit what it links.
function(quillora_use_test_headers target)
    quillora_use_test_options(${target})
    # Microsoft's compiler shares precompiled headers between equal sets of definitions only.
    if(MSVC)
        return()
    endif()
    quillora_links_to(widgets ${target} Qt6::Widgets)
    if(widgets)
        target_precompile_headers(${target} REUSE_FROM quillora_test_headers_widgets)
    else()
        target_precompile_headers(${target} REUSE_FROM quillora_test_headers_engine)
    endif()
endfunction()

# quillora_add_test_support(<name> SOURCES ... [PUBLIC ...] [PRIVATE ...] [MOC])
#
# Adds a static library that several tests use. MOC says that a header needs Qt's meta-object
# compiler.
function(quillora_add_test_support name)
    cmake_parse_arguments(ARG "MOC" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ${ARG_MOC})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} Quillora::QtTest PRIVATE ${ARG_PRIVATE} quillora_flags)
    quillora_use_test_headers(${name})
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
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} Qt6::Gui Quillora::QtTest quillora_flags)
    quillora_use_test_headers(${name})
    # The one class of a test needs the meta-object compiler, but not the scan for others.
    if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${name}.cpp")
        qt6_generate_moc("${name}.cpp" "${CMAKE_CURRENT_BINARY_DIR}/${name}.moc" TARGET ${name})
        target_sources(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${name}.moc")
        target_include_directories(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}")
    endif()
    add_test(NAME ${name} COMMAND ${name})
    # Qt starts processes by a fork that shares the memory, after which the thread sanitizer takes the
    # test itself for a child that must start no threads.
    #
    # The folder of a test is a label, so that tests can be chosen by what they are about.
    file(RELATIVE_PATH folder "${PROJECT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}")
    list(APPEND ARG_LABELS "${folder}")
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QT_SCALE_FACTOR=1;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/tsan.supp:die_after_fork=0;ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0;UBSAN_OPTIONS=print_stacktrace=1")
endfunction()

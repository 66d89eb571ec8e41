# Common build settings and the functions that declare libraries, programs and tests.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()
if(NOT MSVC)
    # Assertions stay on in the default build: they guard callers, never data. With sanitizers a
    # compiler takes three times as long, and half of that is optimisation.
    if(ZDS_SANITIZE)
        set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1")
    else()
        set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")
    endif()
endif()

find_program(ZDS_CCACHE ccache)
if(ZDS_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${ZDS_CCACHE})
endif()

# Every target of the project links this: flags, definitions and the include root.
add_library(zds_common INTERFACE)
target_include_directories(zds_common INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_definitions(zds_common INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH
    QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x050F00
    # Qt leaves assertions, and file and line of messages, out of all builds but Debug.
    $<$<CONFIG:RelWithDebInfo>:QT_FORCE_ASSERTS>
    $<$<NOT:$<CONFIG:Debug>>:QT_MESSAGELOGCONTEXT>
    ZDS_VERSION_MAJOR=${PROJECT_VERSION_MAJOR} ZDS_VERSION_MINOR=${PROJECT_VERSION_MINOR})
if(MSVC)
    target_compile_options(zds_common INTERFACE /W4 /utf-8 /permissive- $<$<BOOL:${ZDS_WERROR}>:/WX>)
else()
    target_compile_options(zds_common INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
        -Wold-style-cast -Wcast-align
        $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
        $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
        $<$<BOOL:${ZDS_WERROR}>:-Werror>)
endif()
if(ZDS_SANITIZE)
    target_compile_options(zds_common INTERFACE
        -fsanitize=${ZDS_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(zds_common INTERFACE -fsanitize=${ZDS_SANITIZE})
endif()

# zds_library(name SOURCES file... [DEPENDS target...] [NO_QT] [CONVERSION_WARNINGS])
# A static library. CONVERSION_WARNINGS is for the layers that handle bytes.
function(zds_library name)
    cmake_parse_arguments(ARG "NO_QT;CONVERSION_WARNINGS" "" "SOURCES;DEPENDS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC zds_common ${ARG_DEPENDS})
    if(ARG_NO_QT)
        set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    else()
        target_link_libraries(${name} PUBLIC Qt5::Core)
    endif()
    if(ARG_CONVERSION_WARNINGS AND NOT MSVC)
        target_compile_options(${name} PRIVATE -Wconversion)
    endif()
endfunction()

# zds_program(name SOURCES file... [DEPENDS target...])
function(zds_program name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE zds_common Qt5::Core ${ARG_DEPENDS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()

# zds_test(name [DEPENDS target...] [SOURCES file...] [LABELS label...])
# One QtTest executable from name.cpp; more SOURCES may follow.
function(zds_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;DEPENDS;LABELS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    add_executable(${name} ${name}.cpp ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE zds_common Qt5::Core Qt5::Test ${ARG_DEPENDS})
    # One run of moc, where CMake's own scan takes three steps and as long as a small compilation.
    set_target_properties(${name} PROPERTIES AUTOMOC OFF)
    set(moc ${CMAKE_CURRENT_BINARY_DIR}/${name}.moc)
    qt5_generate_moc(${name}.cpp ${moc} TARGET ${name})
    target_sources(${name} PRIVATE ${moc})
    target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
    add_test(NAME ${name} COMMAND ${name})
    set(environment QT_QPA_PLATFORM=offscreen TZ=UTC LC_ALL=C.UTF-8)
    if(ZDS_SANITIZE)
        list(APPEND environment LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/cmake/lsan.supp)
        math(EXPR ARG_TIMEOUT "${ARG_TIMEOUT} * 5")
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "${environment}" LABELS "${ARG_LABELS}")
endfunction()

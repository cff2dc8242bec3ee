# The functions with which every folder declares its targets, so that language level, warnings, visibility and
# sanitizers are the same everywhere.

if(PROJECT_IS_TOP_LEVEL)
    set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
    # Programs and libraries side by side in the build directory: build/<preset>/bin and lib.
    set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
    set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
    set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
    if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
        set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Kind of build" FORCE)
    endif()
    find_program(REMOTE_CODING_CCACHE ccache)
    mark_as_advanced(REMOTE_CODING_CCACHE)
    if(REMOTE_CODING_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
        set(CMAKE_CXX_COMPILER_LAUNCHER "${REMOTE_CODING_CCACHE}")
    endif()
endif()

set(REMOTE_CODING_WARNINGS
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wsign-conversion
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wold-style-cast
    -Wcast-align
    -Wextra-semi
    -Wformat=2
    -Wimplicit-fallthrough
    -Wundef)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    list(APPEND REMOTE_CODING_WARNINGS -Wduplicated-cond -Wlogical-op)
    # g++ 12 reports these in the standard library's own inlined code (std::string, std::optional) and in coroutine
    # frames, with nothing wrong in ours; clang's analysis and the sanitizers cover the same ground.
    list(APPEND REMOTE_CODING_WARNINGS -Wno-restrict -Wno-maybe-uninitialized -Wno-mismatched-new-delete
         -Wno-stringop-overread -Wno-stringop-overflow -Wno-array-bounds)
else()
    list(APPEND REMOTE_CODING_WARNINGS -Wmove -Wunreachable-code -Wloop-analysis)
endif()

# The common settings of every target of this repository.
function(remote_coding_configure_target target)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "INTERFACE_LIBRARY")
        target_include_directories(${target} INTERFACE "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>")
        target_compile_features(${target} INTERFACE cxx_std_20)
        return()
    endif()
    target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>")
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(
        ${target}
        PROPERTIES CXX_STANDARD 20
                   CXX_STANDARD_REQUIRED ON
                   CXX_EXTENSIONS OFF
                   CXX_VISIBILITY_PRESET hidden
                   VISIBILITY_INLINES_HIDDEN ON
                   POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE ${REMOTE_CODING_WARNINGS})
    if(REMOTE_CODING_WARNINGS_AS_ERRORS)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(CMAKE_UNITY_BUILD)
        # Between files that are compiled together it means nothing; every file is also compiled by itself, in the other builds.
        target_compile_options(${target} PRIVATE -Wno-shadow)
    endif()
    # Source locations in log lines are repository-relative, wherever the checkout lies.
    target_compile_options(${target} PRIVATE "-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=")
    if(REMOTE_CODING_SANITIZE)
        target_compile_options(${target} PRIVATE "-fsanitize=${REMOTE_CODING_SANITIZE}" -fno-omit-frame-pointer
                                                 -fno-sanitize-recover=all)
        target_link_options(${target} PUBLIC "-fsanitize=${REMOTE_CODING_SANITIZE}")
    endif()
endfunction()

# remote_coding_add_library(<name> <STATIC|OBJECT> [<source>...])
# A library of the given kind; header-only (INTERFACE) while it has no source file yet.
function(remote_coding_add_library name kind)
    if(ARGN)
        add_library(${name} ${kind} ${ARGN})
    else()
        add_library(${name} INTERFACE)
    endif()
    remote_coding_configure_target(${name})
endfunction()

# remote_coding_link(<target> [<library>...])
# Links as PUBLIC, or as INTERFACE where the target is header-only.
function(remote_coding_link target)
    get_target_property(type ${target} TYPE)
    if(type STREQUAL "INTERFACE_LIBRARY")
        target_link_libraries(${target} INTERFACE ${ARGN})
    else()
        target_link_libraries(${target} PUBLIC ${ARGN})
    endif()
endfunction()

# remote_coding_add_program(<name> [<source>...])
function(remote_coding_add_program name)
    add_executable(${name} ${ARGN})
    remote_coding_configure_target(${name})
endfunction()

# remote_coding_add_test(<name> [<source>...])
# A GoogleTest program over the component's private parts and the reference host; each of its cases becomes a CTest
# test. Cases are listed when ctest starts, so a crash at start-up is a failed test and not a failed build.
function(remote_coding_add_test name)
    remote_coding_add_program(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE RemoteCodingObjects ReferenceHost RemoteCodingBase GTest::gmock
                                          GTest::gtest_main)
    # What is tested is optimised as it is shipped; optimising the cases themselves would only take time.
    target_compile_options(${name} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1>)
    if(TARGET TestSupport)
        target_link_libraries(${name} PRIVATE TestSupport)
    endif()
    gtest_discover_tests(
        ${name}
        TEST_PREFIX "${name}."
        WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
        NO_PRETTY_VALUES
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 120)
endfunction()

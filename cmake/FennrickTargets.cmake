# The layer a source folder belongs to: its folder under src/ (every engine unit is "engine").
function(fnrk_layer_of folder out)
    file(RELATIVE_PATH relative "${PROJECT_SOURCE_DIR}/src" "${folder}")
    string(REGEX REPLACE "/.*" "" layer "${relative}")
    set(${out} ${layer} PARENT_SCOPE)
endfunction()

# Makes `target` wait for a check of the includes of the current folder: a layer that includes
# a higher one, or an internal header of the engine, fails the build (the rules and the layers'
# order are in cmake/CheckLayerIncludes.cmake).
function(fnrk_check_layers target)
    fnrk_layer_of("${CMAKE_CURRENT_SOURCE_DIR}" layer)
    file(GLOB files CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp"
         "${CMAKE_CURRENT_SOURCE_DIR}/*.hpp")
    set(stamp "${CMAKE_CURRENT_BINARY_DIR}/${target}.layers")
    add_custom_command(
        OUTPUT "${stamp}"
        COMMAND "${CMAKE_COMMAND}" -DLAYER=${layer} "-DFOLDER=${CMAKE_CURRENT_SOURCE_DIR}"
                "-DROOT=${PROJECT_SOURCE_DIR}" "-DSTAMP=${stamp}"
                -P "${PROJECT_SOURCE_DIR}/cmake/CheckLayerIncludes.cmake"
        DEPENDS ${files} "${PROJECT_SOURCE_DIR}/cmake/CheckLayerIncludes.cmake"
        COMMENT "Checking the includes of ${target} against the layers"
        VERBATIM)
    add_custom_target(${target}_layers DEPENDS "${stamp}")
    add_dependencies(${target} ${target}_layers)
endfunction()

# One static library per source folder: every .cpp directly in the folder, headers beside them,
# but the files named in EXCLUDE (a part left out of this build) and the other host's twins:
# name_win32.cpp is built for Windows only, name_posix.cpp everywhere else.
# Includes are written from src/, e.g. #include "platform/ini_file.hpp".
function(fnrk_library name)
    cmake_parse_arguments(ARG "" "" "DEPS;EXCLUDE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    foreach(excluded ${ARG_EXCLUDE})
        list(REMOVE_ITEM sources "${CMAKE_CURRENT_SOURCE_DIR}/${excluded}")
    endforeach()
    if(WIN32)
        list(FILTER sources EXCLUDE REGEX "_posix\\.cpp$")
    else()
        list(FILTER sources EXCLUDE REGEX "_win32\\.cpp$")
    endif()
    add_library(${name} STATIC ${sources})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
    target_link_libraries(${name} PUBLIC ${ARG_DEPS})
    fnrk_check_layers(${name})
endfunction()

# One GoogleTest program per test folder: every .cpp directly in the folder but those in EXCLUDE.
# Tests get FNRK_SHARED_DIR (the fixtures), FNRK_TEST_BINARY_DIR and FNRK_CLI_PATH defined;
# NEEDS_CLI makes the program wait for the `fennrick` command to be built.
function(fnrk_tests name)
    cmake_parse_arguments(ARG "NEEDS_CLI" "" "DEPS;LABELS;EXCLUDE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    foreach(excluded ${ARG_EXCLUDE})
        list(REMOVE_ITEM sources "${CMAKE_CURRENT_SOURCE_DIR}/${excluded}")
    endforeach()
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${ARG_DEPS} fnrk_testing GTest::gtest_main GTest::gmock)
    target_compile_definitions(${name} PRIVATE
        FNRK_SHARED_DIR="${FNRK_SHARED_DIR}"
        FNRK_TEST_BINARY_DIR="${CMAKE_CURRENT_BINARY_DIR}"
        FNRK_CLI_PATH="$<TARGET_FILE:fennrick>")
    if(ARG_NEEDS_CLI)
        add_dependencies(${name} fennrick)
    endif()
    # Under the leak checker, the font library's process-lifetime caches (reached through cairo)
    # are not leaks of ours.
    set(properties LABELS "${ARG_LABELS}")
    if(FNRK_SANITIZE)
        list(APPEND properties ENVIRONMENT
             "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp")
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES ${properties})
endfunction()

# A helper program that a test program starts as a process of its own (another workstation):
# helpers/<name>.cpp linked to `DEPS`, built with `tests`, its path given to `tests` as the
# compile definition `DEFINE`.
function(fnrk_test_helper tests name)
    cmake_parse_arguments(ARG "" "DEFINE" "DEPS" ${ARGN})
    add_executable(${name} helpers/${name}.cpp)
    target_link_libraries(${name} PRIVATE ${ARG_DEPS})
    add_dependencies(${tests} ${name})
    target_compile_definitions(${tests} PRIVATE ${ARG_DEFINE}="$<TARGET_FILE:${name}>")
endfunction()

# Adds every sub-folder that has its own CMakeLists.txt.
function(fnrk_add_subfolders)
    file(GLOB children LIST_DIRECTORIES true RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}"
         CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*")
    list(SORT children)
    foreach(child ${children})
        if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${child}/CMakeLists.txt")
            add_subdirectory(${child})
        endif()
    endforeach()
endfunction()

# A libFuzzer program (clang, -DFNRK_FUZZERS=ON): fuzz/<name>.cpp of the calling folder, linked
# to `library`, which is instrumented for coverage as well. scripts/test.sh runs every fuzz_*.
function(fnrk_fuzzer name library)
    target_compile_options(${library} PRIVATE -fsanitize=fuzzer-no-link,address,undefined
                                              -fno-sanitize-recover=all)
    target_link_options(${library} INTERFACE -fsanitize=address,undefined)
    add_executable(${name} fuzz/${name}.cpp)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined
                                           -fno-sanitize-recover=all)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer,address,undefined)
    target_link_libraries(${name} PRIVATE ${library})
endfunction()

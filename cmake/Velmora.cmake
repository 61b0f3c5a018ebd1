# Compiler settings and the helpers with which every folder declares its target.

add_library(velmora_options INTERFACE)
target_compile_options(velmora_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual)
if(VELMORA_WERROR)
    target_compile_options(velmora_options INTERFACE -Werror)
endif()
if(VELMORA_SANITIZE)
    target_compile_options(velmora_options INTERFACE
        -fsanitize=${VELMORA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(velmora_options INTERFACE -fsanitize=${VELMORA_SANITIZE})
endif()
target_include_directories(velmora_options INTERFACE "${CMAKE_SOURCE_DIR}/src")

# What nearly every file includes, read once a target; scripts/check-portable compiles without it, so that each file
# still says itself what it needs.
set(velmora_common_headers <filesystem> <functional> <map> <memory> <optional> <string> <vector>)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(velmora_options INTERFACE -fpch-preprocess) # for ccache
endif()

# velmora_library(NAME [MOC] [USES lib…] [PRIVATE_USES lib…])
# A static library velmora_NAME of all sources of the calling folder; MOC where a class has signals.
function(velmora_library name)
    cmake_parse_arguments(ARG "MOC" "" "USES;PRIVATE_USES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    add_library(velmora_${name} STATIC ${sources})
    set_target_properties(velmora_${name} PROPERTIES LINKER_LANGUAGE CXX AUTOMOC ${ARG_MOC})
    target_link_libraries(velmora_${name} PUBLIC velmora_options ${ARG_USES} PRIVATE ${ARG_PRIVATE_USES})
    target_precompile_headers(velmora_${name} PRIVATE ${velmora_common_headers})
endfunction()

# velmora_test(NAME [USES lib…] [GUI | WIDGETS])
# A GoogleTest program NAME_tests of all *_test.cpp of the calling folder; GUI gives it an offscreen application, WIDGETS
# one with widgets.
function(velmora_test name)
    cmake_parse_arguments(ARG "GUI;WIDGETS" "" "USES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    if(NOT sources)
        return()
    endif()
    add_executable(${name}_tests ${sources})
    set_target_properties(${name}_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_link_libraries(${name}_tests PRIVATE velmora_options ${ARG_USES} GTest::gmock GTest::gtest)
    target_precompile_headers(${name}_tests PRIVATE ${velmora_common_headers} <gmock/gmock.h> <gtest/gtest.h>)
    # The matchers' templates take the optimiser more time than the tests take to run.
    target_compile_options(${name}_tests PRIVATE -O0 -g1)
    target_include_directories(${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_compile_definitions(${name}_tests PRIVATE
        VELMORA_TEST_BIN_DIR="${VELMORA_BIN_DIR}"
        VELMORA_TEST_TOOLS_DIR="${VELMORA_TOOLS_DIR}"
        VELMORA_TEST_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    if(ARG_GUI)
        target_sources(${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/gui_main.cpp")
        target_link_libraries(${name}_tests PRIVATE Qt6::Gui)
    elseif(ARG_WIDGETS)
        target_sources(${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/widgets_main.cpp")
        target_link_libraries(${name}_tests PRIVATE Qt6::Test Qt6::Widgets)
    else()
        target_link_libraries(${name}_tests PRIVATE GTest::gtest_main)
    endif()
    gtest_discover_tests(${name}_tests PROPERTIES TIMEOUT 120 DISCOVERY_TIMEOUT 60)
endfunction()

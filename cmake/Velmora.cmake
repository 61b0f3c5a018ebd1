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

# What nearly every file includes is read once for all targets of a kind: without Qt, with it, with its widgets.
# scripts/check-portable compiles without, so that each file without Qt still says itself what it needs.
set(velmora_common_headers <algorithm> <filesystem> <functional> <map> <memory> <optional> <string> <vector>)
set(velmora_gui_headers <QColor> <QImage> <QObject> <QPainter> <QString>)
set(velmora_widget_headers <QApplication> <QBoxLayout> <QLabel> <QPushButton> <QWidget>)

# velmora_headers(TARGET OWNER header…): TARGET shares what OWNER, compiled with the same options, has read.
function(velmora_headers target owner)
    if(target STREQUAL owner)
        target_precompile_headers(${target} PRIVATE ${ARGN})
    else()
        target_precompile_headers(${target} REUSE_FROM ${owner})
    endif()
endfunction()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(velmora_options INTERFACE -fpch-preprocess) # for ccache
endif()

# velmora_library(NAME [MOC] [GUI | WIDGETS] [USES lib…] [PRIVATE_USES lib…])
# A static library velmora_NAME of all sources of the calling folder; MOC where a class has signals, GUI
# and WIDGETS by what of Qt most of its files include.
function(velmora_library name)
    cmake_parse_arguments(ARG "MOC;GUI;WIDGETS" "" "USES;PRIVATE_USES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    add_library(velmora_${name} STATIC ${sources})
    set_target_properties(velmora_${name} PROPERTIES LINKER_LANGUAGE CXX AUTOMOC ${ARG_MOC})
    target_link_libraries(velmora_${name} PUBLIC velmora_options ${ARG_USES} PRIVATE ${ARG_PRIVATE_USES})
    if(ARG_WIDGETS)
        velmora_headers(velmora_${name} velmora_canvas
            ${velmora_common_headers} ${velmora_gui_headers} ${velmora_widget_headers})
    elseif(ARG_GUI)
        velmora_headers(velmora_${name} velmora_render ${velmora_common_headers} ${velmora_gui_headers})
    else()
        velmora_headers(velmora_${name} velmora_model ${velmora_common_headers})
    endif()
endfunction()

# What every program and library of the tests is compiled with.
function(velmora_test_settings target)
    set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    target_link_libraries(${target} PUBLIC velmora_options GTest::gmock GTest::gtest)
    # The matchers' templates take the optimiser more time than the tests take to run.
    target_compile_options(${target} PRIVATE -O0 -g0)
    target_include_directories(${target} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_compile_definitions(${target} PRIVATE
        VELMORA_TEST_BIN_DIR="${VELMORA_BIN_DIR}"
        VELMORA_TEST_TOOLS_DIR="${VELMORA_TOOLS_DIR}"
        VELMORA_TEST_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
endfunction()

# velmora_test(NAME [USES lib…] [QT | GUI | WIDGETS])
# A GoogleTest program NAME_tests of all sources of the calling folder; GUI gives it an offscreen application, WIDGETS
# one with widgets; QT says that it links Qt all the same.
function(velmora_test name)
    cmake_parse_arguments(ARG "QT;GUI;WIDGETS" "" "USES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
    add_executable(${name}_tests ${sources})
    velmora_test_settings(${name}_tests)
    target_link_libraries(${name}_tests PRIVATE ${ARG_USES})
    if(ARG_GUI)
        target_sources(${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/gui_main.cpp")
        target_link_libraries(${name}_tests PRIVATE Qt6::Gui)
    elseif(ARG_WIDGETS)
        target_sources(${name}_tests PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/widgets_main.cpp")
        # Without the folder's path, which Qt's test library would define: with it no headers can be shared.
        target_link_libraries(${name}_tests PRIVATE Qt6::Widgets $<LINK_ONLY:Qt6::Test>)
        target_include_directories(${name}_tests SYSTEM PRIVATE
            $<TARGET_PROPERTY:Qt6::Test,INTERFACE_INCLUDE_DIRECTORIES>)
        target_compile_definitions(${name}_tests PRIVATE QT_TESTLIB_LIB)
    else()
        target_link_libraries(${name}_tests PRIVATE GTest::gtest_main)
    endif()
    # The first target of a kind reads these headers for the others.
    set(headers ${velmora_common_headers} <gmock/gmock.h> <gtest/gtest.h>)
    if(ARG_WIDGETS)
        velmora_headers(${name}_tests canvas_tests ${headers} ${velmora_gui_headers} ${velmora_widget_headers})
    elseif(ARG_GUI)
        velmora_headers(${name}_tests render_tests ${headers} ${velmora_gui_headers})
    elseif(ARG_QT)
        velmora_headers(${name}_tests platform_tests ${headers})
    else()
        velmora_headers(${name}_tests model_tests ${headers})
    endif()
    gtest_discover_tests(${name}_tests PROPERTIES TIMEOUT 120 DISCOVERY_TIMEOUT 60)
endfunction()

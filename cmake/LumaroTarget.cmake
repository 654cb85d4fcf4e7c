# SPDX-License-Identifier: GPL-3.0-or-later
# One place that sets what every Lumaro target is compiled with.

function(lumaro_target_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wno-missing-field-initializers)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER)
endfunction()

# lumaro_module(NAME SOURCES... ) -> static library lumaro_NAME with the repository root on its include path,
# so that every include names its module: #include "browse/state/LMRModeState.h".
function(lumaro_module name)
    add_library(lumaro_${name} STATIC ${ARGN})
    target_include_directories(lumaro_${name} PUBLIC ${PROJECT_SOURCE_DIR})
    lumaro_target_defaults(lumaro_${name})
endfunction()

# lumaro_test(NAME LABEL [WIDGETS] SOURCES... LIBS libs...) -> one GoogleTest executable registered with CTest.
# WIDGETS: the suite shows widgets, so its main() creates a QApplication instead of a QGuiApplication.
function(lumaro_test name label)
    cmake_parse_arguments(T "WIDGETS" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${T_SOURCES})
    lumaro_target_defaults(${name})
    if(T_WIDGETS)
        set(main lumaro_widgets_test_main)
    else()
        set(main lumaro_test_main)
    endif()
    target_link_libraries(${name} PRIVATE ${main} lumaro_test_support ${T_LIBS} GTest::gtest GTest::gmock)
    set(properties LABELS ${label} ENVIRONMENT QT_QPA_PLATFORM=offscreen)
    if(LUMARO_LSAN_SUPPRESSIONS)
        list(APPEND properties ENVIRONMENT_MODIFICATION "LSAN_OPTIONS=set:${LUMARO_LSAN_SUPPRESSIONS}")
    endif()
    gtest_discover_tests(${name}
        PROPERTIES ${properties}
        NO_PRETTY_VALUES
        DISCOVERY_TIMEOUT 60)
endfunction()

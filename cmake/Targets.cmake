# What every target of the project shares: the language level, the warnings, and one way to declare a
# folder's library and its test program.

add_library(tracelyn_options INTERFACE)
target_compile_features(tracelyn_options INTERFACE cxx_std_20)
target_compile_options(tracelyn_options INTERFACE
    -Wall -Wextra -Wconversion -Wsign-conversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
# A report names files of the project, not of the machine that built it. ccache gives the compiler paths from the build
# folder.
cmake_path(RELATIVE_PATH PROJECT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_BINARY_DIR} OUTPUT_VARIABLE from_build)
target_compile_options(tracelyn_options INTERFACE
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= -fmacro-prefix-map=${from_build}/=)
# What turns a fault in a released program into a stop instead of a way in.
set(hardened $<AND:$<CONFIG:Release>,$<NOT:$<BOOL:${TRACELYN_FUZZ}>>>)
target_compile_options(tracelyn_options INTERFACE
    $<${hardened}:-fstack-protector-strong> $<${hardened}:-U_FORTIFY_SOURCE> $<${hardened}:-D_FORTIFY_SOURCE=2>
    $<${hardened}:-D_GLIBCXX_ASSERTIONS>)
if(WIN32)
    target_link_options(tracelyn_options INTERFACE
        -fstack-protector-strong -Wl,--dynamicbase -Wl,--nxcompat -Wl,--high-entropy-va)
else()
    target_link_options(tracelyn_options INTERFACE $<${hardened}:-Wl,-z,relro,-z,now>)
endif()
target_compile_definitions(tracelyn_options INTERFACE
    QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS TRACELYN_VERSION="${PROJECT_VERSION}")

# tracelyn_precompile(NAME header...)
# The headers that most files of a target include are read once. The release build does without, which shows when a file
# forgets one.
option(TRACELYN_PRECOMPILED_HEADERS "Read common headers once: builds faster" OFF)
function(tracelyn_precompile name)
    if(TRACELYN_PRECOMPILED_HEADERS)
        target_precompile_headers(${name} PRIVATE ${ARGN})
    endif()
endfunction()

# tracelyn_library(NAME SOURCES a.cpp... [PUBLIC target...] [PRIVATE target...])
# Includes are written from src/. Every folder's headers can be found; which folder may include which is what
# scripts/check-arrows checks, as one of the tests.
function(tracelyn_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>)
    target_compile_features(${name} PUBLIC cxx_std_20)
    # The options are ours: a program that uses an installed library has its own.
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} $<BUILD_INTERFACE:tracelyn_options>)
    # The toolkit asks for -fPIC, which would keep functions from being inlined within their file.
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
endfunction()

# How a test program names files of the machine that builds it: for a Windows program they are on a drive.
if(WIN32 AND CMAKE_CROSSCOMPILING)
    set(TRACELYN_TEST_DRIVE "Z:")
endif()

# tracelyn_test(NAME SOURCES a.cpp... LINKS target...)
# A test that needs a Qt application object brings a main function of its own.
function(tracelyn_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE
        TEST_DATA_DIR="${TRACELYN_TEST_DRIVE}${PROJECT_SOURCE_DIR}/tests/data"
        SAMPLES_DIR="${TRACELYN_TEST_DRIVE}${PROJECT_SOURCE_DIR}/samples")
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} tracelyn_options GTest::gtest GTest::gtest_main)
    # A static Qt brings the screen's platform alone.
    if(TARGET Qt6::QOffscreenIntegrationPlugin AND ARG_LINKS MATCHES "app|render")
        qt_import_plugins(${name} INCLUDE Qt6::QOffscreenIntegrationPlugin Qt6::QWindowsIntegrationPlugin)
    endif()
    tracelyn_precompile(${name} ${PROJECT_SOURCE_DIR}/tests/Testing.h)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;UBSAN_OPTIONS=print_stacktrace=1;LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp")
endfunction()

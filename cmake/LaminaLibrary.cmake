# One module: one folder below src/, one static library, one target `lamina_<name>` (alias lamina::<name>).
#
#   lamina_library(image FOLDER platform/image SOURCES a.cpp ... PUBLIC lamina::base PRIVATE PkgConfig::JPEG)
#
# A module's headers are reached as "platform/image/CGImage.h" through a folder of its own that holds nothing but a link
# to the module. Only targets that link it see that folder, so an include of a layer above does not build.

add_library(lamina_warnings INTERFACE)
target_compile_options(lamina_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
    -Wimplicit-fallthrough -Wextra-semi -Werror
    # gcc 12 takes the joining of two strings for an overlapping copy (its bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# Pixels come out the same on every machine: no fused multiply-add unless the code asks for it.
add_library(lamina_flags INTERFACE)
target_compile_options(lamina_flags INTERFACE -ffp-contract=off -fvisibility-inlines-hidden)
target_link_libraries(lamina_flags INTERFACE Threads::Threads)

function(lamina_library name)
    cmake_parse_arguments(LIB "" "FOLDER" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    set(target lamina_${name})
    set(view ${CMAKE_BINARY_DIR}/include/${name})
    get_filename_component(parent ${view}/${LIB_FOLDER} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${LIB_FOLDER} ${view}/${LIB_FOLDER} SYMBOLIC)

    add_library(${target} STATIC ${LIB_SOURCES})
    add_library(lamina::${name} ALIAS ${target})
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${view}>)
    target_link_libraries(${target}
        PUBLIC ${LIB_PUBLIC}
        PRIVATE ${LIB_PRIVATE} $<BUILD_INTERFACE:lamina_warnings> $<BUILD_INTERFACE:lamina_flags>)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O3>)
endfunction()

# A part of the program that is loaded with its first use, in C++ on libraries that most runs do without: a shared
# object beside the folder of the programs, in the build as in an installation. `OF` is the library that loads it.
#   lamina_module(ffmpeg OF media FILE lamina-media SOURCES a.cpp ... LINK PkgConfig::FFMPEG)
set(LAMINA_MODULE_FOLDER ${CMAKE_INSTALL_LIBDIR}/lamina)
function(lamina_module name)
    cmake_parse_arguments(MODULE "" "OF;FILE" "SOURCES;LINK" ${ARGN})
    set(target lamina_${name})
    add_library(${target} MODULE ${MODULE_SOURCES})
    set_target_properties(${target} PROPERTIES OUTPUT_NAME ${MODULE_FILE} PREFIX ""
        LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${LAMINA_MODULE_FOLDER} CXX_VISIBILITY_PRESET hidden)
    target_include_directories(${target} PRIVATE ${PROJECT_BINARY_DIR}/include/${MODULE_OF})
    target_compile_definitions(${target} PRIVATE LAMINA_VERSION="${PROJECT_VERSION}")
    target_link_libraries(${target} PRIVATE ${MODULE_LINK} lamina_warnings lamina_flags)
    install(TARGETS ${target} LIBRARY DESTINATION ${LAMINA_MODULE_FOLDER})
endfunction()

# A GoogleTest program. Each test becomes one entry of ctest. What it caches goes to the build folder.
#   lamina_test(base_tests SOURCES ... LINK lamina::base)
function(lamina_test name)
    cmake_parse_arguments(TEST "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    target_link_libraries(${name} PRIVATE ${TEST_LINK} test_support module_folder GTest::gtest_main lamina_warnings lamina_flags)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 300 ENVIRONMENT "XDG_CACHE_HOME=${PROJECT_BINARY_DIR}/test-cache")
endfunction()

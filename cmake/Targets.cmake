# Flags that every target shares.
add_library(brevio_flags INTERFACE)
target_compile_features(brevio_flags INTERFACE cxx_std_20)
target_compile_options(brevio_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  $<$<BOOL:${BREVIO_WERROR}>:-Werror>)
target_compile_definitions(brevio_flags INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_NO_FOREACH QT_NO_CONTEXTLESS_CONNECT)
# As Debian hardens what it builds.
target_compile_options(brevio_flags INTERFACE "$<$<CONFIG:Release>:-fstack-protector-strong;-D_FORTIFY_SOURCE=2>")
target_link_options(brevio_flags INTERFACE $<$<CONFIG:Release>:LINKER:-z,now>)
if(BREVIO_SANITIZE)
  target_compile_options(brevio_flags INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
    -fno-sanitize-recover=undefined)
  target_link_options(brevio_flags INTERFACE -fsanitize=address,undefined)
endif()
if(BREVIO_FUZZERS)
  # Every library reports which of its branches ran; libFuzzer itself is linked by the programs in fuzz/ alone.
  target_compile_options(brevio_flags INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(brevio_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# brevio_link(NAME): links a target by the row of its folder in Layers.cmake.
function(brevio_link name)
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE folder)
  target_link_libraries(${name}
    PUBLIC ${BREVIO_PUBLIC_${folder}}
    PRIVATE ${BREVIO_PRIVATE_${folder}} brevio_flags)
endfunction()

# brevio_library(NAME SOURCES file...): one folder, one target, which others link as Brevio::NAME. Its headers are
# included by file name.
function(brevio_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  add_library(Brevio::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  brevio_link(${name})
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
endfunction()

# brevio_plugin(NAME SOURCES file...): a plugin of one folder, plugins/NAME.so beside the program.
function(brevio_plugin name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(${name} MODULE ${ARG_SOURCES})
  brevio_link(${name})
  set_target_properties(${name} PROPERTIES
    AUTOMOC ON PREFIX "" NO_SONAME ON LIBRARY_OUTPUT_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/plugins)
  # In a folder of their own CPack does not take them for libraries that others link.
  install(TARGETS ${name} DESTINATION ${BREVIO_PROGRAM_DIR}/plugins COMPONENT program)
endfunction()

# brevio_program(NAME SOURCES file...): a program of one folder.
function(brevio_program name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  brevio_link(${name})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
endfunction()

# brevio_test(NAME LABEL unit|gui|e2e TIMEOUT seconds SOURCES file... LINK target...): a Qt Test program, run
# headless with its own home, so that no test sees the user's files.
function(brevio_test name)
  cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "SOURCES;LINK;DEFINES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} Qt6::Test brevio_flags)
  target_compile_definitions(${name} PRIVATE ${ARG_DEFINES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  add_test(NAME ${name} COMMAND ${name})
  set(home ${PROJECT_BINARY_DIR}/tests/home/${name})
  file(MAKE_DIRECTORY ${home}/runtime)
  set_tests_properties(${name} PROPERTIES
    LABELS "${ARG_LABEL}" TIMEOUT ${ARG_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_DATA_HOME=${home}/data;XDG_RUNTIME_DIR=${home}/runtime;http_proxy=;no_proxy=;LC_ALL=C.UTF-8")
endfunction()

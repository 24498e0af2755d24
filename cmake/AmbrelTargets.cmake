# What every target of this project shares: the language, the warnings, the sanitizers.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_AUTOMOC ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

add_library(ambrel-options INTERFACE)
target_compile_options(ambrel-options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion $<$<BOOL:${AMBREL_WARNINGS_ARE_ERRORS}>:-Werror>
  $<$<CXX_COMPILER_ID:GNU>:-fcoroutines>)
target_compile_definitions(ambrel-options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_CAST_FROM_BYTEARRAY
  QT_STRICT_ITERATORS QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(ambrel-options INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  # What distributions harden their programs with; tests/packaging/check-hardening looks for it.
  target_compile_options(ambrel-options INTERFACE
    -fstack-protector-strong -fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    target_compile_options(ambrel-options INTERFACE -fcf-protection)
  elseif(CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    target_compile_options(ambrel-options INTERFACE -mbranch-protection=standard)
  endif()
  target_link_options(ambrel-options INTERFACE
    -Wl,-z,relro,-z,now,-z,noexecstack $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
endif()
if(AMBREL_SANITIZE)
  # GCC 12 takes values behind its own instrumentation for uninitialised; the other presets keep that warning. Clang 14
  # cannot check the calls of coroutines.
  target_compile_options(ambrel-options INTERFACE -fsanitize=${AMBREL_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized> $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
  target_link_options(ambrel-options INTERFACE -fsanitize=${AMBREL_SANITIZE})
endif()

# Reading Qt's headers is most of a compilation. They are read once for all libraries and once for all programs, by
# targets of their own, because every target that shares them must agree in its definitions.
function(ambrel_precompile name module)
  get_target_property(type ${name} TYPE)
  string(TOLOWER "${module}-headers-${type}" headers)
  if(NOT TARGET ${headers})
    set(source ${CMAKE_BINARY_DIR}/empty-program.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "int main() {}\n")
    if(type STREQUAL EXECUTABLE)
      add_executable(${headers} ${source})
    else()
      add_library(${headers} STATIC ${source})
    endif()
    target_link_libraries(${headers} PRIVATE ambrel-options Qt6::${module})
    target_precompile_headers(${headers} PRIVATE <Qt${module}>)
    set_target_properties(${headers} PROPERTIES AUTOMOC OFF)
  endif()
  target_precompile_headers(${name} REUSE_FROM ${headers})
endfunction()

# One floor of the client: a static library that sees only the floors it names.
function(ambrel_library name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "PRECOMPILE" "SOURCES;LINK")
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC ambrel-options ${ARG_LINK})
  if(ARG_PRECOMPILE)
    ambrel_precompile(${name} ${ARG_PRECOMPILE})
  endif()
endfunction()

# From Qt 6.8 on, Qt Test's own macros narrow; the older release keeps the warning for the tests.
add_library(ambrel-test-options INTERFACE)
if(Qt6_VERSION VERSION_GREATER_EQUAL 6.8)
  target_compile_options(ambrel-test-options INTERFACE -Wno-conversion)
endif()

# One test program, run by ctest without a display unless it asks for one.
function(ambrel_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "XVFB" "TIMEOUT" "SOURCES;LINK")
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ambrel-options ambrel-test-options Qt6::Test ${ARG_LINK})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  if(ARG_XVFB)
    ambrel_precompile(${name} Widgets)
  else()
    ambrel_precompile(${name} Core)
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  if(ARG_XVFB)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/under-display $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
  endif()
  # A proxy of the machine's cannot reach the test's own servers.
  set(without_proxy http_proxy https_proxy all_proxy no_proxy HTTPS_PROXY ALL_PROXY NO_PROXY)
  list(TRANSFORM without_proxy APPEND "=unset:")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT_MODIFICATION "${without_proxy}")
endfunction()

# What all of the project's own targets share.

option(ZEL_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(ZEL_WATCH_THREADS "Build with ThreadSanitizer" OFF)
option(ZEL_FUZZ "Build the targets of fuzz/ with libFuzzer; goes with ZEL_SANITIZE and clang" OFF)

find_program(ZEL_CCACHE ccache)
if(ZEL_CCACHE)
  # Without these two words ccache refuses what uses a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${ZEL_CCACHE})
endif()

option(ZEL_PLAIN_KERNELS "Build without the paths that need a certain processor, as on machines that lack it" OFF)

add_library(zel_options INTERFACE)
target_compile_definitions(zel_options INTERFACE $<$<BOOL:${ZEL_PLAIN_KERNELS}>:ZEL_PLAIN_KERNELS>)
target_compile_options(zel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  # Exact comparisons of geometry and bin positions depend on float operations staying apart.
  -ffp-contract=off)
if(ZEL_CCACHE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(zel_options INTERFACE -fpch-preprocess)
elseif(ZEL_CCACHE) # clang, whose precompiled headers would differ by the times of their sources
  target_compile_options(zel_options INTERFACE "SHELL:-Xclang -fno-pch-timestamp")
endif()
target_include_directories(zel_options INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
if(ZEL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(ZEL_WATCH_THREADS)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
if(ZEL_FUZZ) # libraries are watched for the ways that an input takes; programs bring what makes the inputs
  add_compile_options(-fsanitize=fuzzer-no-link,float-cast-overflow -fno-sanitize-recover=float-cast-overflow)
endif()

# A shared library of the project: zel_add_library(name SOURCES...)
function(zel_add_library name)
  add_library(${name} SHARED ${ARGN})
  add_library(zel::${name} ALIAS ${name})
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:zel_options>)
  target_compile_features(${name} PUBLIC cxx_std_20) # hosts too, as the headers use it
  target_include_directories(${name} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/zel>)
  if(NOT ZEL_SANITIZE)
    target_link_options(${name} PRIVATE -Wl,--no-undefined)
  endif()
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
    INSTALL_RPATH "$ORIGIN") # installed anywhere, the libraries find one another
endfunction()

# Makes the headers at the top of rooms public: they are installed with their folders, and lint compiles each alone.
# Headers in sub-folders are private to their room. zel_add_public_headers(target ROOMS...)
function(zel_add_public_headers target)
  foreach(room ${ARGN})
    file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${room}/*.h)
    target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${headers})
  endforeach()
  set_target_properties(${target} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# Loops of a length known at run time are vectorised at -O3 only; the files that hold such kernels ask for it.
# zel_optimise_kernels(target SOURCES...)
function(zel_optimise_kernels target)
  set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target}
    PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>" SKIP_PRECOMPILE_HEADERS ON)
endfunction()

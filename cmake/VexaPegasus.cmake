# Provides the targets Pegasus::Common and Pegasus::Provider.
#
# With VEXA_PEGASUS_ROOT set they point at an installed OpenPegasus: its
# headers under include/ and libpegcommon / libpegprovider under lib/ (or
# lib64/). Otherwise they are the bundled, source-compatible layer in cim/.
# Consumers see the same include paths, macros and library names either way.

if(CMAKE_SYSTEM_PROCESSOR MATCHES "aarch64|arm64")
  set(VEXA_PEGASUS_PLATFORM PEGASUS_PLATFORM_LINUX_AARCH64_GNU)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  set(VEXA_PEGASUS_PLATFORM PEGASUS_PLATFORM_LINUX_X86_64_CLANG)
else()
  set(VEXA_PEGASUS_PLATFORM PEGASUS_PLATFORM_LINUX_X86_64_GNU)
endif()

# VEXA_WITH_OPENPEGASUS without a root means the build that
# scripts/build-openpegasus.sh keeps in its cache folder.
if(VEXA_WITH_OPENPEGASUS AND NOT VEXA_PEGASUS_ROOT)
  execute_process(COMMAND bash ${CMAKE_SOURCE_DIR}/scripts/build-openpegasus.sh --print
                  OUTPUT_VARIABLE VEXA_PEGASUS_ROOT OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT EXISTS ${VEXA_PEGASUS_ROOT}/.complete)
    message(FATAL_ERROR "No OpenPegasus build in ${VEXA_PEGASUS_ROOT}: "
                        "run scripts/build-openpegasus.sh first")
  endif()
endif()

if(VEXA_PEGASUS_ROOT)
  find_path(VEXA_PEGASUS_INCLUDE_DIR Pegasus/Common/Config.h
            PATHS ${VEXA_PEGASUS_ROOT}/include ${VEXA_PEGASUS_ROOT}/src
            NO_DEFAULT_PATH REQUIRED)
  find_library(VEXA_PEGCOMMON pegcommon
               PATHS ${VEXA_PEGASUS_ROOT}/lib ${VEXA_PEGASUS_ROOT}/lib64
               NO_DEFAULT_PATH REQUIRED)
  find_library(VEXA_PEGPROVIDER pegprovider
               PATHS ${VEXA_PEGASUS_ROOT}/lib ${VEXA_PEGASUS_ROOT}/lib64
               NO_DEFAULT_PATH REQUIRED)
  message(STATUS "OpenPegasus: ${VEXA_PEGASUS_INCLUDE_DIR}, ${VEXA_PEGCOMMON}")

  add_library(Pegasus::Common SHARED IMPORTED GLOBAL)
  set_target_properties(Pegasus::Common PROPERTIES IMPORTED_LOCATION ${VEXA_PEGCOMMON})
  target_include_directories(Pegasus::Common SYSTEM INTERFACE ${VEXA_PEGASUS_INCLUDE_DIR})
  target_compile_definitions(Pegasus::Common INTERFACE ${VEXA_PEGASUS_PLATFORM})
  target_link_libraries(Pegasus::Common INTERFACE ${CMAKE_DL_LIBS} pthread)

  add_library(Pegasus::Provider SHARED IMPORTED GLOBAL)
  set_target_properties(Pegasus::Provider PROPERTIES IMPORTED_LOCATION ${VEXA_PEGPROVIDER})
  target_link_libraries(Pegasus::Provider INTERFACE Pegasus::Common)
  set(VEXA_BUNDLED_PEGASUS OFF)
else()
  add_subdirectory(${CMAKE_SOURCE_DIR}/cim)
  set(VEXA_BUNDLED_PEGASUS ON)
endif()

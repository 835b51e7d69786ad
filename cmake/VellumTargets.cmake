# How every target of the project is compiled, and the one macro that makes a room of the house.

add_library(vellum_options INTERFACE)
target_compile_features(vellum_options INTERFACE cxx_std_20)
target_include_directories(vellum_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_include_directories(vellum_options SYSTEM INTERFACE ${ASIO_INCLUDE_DIR})
target_compile_definitions(
  vellum_options
  INTERFACE ASIO_STANDALONE ASIO_NO_DEPRECATED ASIO_SEPARATE_COMPILATION QT_NO_KEYWORDS
            QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # Asio 1.22 looks for the coroutines of newer standard libraries only.
  target_compile_definitions(vellum_options INTERFACE ASIO_HAS_CO_AWAIT=1 ASIO_HAS_STD_COROUTINE=1)
  target_compile_options(vellum_options INTERFACE -fpch-instantiate-templates)
endif()
target_compile_options(vellum_options INTERFACE -Wall -Wextra -Werror -Wshadow -Wnon-virtual-dtor)
if(VELLUM_SANITIZE)
  target_compile_options(vellum_options INTERFACE -O1 -fno-omit-frame-pointer
                                                  -fsanitize=${VELLUM_SANITIZE})
  target_link_options(vellum_options INTERFACE -fsanitize=${VELLUM_SANITIZE})
  if(VELLUM_SANITIZE MATCHES undefined)
    # The vptr check opens descriptors itself, and so fails where a test leaves none.
    target_compile_options(vellum_options INTERFACE -fno-sanitize-recover=undefined
                                                    -fno-sanitize=vptr)
  endif()
  if(VELLUM_SANITIZE MATCHES thread)
    # The thread sanitizer cannot model a bare atomic_thread_fence.
    target_compile_definitions(vellum_options INTERFACE ASIO_DISABLE_FENCED_BLOCK)
  endif()
endif()
if(VELLUM_FUZZ)
  target_compile_options(vellum_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
target_link_libraries(vellum_options INTERFACE Qt6::Core Threads::Threads)

# vellum_room(NAME SOURCES ... LINKS ... PRIVATE_LINKS ...): one static library of the house.
# LINKS names the rooms that it may include; scripts/check-includes holds the same table.
function(vellum_room name)
  cmake_parse_arguments(ROOM "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
  add_library(vellum_${name} STATIC ${ROOM_SOURCES})
  list(TRANSFORM ROOM_LINKS PREPEND vellum_)
  target_link_libraries(vellum_${name} PUBLIC vellum_options ${ROOM_LINKS} PRIVATE ${ROOM_PRIVATE_LINKS})
  if(NOT name STREQUAL base)
    target_precompile_headers(vellum_${name} REUSE_FROM vellum_base)
  endif()
endfunction()

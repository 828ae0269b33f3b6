# One place for the compiler's strictness: every target of ours links qrv_options. A warning stops the builds of those
# who write it (CMakePresets.json, ./check), not a user's, whose compiler may know some that ours does not.
add_library(qrv_options INTERFACE)
target_compile_options(qrv_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
# GCC 12 takes a text put together from a literal for an overlapping copy once it optimises.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(qrv_options INTERFACE -Wno-restrict)
endif()
if(QRV_SANITIZE)
  target_compile_options(qrv_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                               -fno-omit-frame-pointer)
  target_link_options(qrv_options INTERFACE -fsanitize=address,undefined)
endif()

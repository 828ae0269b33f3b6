# One place for the compiler's strictness: every target of ours links qrv_options.
add_library(qrv_options INTERFACE)
target_compile_options(qrv_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(QRV_SANITIZE)
  target_compile_options(qrv_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                               -fno-omit-frame-pointer)
  target_link_options(qrv_options INTERFACE -fsanitize=address,undefined)
endif()

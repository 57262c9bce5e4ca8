# Warnings and sanitizers shared by every target of the project.
add_library(vexload_options INTERFACE)
target_compile_options(vexload_options INTERFACE -Wall -Wextra -Werror)

if(VEXLOAD_SANITIZE)
  set(_san -fsanitize=${VEXLOAD_SANITIZE} -fno-omit-frame-pointer)
  if(VEXLOAD_SANITIZE MATCHES "undefined")
    list(APPEND _san -fno-sanitize-recover=undefined)
  endif()
  # Sanitizers go on every target, third-party test code included, so that
  # the instrumented and plain parts of one process agree.
  add_compile_options(${_san})
  add_link_options(${_san})
endif()

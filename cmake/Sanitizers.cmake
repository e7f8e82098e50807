# KT_SANITIZE is a list for -fsanitize=, for example "address,undefined" or "thread".
set(KT_SANITIZE "" CACHE STRING "Sanitizers to compile and link with")
if(KT_SANITIZE)
  add_compile_options(-fsanitize=${KT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KT_SANITIZE})
endif()

# Compiler warnings and sanitizer flags shared by every target.
add_compile_options(-Wall -Wextra)
if(ZV_WERROR)
  add_compile_options(-Werror)
endif()
if(ZV_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
elseif(ZV_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
# libFuzzer builds (clang only): the libraries are instrumented for coverage and the sanitizers
# too, or the fuzzer would see only its own entry point and miss faults inside them.
option(ZV_BUILD_FUZZ "Build libFuzzer programs (needs clang)" OFF)
if(ZV_BUILD_FUZZ AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

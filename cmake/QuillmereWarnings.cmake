# Compiler warnings and the optional sanitizers, applied to every target of ours.
function(quillmere_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow)
  if(QUILLMERE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(QUILLMERE_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined -fno-omit-frame-pointer
                                             -fno-sanitize-recover=undefined)
    target_link_options(${target} PRIVATE -fsanitize=address,undefined)
  endif()
endfunction()

# Warnings are errors on the project's own code. Third-party and OpenPegasus
# headers are included as SYSTEM so their warnings never fail our build.
function(vexa_strict target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wformat=2 -Werror)
endfunction()

if(VEXA_SANITIZE)
  string(REPLACE "," ";" _vexa_san_list "${VEXA_SANITIZE}")
  add_compile_options(-fsanitize=${VEXA_SANITIZE} -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VEXA_SANITIZE})
  if("undefined" IN_LIST _vexa_san_list)
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()

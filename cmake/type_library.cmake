# Headers and type libraries from interface descriptions, for the word size that is being built.

find_program(VANTORA_WIDL NAMES ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl REQUIRED)
# Where the descriptions that others build on are (oaidl.idl), and the type library that they import.
find_path(VANTORA_IDL_INCLUDES oaidl.idl REQUIRED NO_CMAKE_FIND_ROOT_PATH
  PATHS /usr/include/wine/wine/windows /usr/include/wine/windows)
find_path(VANTORA_TYPE_LIBRARIES stdole2.tlb REQUIRED NO_CMAKE_FIND_ROOT_PATH
  PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/wine/x86_64-windows)

# vantora_type_library(TARGET FILE.idl): makes idl/FILE.h and idl/FILE.tlb in the binary directory.
function(vantora_type_library target idl)
  get_filename_component(name ${idl} NAME_WE)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/idl/${name})
  set(word_size --win64)
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
    set(word_size --win32)
  endif()
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/idl)
  set(widl ${VANTORA_WIDL} -I ${VANTORA_IDL_INCLUDES} -L ${VANTORA_TYPE_LIBRARIES} ${word_size})
  add_custom_command(OUTPUT ${output}.h ${output}.tlb
    COMMAND ${widl} -h -o ${output}.h ${idl}
    COMMAND ${widl} -t -o ${output}.tlb ${idl}
    DEPENDS ${idl} VERBATIM)
  add_custom_target(${target} DEPENDS ${output}.h ${output}.tlb)
endfunction()

# Layers: each folder of src/ is a library that sees the headers of its own folder and of the layers
# it may use, and no others. A header is included by its path from src/ ("core/host.h") or, within
# the embedded host, from src/hosts/embedded/ ("cells/address.h"); an include that the design does
# not allow does not find its header.

# vantora_layer(NAME FOLDER AS INCLUDE_NAME [USES layer...] [LINKS target...])
# FOLDER is relative to src/; INCLUDE_NAME is the first part of its headers' include path.
function(vantora_layer name folder)
  cmake_parse_arguments(LAYER "" "AS" "USES;LINKS" ${ARGN})
  set(source_dir ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../src/${folder})
  cmake_path(NORMAL_PATH source_dir)
  file(GLOB sources CONFIGURE_DEPENDS ${source_dir}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${source_dir}/*.h)
  set(include_root ${CMAKE_BINARY_DIR}/layers/${name})
  get_filename_component(link_parent ${include_root}/${LAYER_AS} DIRECTORY)
  file(MAKE_DIRECTORY ${link_parent})
  file(CREATE_LINK ${source_dir} ${include_root}/${LAYER_AS} SYMBOLIC)
  list(TRANSFORM LAYER_USES PREPEND vantora_)
  if(sources)
    add_library(vantora_${name} STATIC ${sources} ${headers})
    target_include_directories(vantora_${name} PUBLIC ${include_root})
    target_link_libraries(vantora_${name} PUBLIC ${LAYER_USES} ${LAYER_LINKS})
    target_compile_options(vantora_${name} PRIVATE -Wall -Wextra -Werror)
  else()
    add_library(vantora_${name} INTERFACE)
    target_include_directories(vantora_${name} INTERFACE ${include_root})
    target_link_libraries(vantora_${name} INTERFACE ${LAYER_USES} ${LAYER_LINKS})
  endif()
endfunction()

# Shared build rules: one library a folder, one precompiled header a kind, strict warnings.

add_compile_options(-Wall -Wextra -Wpedantic -Werror)
add_compile_definitions(QT_NO_CAST_FROM_BYTEARRAY QT_NO_FOREACH QT_NO_KEYWORDS QT_USE_QSTRINGBUILDER
                        QT_DISABLE_DEPRECATED_BEFORE=0x060400)

if(VISTREL_SANITIZE)
  add_compile_options(-fsanitize=${VISTREL_SANITIZE} -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VISTREL_SANITIZE})
endif()

find_program(VISTREL_CCACHE ccache)
if(VISTREL_CCACHE)
  # Precompiled headers are only cached with these sloppiness settings.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${VISTREL_CCACHE})
  add_compile_options(-fpch-preprocess)
endif()

# Everything with widgets is compiled with the same definitions, so that one precompiled header serves all.
add_library(vistrel_qt_widgets INTERFACE)
target_link_libraries(vistrel_qt_widgets INTERFACE Qt6::Widgets Qt6::PrintSupport Qt6::Svg Qt6::Network)

function(_vistrel_pch target kind)
  if(NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
    if(NOT TARGET vistrel_pch_${kind})
      file(WRITE ${CMAKE_BINARY_DIR}/pch_${kind}.cpp "// carries the precompiled header\n")
      add_library(vistrel_pch_${kind} OBJECT ${CMAKE_BINARY_DIR}/pch_${kind}.cpp)
      if(kind STREQUAL "widgets")
        target_link_libraries(vistrel_pch_${kind} PRIVATE vistrel_qt_widgets)
        target_precompile_headers(vistrel_pch_${kind} PRIVATE <QtWidgets> <memory> <vector> <functional>)
      else()
        target_link_libraries(vistrel_pch_${kind} PRIVATE Qt6::Core)
        target_precompile_headers(vistrel_pch_${kind} PRIVATE <QtCore> <memory> <vector> <functional>)
      endif()
    endif()
    target_precompile_headers(${target} REUSE_FROM vistrel_pch_${kind})
  endif()
endfunction()

# The headers of one folder under their own path, offered to whoever links the library: a folder of links, since all of
# src as an include directory would let everybody see everything.
function(_vistrel_headers name)
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  string(REGEX REPLACE "^src/" "" folder ${folder})
  set(room ${PROJECT_BINARY_DIR}/cabecalhos/${name})
  file(GLOB headers CONFIGURE_DEPENDS *.h)
  file(REMOVE_RECURSE ${room})
  file(MAKE_DIRECTORY ${room}/${folder})
  foreach(header ${headers})
    get_filename_component(file ${header} NAME)
    file(CREATE_LINK ${header} ${room}/${folder}/${file} SYMBOLIC)
  endforeach()
  target_include_directories(vistrel_${name} PUBLIC ${room})
endfunction()

# vistrel_library(name [WIDGETS] LINK libs...): all sources of the calling folder (not of its subfolders).
function(vistrel_library name)
  cmake_parse_arguments(A "WIDGETS" "" "LINK;SOURCES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  add_library(vistrel_${name} STATIC ${sources} ${A_SOURCES})
  _vistrel_headers(${name})
  target_link_libraries(vistrel_${name} PUBLIC ${A_LINK})
  set_target_properties(vistrel_${name} PROPERTIES AUTORCC ON)
  if(A_WIDGETS)
    target_link_libraries(vistrel_${name} PUBLIC vistrel_qt_widgets)
    _vistrel_pch(vistrel_${name} widgets)
  else()
    target_link_libraries(vistrel_${name} PUBLIC Qt6::Core)
  endif()
endfunction()

# vistrel_program(name [WIDGETS] SOURCES ... LINK libs...)
function(vistrel_program name)
  cmake_parse_arguments(A "WIDGETS" "" "LINK;SOURCES" ${ARGN})
  add_executable(${name} ${A_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}) # tests/..., benchmarks/...
  target_link_libraries(${name} PRIVATE ${A_LINK})
  if(A_WIDGETS)
    target_link_libraries(${name} PRIVATE vistrel_qt_widgets)
    _vistrel_pch(${name} widgets)
  endif()
endfunction()

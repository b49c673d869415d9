# Shared build rules: one library a folder, one precompiled header a kind, strict warnings.

add_compile_options(-Wall -Wextra -Wpedantic -Werror)
# QCustomPlot's header uses the keywords and foreach, so they stay allowed.
add_compile_definitions(QT_NO_CAST_FROM_BYTEARRAY QT_USE_QSTRINGBUILDER
                        QT_DISABLE_DEPRECATED_BEFORE=0x060000)
include_directories(${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src)

if(VISTREL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
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

# vistrel_library(name [WIDGETS] LINK libs...): all sources of the calling folder (not of its subfolders).
function(vistrel_library name)
  cmake_parse_arguments(A "WIDGETS" "" "LINK;SOURCES" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h *.qrc)
  add_library(vistrel_${name} STATIC ${sources} ${A_SOURCES})
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
  target_link_libraries(${name} PRIVATE ${A_LINK})
  if(A_WIDGETS)
    target_link_libraries(${name} PRIVATE vistrel_qt_widgets)
    _vistrel_pch(${name} widgets)
  endif()
endfunction()

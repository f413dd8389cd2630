# tolvik-page: esbuild bundles the modules of page/ with d3-hierarchy, and embed.cmake makes a C++
# source of each template.
find_program(ESBUILD esbuild)
find_path(NODE_MODULES_DIRECTORY d3-hierarchy/package.json PATHS /usr/share/nodejs NO_DEFAULT_PATH)
if(NOT ESBUILD OR NOT NODE_MODULES_DIRECTORY)
  message(STATUS "tolvik-page is left out: it needs esbuild and d3-hierarchy "
    "(on Debian the packages esbuild and node-d3-hierarchy)")
  return()
endif()

set(PAGE ${CMAKE_CURRENT_SOURCE_DIR}/page)
set(BUNDLE ${CMAKE_COMMAND} -E env NODE_PATH=${NODE_MODULES_DIRECTORY} ${ESBUILD}
  --bundle --minify --log-level=warning)
file(GLOB PAGE_FILES CONFIGURE_DEPENDS ${PAGE}/*)

# embed(NAME CODE STYLE): makes the array NAMEtemplate of page/NAME.html, the module CODE and the
# style sheet STYLE.
function(embed name code style)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/page/${name})
  add_custom_command(OUTPUT ${output}.cpp
    COMMAND ${BUNDLE} --format=iife --outfile=${output}.js ${PAGE}/${code}
    COMMAND ${BUNDLE} --outfile=${output}.css ${PAGE}/${style}
    COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DTEMPLATE=${PAGE}/${name}.html
      -DLICENCE=${PAGE}/d3-hierarchy.licence -DSCRIPT=${output}.js -DSTYLE=${output}.css
      -DOUTPUT=${output}.cpp -P ${CMAKE_CURRENT_SOURCE_DIR}/cmake/embed.cmake
    DEPENDS ${PAGE_FILES} cmake/embed.cmake
    VERBATIM)
  target_sources(tolvik-page PRIVATE ${output}.cpp)
endfunction()

add_executable(tolvik-page src/page/main.cpp)
target_link_libraries(tolvik-page PRIVATE tolvikcore tolvik_strict)
embed(page main.js page.css)
embed(fragment fragment-main.js fragment.css)
if(TOLVIK_STATIC)
  target_link_options(tolvik-page PRIVATE -static)
endif()
install(TARGETS tolvik-page)

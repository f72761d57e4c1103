# Puts the page's source files and the plotting library into report_page, as bytes: a string literal
# may not be as long as they are.
set(chart_js /usr/share/javascript/chart.js/chart.min.js CACHE FILEPATH
    "Chart.js 3, of Debian's package libjs-chart.js")
if(NOT EXISTS ${chart_js})
    message(FATAL_ERROR "${chart_js} is not there: scripts/install.sh installs libjs-chart.js")
endif()

set(page_folder ${CMAKE_CURRENT_LIST_DIR})
# In this order they make one script: what a file uses stands before it.
set(page_scripts numbers dom data state theme plots tables intro bars lengths frontier effects
    comparison history failures rows main)
list(TRANSFORM page_scripts PREPEND ${page_folder}/)
list(TRANSFORM page_scripts APPEND .js)

set(assets_cpp ${CMAKE_CURRENT_BINARY_DIR}/page/assets.cpp)
list(JOIN page_scripts "|" joined_scripts)
add_custom_command(OUTPUT ${assets_cpp}
    COMMAND ${CMAKE_COMMAND} -DOUTPUT=${assets_cpp}
        "-DpageHtml=${page_folder}/page.html" "-DpageCss=${page_folder}/page.css"
        "-DpageScript=${joined_scripts}" "-DchartScript=${chart_js}"
        -P ${page_folder}/embed.cmake
    DEPENDS ${page_folder}/page.html ${page_folder}/page.css ${page_scripts} ${chart_js}
        ${page_folder}/embed.cmake
    COMMENT "Putting the page's files together" VERBATIM)
target_sources(report_page PRIVATE ${assets_cpp})

# The examples, in the folder that the default scenario broadcasts, what channels and player show, if
# Tools/Scripts/make-packages has made it, and what a desktop wants to know of the programs.
set(examples_folder ${CMAKE_INSTALL_DATADIR}/hbbtv)
install(DIRECTORY ${CMAKE_SOURCE_DIR}/Examples/ DESTINATION ${examples_folder} COMPONENT shell USE_SOURCE_PERMISSIONS
  PATTERN middleware EXCLUDE)
install(DIRECTORY ${CMAKE_BINARY_DIR}/pictures DESTINATION ${examples_folder} COMPONENT shell OPTIONAL)
# Files and folders of the media that the player lists; the others are for tests.
file(READ ${CMAKE_SOURCE_DIR}/Examples/player/media.json played)
string(REGEX MATCHALL "\"media/[^/\"]+" played "${played}")
list(TRANSFORM played REPLACE "\"media/" "")
list(JOIN played "|" played)
install(DIRECTORY ${CMAKE_BINARY_DIR}/media DESTINATION ${examples_folder}/player COMPONENT shell OPTIONAL
  FILES_MATCHING REGEX "/media/(${played})(/|$)")
install(FILES hbbtv-shell.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT shell)
install(FILES hbbtv-shell.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME hbbtv-shell COMPONENT shell)
install(FILES hbbtv-shell.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT shell)

# The manuals are what --help says; what else there is to say stands in <program>.h2m.
find_program(HELP2MAN help2man)
if(NOT HELP2MAN OR CMAKE_CROSSCOMPILING)
  message(STATUS "No manuals: they are made by help2man, from programs that run here")
  return()
endif()
set(manuals)
foreach(program hbbtv-shell hbbtv-receiver hbbtv-media hbbtv-control hbbtv-check-middleware)
  set(manual ${CMAKE_CURRENT_BINARY_DIR}/${program}.1)
  set(more ${CMAKE_CURRENT_SOURCE_DIR}/${program}.h2m)
  add_custom_command(OUTPUT ${manual}.gz
    COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C.UTF-8 ${HELP2MAN} --no-info --include ${more} --source "HbbTV Injected Bundle" --output ${manual}
            $<TARGET_FILE:${program}>
    COMMAND gzip --best --no-name --force ${manual}
    DEPENDS ${program} ${more} VERBATIM)
  list(APPEND manuals ${manual}.gz)
endforeach()
add_custom_target(manuals ALL DEPENDS ${manuals})
install(FILES ${manuals} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT shell)

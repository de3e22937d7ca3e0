# What Windows shows of a program file: version, description, and an icon where one is drawn.
enable_language(RC)

# The icon in all the sizes of the system's lists, task bar and desktop, drawn from the program's own.
#   velumar_windows_icon(file)
function(velumar_windows_icon file)
  find_program(RSVG_CONVERT rsvg-convert REQUIRED)
  # Not "convert" on Windows itself: there it is a program that changes file systems.
  if(CMAKE_HOST_WIN32)
    find_program(IMAGEMAGICK magick REQUIRED)
  else()
    find_program(IMAGEMAGICK NAMES magick convert REQUIRED)
  endif()
  set(art ${CMAKE_SOURCE_DIR}/src/app/art)
  set(drawn ${CMAKE_CURRENT_BINARY_DIR}/icons)
  set(pictures)
  foreach(size IN ITEMS 16 24 32 48 64 128 256)
    list(APPEND pictures ${drawn}/${size}x${size}/apps/velumar.png)
  endforeach()
  add_custom_command(
    OUTPUT ${file}
    COMMAND ${CMAKE_COMMAND} -DRSVG=${RSVG_CONVERT} -DART=${art} -DOUT=${drawn}
            -P ${CMAKE_SOURCE_DIR}/packaging/icons.cmake
    COMMAND ${IMAGEMAGICK} ${pictures} ${file}
    DEPENDS ${art}/velumar.svg ${art}/light.css ${CMAKE_SOURCE_DIR}/packaging/icons.cmake
    COMMENT "Drawing the icon of the program file"
    VERBATIM)
endfunction()

# Compiled separately, since the resource compiler does not know the program's options.
#   velumar_windows_resources(velumar "What it is" [ICON])
function(velumar_windows_resources target description)
  get_target_property(file_name ${target} OUTPUT_NAME)
  get_target_property(suffix ${target} SUFFIX)
  if(NOT file_name)
    set(file_name ${target})
  endif()
  if(NOT suffix)
    set(suffix .exe)
  endif()
  set(icon)
  set(icon_line)
  if("ICON" IN_LIST ARGN)
    set(icon ${CMAKE_CURRENT_BINARY_DIR}/velumar.ico)
    set(icon_line "1 ICON \"${icon}\"")
    velumar_windows_icon(${icon})
  endif()
  # MSVC's linker adds a manifest of its own.
  set(manifest ${CMAKE_SOURCE_DIR}/packaging/windows/program.manifest)
  set(manifest_line)
  if(MSVC)
    target_sources(${target} PRIVATE ${manifest})
  else()
    set(manifest_line "1 RT_MANIFEST \"${manifest}\"")
  endif()
  set(original_file_name ${file_name}${suffix})
  set(resources ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.rc.in ${resources} @ONLY)
  set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${icon};${manifest}")
  add_library(${target}_resources OBJECT ${resources})
  target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resources>)
endfunction()

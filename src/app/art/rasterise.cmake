# Draws one SVG in both colour sets at every scale the windows are shown at:
#   cmake -DRSVG=... -DSVG=long.svg -DOUT=DIR -P rasterise.cmake
# writes DIR/light/long@100.png and so on.
get_filename_component(name ${SVG} NAME_WE)
get_filename_component(art ${SVG} DIRECTORY)
foreach(set IN ITEMS light dark)
  file(MAKE_DIRECTORY ${OUT}/${set})
  foreach(scale IN ITEMS "100 1" "150 1.5" "200 2" "300 3")
    separate_arguments(scale)
    list(GET scale 0 percent)
    list(GET scale 1 zoom)
    execute_process(
      COMMAND ${RSVG} --zoom=${zoom} --stylesheet=${art}/${set}.css
              --output=${OUT}/${set}/${name}@${percent}.png ${SVG}
      COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endforeach()

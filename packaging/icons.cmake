# Draws the program's icon in all sizes that menus, docks and software centres need:
#   cmake -DRSVG=... -DART=src/app/art -DOUT=DIR -P icons.cmake
# writes DIR/16x16/apps/velumar.png and so on, and the SVG with its colours embedded.
file(READ ${ART}/velumar.svg drawing)
file(READ ${ART}/light.css colours)
string(REPLACE "  <defs>" "  <style>\n${colours}  </style>\n  <defs>" drawing "${drawing}")
file(WRITE ${OUT}/scalable/apps/velumar.svg "${drawing}")
foreach(size IN ITEMS 16 22 24 32 48 64 128 256 512)
  file(MAKE_DIRECTORY ${OUT}/${size}x${size}/apps)
  execute_process(
    COMMAND ${RSVG} --width=${size} --height=${size}
            --output=${OUT}/${size}x${size}/apps/velumar.png ${OUT}/scalable/apps/velumar.svg
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()

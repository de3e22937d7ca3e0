# The sample securities: invented prices in samples/*.csv, imported by velumar-cli like any trader's.

set(VELUMAR_SAMPLE_CSV ${CMAKE_CURRENT_LIST_DIR}/../samples)

# Creates a market data directory of the samples if it is missing; makes the rule of its MASTER file.
#   velumar_import_samples(directory)
function(velumar_import_samples directory)
  add_custom_command(
    OUTPUT ${directory}/MASTER
    COMMAND ${CMAKE_COMMAND} "-DIMPORT=${CMAKE_CROSSCOMPILING_EMULATOR};$<TARGET_FILE:velumar-cli>"
            -DOUT=${directory} -P ${CMAKE_SOURCE_DIR}/cmake/samples.cmake
    COMMENT "Importing the samples"
    VERBATIM)
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE)
  return()
endif()

# Listed in this order, so a new user starts on the daily series of the first security.
set(names
  "ALBRUN=Albrun Rail Works" "BRAMOL=Bramol Foods" "CINDAR=Cindar Copper" "DRUMLO=Drumlo Shipping"
  "ELVERN=Elvern 40 Index" "FARROK=Farrok Software" "GRELIN=Grelin Wheat Future" "HOLMIR=Holmir Pharma"
  "IRSOLT=Irsolt Oil Future" "JORVEK=Jorvek Bank" "KESTOR=Kestor Crown Rate" "LUNDEK=Lundek Mining")

list(REMOVE_ITEM IMPORT "")
foreach(entry IN LISTS names)
  string(REPLACE "=" ";" entry ${entry})
  list(GET entry 0 symbol)
  list(GET entry 1 name)
  foreach(interval IN ITEMS D 5 15 30 60)
    set(sample ${VELUMAR_SAMPLE_CSV}/${symbol}_${interval}.csv)
    if(EXISTS ${sample})
      execute_process(COMMAND ${IMPORT} import ${sample} ${OUT} --name ${name}
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    endif()
  endforeach()
endforeach()

# Windows knows time zones by other names, so they are files in a folder next to the programs.
find_package(LibArchive)
find_package(date)
find_library(LIBCSV csv)
find_path(TIME_ZONES tzdata/version PATH_SUFFIXES share)
if(NOT LibArchive_FOUND OR NOT date_FOUND OR NOT LIBCSV OR NOT TIME_ZONES)
  message(FATAL_ERROR "libarchive, libcsv, date or the folder tzdata is missing. For a cross-build this builds "
    "them: scripts/windows-sdk zlib libarchive libcsv howardhinnant-date tzdata")
endif()
file(COPY ${TIME_ZONES}/tzdata DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
file(COPY ${TIME_ZONES}/tzdata DESTINATION ${CMAKE_BINARY_DIR}/tests)

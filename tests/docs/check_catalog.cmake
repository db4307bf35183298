# Fails when docs/types.md is not what `orbdt catalog` writes today.
#   cmake -DORBDT=<orbdt> -DCATALOG=<docs/types.md> -DOUTPUT=<file> -P check_catalog.cmake
execute_process(COMMAND "${ORBDT}" catalog OUTPUT_FILE "${OUTPUT}" RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "orbdt catalog failed: ${status}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${CATALOG}" "${OUTPUT}" RESULT_VARIABLE differs)
if(differs)
  message(FATAL_ERROR "${CATALOG} is out of date: run scripts/update-catalog.sh (the catalog written now is ${OUTPUT})")
endif()

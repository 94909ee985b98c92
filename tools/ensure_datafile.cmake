# Places a fresh data file beside the program only when none is there, so a
# rebuild never overwrites a user's data.
if(NOT EXISTS "${DATA_FILE}")
  execute_process(COMMAND "${SQL_TOOL}" --create "${DATA_FILE}" RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "could not build ${DATA_FILE}")
  endif()
endif()

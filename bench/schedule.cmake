# The schedule's date queries and statistics selection against the raw engine
# running the same SQL. Included from bench/CMakeLists.txt; not registered with
# ctest: it measures, it does not assert times.
add_executable(schedule_bench ${CMAKE_CURRENT_LIST_DIR}/schedule_bench.cpp)
target_link_libraries(schedule_bench PRIVATE tarvel_schedule tarvel_tools benchmark::benchmark)
set_target_properties(schedule_bench PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)

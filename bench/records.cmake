# The record classes against the raw engine doing the same inserts and reads.
# Included from bench/CMakeLists.txt; not registered with ctest: it measures,
# it does not assert times.
add_executable(records_bench ${CMAKE_CURRENT_LIST_DIR}/records_bench.cpp)
target_link_libraries(records_bench PRIVATE tarvel_records tarvel_tools benchmark::benchmark)
set_target_properties(records_bench PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bench)

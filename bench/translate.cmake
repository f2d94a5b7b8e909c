# What a lookup costs in the full catalogue, beside a bare search and gettext.
find_package(benchmark REQUIRED)
find_program(MSGFMT msgfmt REQUIRED)
add_executable(bench_translate ${CMAKE_CURRENT_LIST_DIR}/translate.cpp)
target_link_libraries(bench_translate PRIVATE nxui benchmark::benchmark)
target_compile_definitions(bench_translate PRIVATE MSGFMT="${MSGFMT}")
norvaxel_strict(bench_translate)

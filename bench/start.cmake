# The program's start beside that of a plain window; bench/start.py runs both.
foreach(which program plain)
    add_executable(bench_start_${which} ${CMAKE_CURRENT_LIST_DIR}/start_${which}.cpp
                   ${CMAKE_CURRENT_LIST_DIR}/FirstFrame.cpp)
    norvaxel_strict(bench_start_${which})
endforeach()
target_link_libraries(bench_start_program PRIVATE app)
target_link_libraries(bench_start_plain PRIVATE Qt6::Widgets)

# norvaxel_strict(target): our warnings, the sanitizer of this build, Qt's macros kept out.
function(norvaxel_strict target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                           -Wnon-virtual-dtor $<$<BOOL:${NORVAXEL_STRICT}>:-Werror>)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                               QT_NO_KEYWORDS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
    if(NORVAXEL_SANITIZE MATCHES "^(address|fuzz)$")
        set(flags -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    elseif(NORVAXEL_SANITIZE STREQUAL "thread")
        set(flags -fsanitize=thread -fno-omit-frame-pointer)
    endif()
    if(NORVAXEL_SANITIZE STREQUAL "fuzz") # what guides libFuzzer
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
    target_compile_options(${target} PRIVATE ${flags})
    target_link_options(${target} PUBLIC ${flags})
endfunction()

# norvaxel_floor(name SOURCES ... LINKS ...): one folder as a library of that name.
# Headers are included with their folder ("platform/Descriptors.h"). A test holds the includes of each folder
# against its LINKS, both ways.
function(norvaxel_floor name)
    cmake_parse_arguments(FLOOR "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${FLOOR_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${FLOOR_LINKS})
    norvaxel_strict(${name})
endfunction()

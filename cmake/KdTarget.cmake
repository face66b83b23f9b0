# One interface target carries the language level, the warnings and the sanitizers; only our own targets link it.
add_library(kd_options INTERFACE)
target_compile_features(kd_options INTERFACE cxx_std_20)
target_include_directories(kd_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
if(KD_CHECKS)
    # Indexes, empty optionals and null pointers of the library's own types too.
    target_compile_definitions(kd_options INTERFACE KD_CHECKED _GLIBCXX_ASSERTIONS)
endif()
if(NOT MSVC)
    # No contraction of a * b + c: a limit must come out the same with every compiler.
    target_compile_options(kd_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast
                                                -Woverloaded-virtual -ffp-contract=off)
    if(KD_WARNINGS_AS_ERRORS)
        target_compile_options(kd_options INTERFACE -Werror)
    endif()
    if(KD_SANITIZE)
        target_compile_definitions(kd_options INTERFACE KD_SANITIZED)  # the compilers say it each in its own way
        target_compile_options(kd_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                    -fno-omit-frame-pointer)
        target_link_options(kd_options INTERFACE -fsanitize=address,undefined)
    endif()
    if(KD_FUZZ)
        target_compile_options(kd_options INTERFACE -fsanitize=fuzzer-no-link)
    endif()
else()
    target_compile_options(kd_options INTERFACE /W4 /utf-8 /permissive- /fp:strict)
    if(KD_WARNINGS_AS_ERRORS)
        target_compile_options(kd_options INTERFACE /WX)
    endif()
endif()

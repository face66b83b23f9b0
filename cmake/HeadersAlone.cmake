# Proof that every header compiles alone: a source per header that includes it and nothing else, built by the target
# `headers` and by nothing else.
add_custom_target(headers)

# kd_headers_alone(name folder link...): the headers below `folder`, as a target that links the given ones.
function(kd_headers_alone name folder)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${folder}" "${folder}/*.h")
    if(NOT name STREQUAL "qt")
        list(FILTER headers EXCLUDE REGEX "^qt/")
    endif()
    # The other system's headers need its own.
    foreach(system posix windows)
        if(NOT system STREQUAL KD_SYSTEM)
            list(FILTER headers EXCLUDE REGEX "^system/${system}/")
        endif()
    endforeach()
    set(sources)
    foreach(header IN LISTS headers)
        set(source "${PROJECT_BINARY_DIR}/headers/${name}/${header}.cpp")
        file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${folder}/${header}\"\n" @ONLY)
        list(APPEND sources "${source}")
    endforeach()
    if(sources)
        add_library(headers_${name} OBJECT EXCLUDE_FROM_ALL ${sources})
        target_link_libraries(headers_${name} PRIVATE ${ARGN})
        set_target_properties(headers_${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
        add_dependencies(headers headers_${name})
    endif()
endfunction()

# What lies beside the program: the sample applications, the list of applications that a first start shows, the rule
# catalogue and the help. The samples are copied only when one of them changes in the sources, so that a build leaves
# alone what somebody has tried out on them.
function(kd_program_data target)
    set(folder "${PROJECT_BINARY_DIR}/bin")
    file(GLOB samples CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/samples/*.kdt" "${PROJECT_SOURCE_DIR}/samples/*.kdt6"
         "${PROJECT_SOURCE_DIR}/samples/*.V*")
    file(GLOB templates CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/samples/*.kdt"
         "${PROJECT_SOURCE_DIR}/samples/*.kdt6")

    set(list "[KDLIMITDESK]\n\n[RECENTS]\n\n[FILES]\n")
    foreach(template IN LISTS templates)
        get_filename_component(name "${template}" NAME)
        file(TO_NATIVE_PATH "${folder}/samples/${name}" path)
        string(APPEND list "   File   = ${path}\n")
    endforeach()
    if(list MATCHES "[^\n -~]")
        # A path outside ASCII: the file says by its mark that it is UTF-8.
        string(ASCII 239 187 191 mark)
        string(PREPEND list "${mark}")
    endif()
    file(GENERATE OUTPUT "${folder}/KDLimitDesk.ini" CONTENT "${list}" NEWLINE_STYLE DOS)
    configure_file("${PROJECT_SOURCE_DIR}/samples/Rules.ini" "${folder}/Rules.ini" COPYONLY)

    set(stamp "${PROJECT_BINARY_DIR}/samples.stamp")
    add_custom_command(OUTPUT "${stamp}"
                       COMMAND "${CMAKE_COMMAND}" -E make_directory "${folder}/samples"
                       COMMAND "${CMAKE_COMMAND}" -E copy ${samples} "${folder}/samples"
                       COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
                       DEPENDS ${samples} VERBATIM COMMENT "Laying the samples beside the program")
    add_custom_target(kd_samples DEPENDS "${stamp}")
    add_dependencies(${target} kd_samples)
    if(IS_DIRECTORY "${PROJECT_SOURCE_DIR}/help")
        file(GLOB_RECURSE pages CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/help/*")
        foreach(page IN LISTS pages)
            configure_file("${PROJECT_SOURCE_DIR}/${page}" "${folder}/${page}" COPYONLY)
        endforeach()
    endif()
endfunction()

include(CMakePackageConfigHelpers)

install(TARGETS quorbin EXPORT quorbinTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/quorbin DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(QUORBIN_BUILD_TOOL)
    # The installed tool finds the library beside it, wherever the prefix is.
    file(RELATIVE_PATH bin_to_lib ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(quorbin_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
    if(QUORBIN_ITK)
        install(TARGETS quorbin_itk LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    endif()
    install(TARGETS quorbin_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
    set(described ${PROJECT_BINARY_DIR}/tools/quorbin/described)
    install(DIRECTORY ${described}/man1/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${described}/completions/quorbin
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${described}/site-functions/_quorbin DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/quorbin)
install(EXPORT quorbinTargets NAMESPACE quorbin:: DESTINATION ${package_dir})
configure_package_config_file(cmake/quorbinConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/quorbinConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/quorbinConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quorbinConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/quorbinConfigVersion.cmake
        DESTINATION ${package_dir})

# The prefix is found from the file's own place, so that an installed tree can be moved.
file(RELATIVE_PATH pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
# What a program that links a static library of ours must name too.
if(QUORBIN_SOLVER STREQUAL UMFPACK)
    set(QUORBIN_LIBS_PRIVATE -lumfpack)
endif()
configure_file(cmake/quorbin.pc.in ${CMAKE_CURRENT_BINARY_DIR}/quorbin.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quorbin.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Looks for what the build needs, and where it is missing says in one line which of Debian's packages has it.

function(quorbin_require package what)
    foreach(found ${ARGN})
        if(NOT ${found})
            # With a blank before it, CMake leaves the line whole.
            message(FATAL_ERROR " ${what} is not found: apt-get install ${package} (scripts/bootstrap installs all of them)")
        endif()
    endforeach()
endfunction()

# quorbin_find_package(DEBIAN-PACKAGE NAME [arguments of find_package])
macro(quorbin_find_package package name)
    find_package(${name} QUIET ${ARGN})
    quorbin_require(${package} ${name} ${name}_FOUND)
endmacro()

# quorbin_pkg_config(DEBIAN-PACKAGE NAME module...) makes PkgConfig::NAME.
macro(quorbin_pkg_config package name)
    quorbin_find_package(pkg-config PkgConfig)
    pkg_check_modules(${name} QUIET IMPORTED_TARGET ${ARGN})
    quorbin_require(${package} ${name} ${name}_FOUND)
endmacro()

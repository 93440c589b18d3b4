# What every target of the project is compiled with. Results are the same to the last bit at every
# optimisation level: no contraction to fused operations, and never -ffast-math.
add_library(quorbin_options INTERFACE)
target_compile_options(quorbin_options INTERFACE
    -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${QUORBIN_WARNINGS_AS_ERRORS}>:-Werror>)
if(QUORBIN_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    # What the sanitizers add makes g++ see uninitialised values in the standard library where there are none.
    target_compile_options(quorbin_options INTERFACE ${sanitizers}
                           $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(quorbin_options INTERFACE ${sanitizers})
endif()

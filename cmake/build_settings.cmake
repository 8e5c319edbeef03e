# What every target is built with: C++20, warnings, hardening, link-time optimisation, source paths kept out of binaries.

include(CheckCXXSourceCompiles)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "build type" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wformat=2 -Wmissing-declarations)
if(WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()

# Messages name sources relative to the repository, and a build does not depend on where it happens.
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=" "-ffile-prefix-map=${CMAKE_BINARY_DIR}/=")

# Times and rates are computed in plain double arithmetic, never fused, so that reports agree on every machine.
add_compile_options(-ffp-contract=off)

# So 32-bit x86 needs SSE2: the x87 keeps more digits than a double has.
check_cxx_source_compiles("#ifndef __i386__\n#error\n#endif\nint main() {}" TARGET_IS_I386)
if(TARGET_IS_I386)
    add_compile_options(-msse2 -mfpmath=sse)
endif()

# 32-bit machines too read files beyond 2 GiB and know times beyond 2038.
add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)

if(CMAKE_BUILD_TYPE STREQUAL "Release")
    add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong)
    add_link_options(-Wl,-z,relro,-z,now)
    # clang 14 links its own bitcode only with a linker of its own, which a fresh machine does not have.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
    endif()
endif()

# The fuzz entries want the programs counted and watched; libFuzzer itself is linked to the entries only. Tests built beside
# them run the same code, and would wait for every comparison to be told.
if(WITH_FUZZ)
    set(fuzz_checks -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
    if(WITH_TESTS)
        list(APPEND fuzz_checks -fsanitize-coverage=inline-8bit-counters,pc-table)
    else()
        list(APPEND fuzz_checks -fsanitize=fuzzer-no-link)
    endif()
    add_compile_options(${fuzz_checks} -fno-omit-frame-pointer)
    add_link_options(${fuzz_checks})
endif()

# What ships neither throws nor needs type information; tests are built with the compiler's defaults.
add_library(shipped_code INTERFACE)
target_compile_options(shipped_code INTERFACE -fno-exceptions -fno-rtti)

# The compiler warnings every C++ target of the project is built with. With CAUSORA_WERROR on (as
# scripts/setup configures it, so for scripts/test and CI) any warning stops the build.
option(CAUSORA_WERROR "Treat compiler warnings as errors" OFF)

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    add_compile_options(
        -Wall -Wextra -Wpedantic
        -Wshadow                # a local hiding a member or another local
        -Wnon-virtual-dtor      # a class with virtual functions deleted through a base pointer
        -Woverloaded-virtual    # an override that hides the other overloads
        -Wcast-align
        -Wformat=2
        -Wimplicit-fallthrough
        -Wmissing-declarations  # a function meant to be file-local that is not static
    )
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wduplicated-cond -Wduplicated-branches -Wlogical-op)
    endif()
    if(CAUSORA_WERROR)
        add_compile_options(-Werror)
    endif()
endif()

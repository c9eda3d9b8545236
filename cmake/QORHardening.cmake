# qor_harden(<target>): with QOR_HARDENING, the protections that distributions demand of what they ship: those of
# dpkg-buildflags(1) with hardening=+all, and control-flow protection where the processor has it.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)

check_pie_supported(LANGUAGES CXX)
# Debian's g++ 12 knows level 3; with the glibc of older systems it acts like level 2.
set(qorHardeningCompile -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong)
set(qorHardeningLink -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
foreach(flag -fstack-clash-protection -fcf-protection=full)
    string(MAKE_C_IDENTIFIER "QOR_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
        list(APPEND qorHardeningCompile ${flag})
    endif()
endforeach()

function(qor_harden target)
    if(NOT QOR_HARDENING)
        return()
    endif()
    target_compile_options(${target} PRIVATE ${qorHardeningCompile})
    target_link_options(${target} PRIVATE ${qorHardeningLink})
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
endfunction()

# libFuzzer targets (TG_FUZZ, clang only): tg_cible_fuzz(NOM LIB SOURCE)
# makes fuzz_NOM from SOURCE against LIB, both instrumented with the
# sanitizers. scripts/fuzz.sh builds them in a build folder of their own.
if(TG_FUZZ AND NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  message(FATAL_ERROR "TG_FUZZ demande clang (libFuzzer) : -DCMAKE_CXX_COMPILER=clang++")
endif()
set(TG_FUZZ_SAN address,undefined)

function(tg_cible_fuzz nom bibliotheque source)
  get_target_property(instrumentee ${bibliotheque} TG_FUZZ_INSTRUMENTEE)
  if(NOT instrumentee)
    target_compile_options(${bibliotheque} PRIVATE -fsanitize=fuzzer-no-link,${TG_FUZZ_SAN} -fno-omit-frame-pointer)
    set_target_properties(${bibliotheque} PROPERTIES TG_FUZZ_INSTRUMENTEE ON)
  endif()
  add_executable(fuzz_${nom} ${source})
  target_link_libraries(fuzz_${nom} PRIVATE ${bibliotheque})
  target_compile_options(fuzz_${nom} PRIVATE -fsanitize=fuzzer,${TG_FUZZ_SAN})
  target_link_options(fuzz_${nom} PRIVATE -fsanitize=fuzzer,${TG_FUZZ_SAN})
endfunction()

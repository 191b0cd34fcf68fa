# HEIC, HEIF and AVIF (libheif) and camera RAW (LibRaw, its thread-safe
# libraw_r): Debian's packages ship pkg-config files.
find_package(PkgConfig REQUIRED)
pkg_check_modules(LIBHEIF REQUIRED IMPORTED_TARGET libheif)
pkg_check_modules(LIBRAW REQUIRED IMPORTED_TARGET libraw_r)

# FreeImage ships no CMake or pkg-config file.
find_path(FREEIMAGE_INCLUDE_DIR FreeImage.h REQUIRED)
find_library(FREEIMAGE_LIBRARY NAMES freeimage REQUIRED)
add_library(FreeImage::FreeImage UNKNOWN IMPORTED)
set_target_properties(FreeImage::FreeImage PROPERTIES
  IMPORTED_LOCATION "${FREEIMAGE_LIBRARY}"
  INTERFACE_INCLUDE_DIRECTORIES "${FREEIMAGE_INCLUDE_DIR}")

# FFTW in single precision, for the Fourier transforms of the micrometer's ruling.
# Debian's package ships pkg-config files only, no CMake configuration.
find_package(PkgConfig REQUIRED)
pkg_check_modules(FFTW3F REQUIRED IMPORTED_TARGET fftw3f)

# libheif, LibRaw and FFTW are opened at their first use (dlopen), not at the
# program's start: their soname, found here from the library the build would
# link, and the Debian package that ships it, for the package's dependencies
# and the message when one is missing. TG_SONAME_<NOM>, TG_PAQUET_<NOM>.
function(tg_bibliotheque_differee nom fichiers)
  set(chemin "")
  foreach(f ${fichiers})
    if(f MATCHES "\\.so")
      set(chemin "${f}")
      break()
    endif()
  endforeach()
  if(NOT chemin)
    message(FATAL_ERROR "Bibliothèque ${nom} introuvable parmi : ${fichiers}")
  endif()
  execute_process(COMMAND objdump -p "${chemin}" OUTPUT_VARIABLE entete ERROR_QUIET)
  string(REGEX MATCH "SONAME +([^ \n]+)" _ "${entete}")
  if(NOT CMAKE_MATCH_1)
    message(FATAL_ERROR "Pas de soname pour ${chemin}")
  endif()
  set(TG_SONAME_${nom} "${CMAKE_MATCH_1}" PARENT_SCOPE)
  get_filename_component(reel "${chemin}" REALPATH)
  execute_process(COMMAND dpkg-query -S "${reel}" OUTPUT_VARIABLE paquet ERROR_QUIET)
  string(REGEX MATCH "^([^:,]+)" _ "${paquet}")
  set(TG_PAQUET_${nom} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()
tg_bibliotheque_differee(HEIF "${LIBHEIF_LINK_LIBRARIES}")
tg_bibliotheque_differee(RAW "${LIBRAW_LINK_LIBRARIES}")
tg_bibliotheque_differee(FFTW3F "${FFTW3F_LINK_LIBRARIES}")
message(STATUS "Ouvertes à l'usage : ${TG_SONAME_HEIF} (${TG_PAQUET_HEIF}), ${TG_SONAME_RAW} (${TG_PAQUET_RAW}), "
               "${TG_SONAME_FFTW3F} (${TG_PAQUET_FFTW3F})")

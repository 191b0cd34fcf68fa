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

# FFTW in single precision, for the spectra of the micrometer's ruling.
# Debian's package ships pkg-config files only, no CMake configuration.
find_package(PkgConfig REQUIRED)
pkg_check_modules(FFTW3F REQUIRED IMPORTED_TARGET fftw3f)

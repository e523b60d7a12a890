# Locates every dependency and fails the configure step with the Debian package to install.
# scripts/setup installs them all.

function(zomath_require found what package)
  if(NOT ${found})
    message(FATAL_ERROR "zomath: ${what} not found. Install the Debian package '${package}' "
                        "(or run scripts/setup as root).")
  endif()
endfunction()

# Boost.Math: header-only use of the special functions, distributions, roots and quadrature.
find_path(ZOMATH_BOOST_MATH_INCLUDE boost/math/special_functions/gamma.hpp)
zomath_require(ZOMATH_BOOST_MATH_INCLUDE "Boost.Math headers" libboost-math-dev)

# LAPACK through LAPACKE, over the single-threaded OpenBLAS (BLAS, CBLAS and LAPACK in one
# library). It is named by its own directory rather than through Debian's BLAS alternatives,
# which may point at a threaded build; libzomath carries that directory in its run path, and
# the OpenBLAS symbols come before those of the LAPACK that liblapacke itself names.
find_path(ZOMATH_LAPACKE_INCLUDE lapacke.h)
find_library(ZOMATH_LAPACKE_LIB lapacke)
zomath_require(ZOMATH_LAPACKE_INCLUDE "lapacke.h" liblapacke-dev)
zomath_require(ZOMATH_LAPACKE_LIB "liblapacke" liblapacke-dev)
find_library(ZOMATH_OPENBLAS_LIB openblas
  PATHS /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/openblas-serial NO_DEFAULT_PATH)
zomath_require(ZOMATH_OPENBLAS_LIB "the single-threaded OpenBLAS" libopenblas-serial-dev)
find_path(ZOMATH_CBLAS_INCLUDE cblas.h)
zomath_require(ZOMATH_CBLAS_INCLUDE "cblas.h" libopenblas-serial-dev)

# FFTW3, double precision, with its threads library for the one call that makes the planner
# lock its global tables (the library itself starts no threads).
find_path(ZOMATH_FFTW_INCLUDE fftw3.h)
find_library(ZOMATH_FFTW_LIB fftw3)
find_library(ZOMATH_FFTW_THREADS_LIB fftw3_threads)
zomath_require(ZOMATH_FFTW_INCLUDE "fftw3.h" libfftw3-dev)
zomath_require(ZOMATH_FFTW_LIB "libfftw3" libfftw3-dev)
zomath_require(ZOMATH_FFTW_THREADS_LIB "libfftw3_threads" libfftw3-dev)

# GSL for the adaptive quadrature of the QUADPACK family. Debian's libgsl names libgslcblas as a
# dependency, but the CBLAS symbols it calls resolve first from the OpenBLAS linked above (it
# comes earlier in the link line and in the search order), so one BLAS serves the whole library.
find_path(ZOMATH_GSL_INCLUDE gsl/gsl_integration.h)
find_library(ZOMATH_GSL_LIB gsl)
zomath_require(ZOMATH_GSL_INCLUDE "gsl/gsl_integration.h" libgsl-dev)
zomath_require(ZOMATH_GSL_LIB "libgsl" libgsl-dev)

add_library(zomath_deps INTERFACE)
target_include_directories(zomath_deps SYSTEM INTERFACE
  ${ZOMATH_BOOST_MATH_INCLUDE} ${ZOMATH_LAPACKE_INCLUDE} ${ZOMATH_CBLAS_INCLUDE}
  ${ZOMATH_FFTW_INCLUDE} ${ZOMATH_GSL_INCLUDE})
target_link_libraries(zomath_deps INTERFACE
  ${ZOMATH_LAPACKE_LIB} ${ZOMATH_OPENBLAS_LIB} ${ZOMATH_FFTW_THREADS_LIB} ${ZOMATH_FFTW_LIB} ${ZOMATH_GSL_LIB} m)

if(ZOMATH_BUILD_TESTS)
  find_package(GTest QUIET)
  zomath_require(GTest_FOUND "GoogleTest" "libgtest-dev")
endif()
if(ZOMATH_BUILD_BENCH)
  find_package(benchmark QUIET)
  zomath_require(benchmark_FOUND "Google Benchmark" "libbenchmark-dev")
endif()

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

# LAPACK through LAPACKE, over a BLAS without threads.
find_path(ZOMATH_LAPACKE_INCLUDE lapacke.h)
find_library(ZOMATH_LAPACKE_LIB lapacke)
zomath_require(ZOMATH_LAPACKE_INCLUDE "lapacke.h" liblapacke-dev)
zomath_require(ZOMATH_LAPACKE_LIB "liblapacke" liblapacke-dev)
find_library(ZOMATH_LAPACK_LIB lapack)
zomath_require(ZOMATH_LAPACK_LIB "liblapack" liblapack-dev)
find_library(ZOMATH_BLAS_LIB blas)
zomath_require(ZOMATH_BLAS_LIB "libblas" libblas-dev)

# FFTW3, double precision.
find_path(ZOMATH_FFTW_INCLUDE fftw3.h)
find_library(ZOMATH_FFTW_LIB fftw3)
zomath_require(ZOMATH_FFTW_INCLUDE "fftw3.h" libfftw3-dev)
zomath_require(ZOMATH_FFTW_LIB "libfftw3" libfftw3-dev)

add_library(zomath_deps INTERFACE)
target_include_directories(zomath_deps SYSTEM INTERFACE
  ${ZOMATH_BOOST_MATH_INCLUDE} ${ZOMATH_LAPACKE_INCLUDE} ${ZOMATH_FFTW_INCLUDE})
target_link_libraries(zomath_deps INTERFACE
  ${ZOMATH_LAPACKE_LIB} ${ZOMATH_LAPACK_LIB} ${ZOMATH_BLAS_LIB} ${ZOMATH_FFTW_LIB} m)

if(ZOMATH_BUILD_TESTS)
  find_package(GTest QUIET)
  zomath_require(GTest_FOUND "GoogleTest" "libgtest-dev")
endif()
if(ZOMATH_BUILD_BENCH)
  find_package(benchmark QUIET)
  zomath_require(benchmark_FOUND "Google Benchmark" "libbenchmark-dev")
endif()

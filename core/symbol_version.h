// Exports a function under a second name that the C library also defines (sqrt, erf, gamma,
// ...) or that a host program may well define itself (next, draw), as the non-default symbol
// version name@ZOMATH_1 only. The dynamic linker never binds an
// unversioned reference to it, so a host that links this library still gets the C library's
// function; a host that wants ours asks for it by dlvsym(handle, "name", "ZOMATH_1") or calls
// the function's unique name. Use at namespace scope after the definition of `impl`.
#pragma once

#define ZOMATH_EXPORT_SHADOWED(impl, name) __asm__(".symver " #impl ", " #name "@ZOMATH_1")

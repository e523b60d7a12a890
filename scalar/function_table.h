// Inside view of the named function table: the name order the lookup relies on and the error
// record that integralZT leaves behind.
#pragma once

#include "platform/error_record.h"

namespace zomath::scalar {

// Three-way comparison of names as the host's script language orders them: letters without
// regard to case, and punctuation ('_') before digits, digits before letters.
int compare_names(const char* a, const char* b);

// The one error record of integralZT, reset by each call and holding the quadrature's code.
const platform::NagError& integral_error();

}  // namespace zomath::scalar

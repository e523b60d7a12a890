// The error record that platform routines fill. A caller keeps one in its own frame and
// resets it before each call; a routine sets `code` to 0 on success or to its failure code.
#pragma once

namespace zomath::platform {

struct NagError {
  int code = 0;                 // 0 success, else the routine's failure code
  int print = 0;                // never used to print: the library does no I/O
  char message[512];            // short description of the failure, for debugging
  void (*handler)(const char*, int, const char*) = nullptr;  // unused; kept for layout
  int errnum = 0;               // routine-specific detail (an argument number, a count)

  // The message is cleared by its first byte only: routines on hot paths build a record per
  // call, and zeroing all 512 bytes would cost more than a fast special function.
  NagError() { message[0] = '\0'; }

  void reset() {
    code = 0;
    print = 0;
    message[0] = '\0';
    handler = nullptr;
    errnum = 0;
  }
  // Records a failure; returns the code so a routine can `return err.fail(...)`.
  int fail(int nCode, const char* text = nullptr, int nDetail = 0);
};

}  // namespace zomath::platform

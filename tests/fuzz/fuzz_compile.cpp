// libFuzzer target: the file compiler's phases and every generator under an option set from the first bytes.
#include <stdio.h>
#include <stdlib.h>

#include "fuzz_runtime.h"
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzzh::Result r = fuzzh::compile(data, size, fuzzrt::dir());
  fuzzh::clearDir(fuzzrt::dir());
  if (r.outcome == fuzzh::Outcome::Finding) {
    fprintf(stderr, "finding: internal stop: %s\n", r.text.c_str());
    abort();
  }
  return 0;
}

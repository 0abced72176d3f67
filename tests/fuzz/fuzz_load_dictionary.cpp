// libFuzzer target: zkt_db_load_dictionary on the input text, options from the first bytes.
#include <stdio.h>
#include <stdlib.h>

#include "fuzz_runtime.h"
#include "harness.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzzh::Result r = fuzzh::loadDictionary(data, size, fuzzrt::dir());
  fuzzrt::releaseAll();
  fuzzh::clearDir(fuzzrt::dir());
  if (r.outcome == fuzzh::Outcome::Finding) {
    fprintf(stderr, "finding: %s\n", r.text.c_str());
    abort();
  }
  return 0;
}

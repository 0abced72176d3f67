// Fuzzing regressions: each input under tests/regress/ (minimised findings and the known stops) through
// the harness of the fuzz target that its name starts with.
#include <gtest/gtest.h>

#include "fake_runtime.h"
#include "fuzz/harness.h"
#include "proc_util.h"

TEST(FuzzRegress, NoInputIsAFinding) {
  const std::string dir = ZKT_SOURCE_DIR "/tests/regress";
  const procutil::TempDir out;
  const std::vector<std::string> names = procutil::listDir(dir);
  ASSERT_FALSE(names.empty());
  for (const std::string& name : names) {
    const std::string data = procutil::readFile(dir + "/" + name);
    const uint8_t* p = reinterpret_cast<const uint8_t*>(data.data());
    fakert::reset();
    const fuzzh::Result r = name.compare(0, 5, "dict-") == 0 ? fuzzh::loadDictionary(p, data.size(), out.path)
                                                              : fuzzh::compile(p, data.size(), out.path);
    fuzzh::clearDir(out.path);
    // "-known-" inputs reach a stop of kKnownStops by design.
    EXPECT_EQ(r.outcome == fuzzh::Outcome::KnownStop, name.find("-known-") != std::string::npos) << name << ": " << r.text;
    EXPECT_NE(r.outcome, fuzzh::Outcome::Finding) << name << ": " << r.text;
  }
}

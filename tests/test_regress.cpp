// Fuzzing regressions: each input under tests/regress/ (minimised findings and the known stops) through
// the harness of the fuzz target that its name starts with.
#include <gtest/gtest.h>

#include "fake_runtime.h"
#include "fuzz/harness.h"
#include "proc_util.h"

TEST(FuzzRegress, NoInputIsAFinding) {
  const std::string dir = ZKT_SOURCE_DIR "/tests/regress";
  const std::string out = procutil::makeTempDir();
  int n = 0;
  DIR* d = opendir(dir.c_str());
  ASSERT_NE(d, nullptr);
  while (dirent* e = readdir(d)) {
    const std::string name = e->d_name;
    if (name[0] == '.') continue;
    const std::string data = procutil::readFile(dir + "/" + name);
    const uint8_t* p = reinterpret_cast<const uint8_t*>(data.data());
    fakert::reset();
    const fuzzh::Result r = name.compare(0, 5, "dict-") == 0 ? fuzzh::loadDictionary(p, data.size(), out)
                                                              : fuzzh::compile(p, data.size(), out);
    fuzzh::clearDir(out);
    n++;
    // "-known-" inputs reach a stop of kKnownStops by design.
    EXPECT_EQ(r.outcome == fuzzh::Outcome::KnownStop, name.find("-known-") != std::string::npos) << name << ": " << r.text;
    EXPECT_NE(r.outcome, fuzzh::Outcome::Finding) << name << ": " << r.text;
  }
  closedir(d);
  rmdir(out.c_str());
  EXPECT_GT(n, 0);
}

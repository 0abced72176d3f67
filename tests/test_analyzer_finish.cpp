// Finishing pass: deep nesting and the system classes; refused schemas are in test_analyzer_errors.cpp, the finished
// model (types, numbering, indexes, events, element type codes) in tests/expected/model.
#include <gtest/gtest.h>

#include <string>

#include "analyzer_util.h"

namespace {

using antest::Finished;

#define ASSERT_FINISHED(a) ASSERT_TRUE((a).ok) << (a).msg << " at line " << (a).line

// Nesting is walked on an explicit stack: long chains finish, and a cycle at
// the far end is still found.
TEST(AnalyzerFinish, LongChainsOfNestedStructs) {
  const int n = 10000;
  for (bool cycle : {false, true}) {
    {
      std::string text = "declare database d;\nclass c { s0 head; };\n";
      for (int i = 0; i + 1 < n; i++)
        text += "struct s" + std::to_string(i) + " { s" + std::to_string(i + 1) + " x; signed<2> v; };\n";
      text += "struct s" + std::to_string(n - 1) + (cycle ? " { s0 back; };" : " { string v; };");
      Finished a(text);
      if (cycle) {
        EXPECT_EQ(a.msg, "recursive definition of \"s0\"") << n;
        continue;
      }
      ASSERT_FINISHED(a);
      EXPECT_TRUE(a.cls("c")->m_isDynamic && a.type("s0")->m_isDynamic) << n;  // the string at the far end
    }
  }
}

// One system class per kind, behind the user classes (a router with every kind: tests/expected/iot).
TEST(AnalyzerFinish, SystemClassesFollowTheUserClasses) {
  Finished t("declare database d;\niot device;\ntransient uptable class b { signed<4> x; };");
  ASSERT_FINISHED(t);
  EXPECT_EQ(t.classNames(), "b @sys_iot_ts @sys_iot_del_inmem");
}

}  // namespace

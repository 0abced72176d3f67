// Analyzer: schema statements, class bodies and field declarations that must fail, with message and line.
#include <gtest/gtest.h>

#include "analyzer_error_cases.h"
#include "analyzer_util.h"

namespace {

using antest::ErrorCase;
using antest::kClassErrors;
using antest::kFieldErrors;
using antest::kStatementErrors;

void expectFails(const ErrorCase& c) {
  antest::Options o;
  o.sql = c.sql;
  antest::Analysis a(c.schema, o);
  EXPECT_FALSE(a.ok) << c.schema;
  EXPECT_EQ(a.msg, c.message) << c.schema;
  EXPECT_EQ(a.line, c.line) << c.schema;
}

TEST(AnalyzerErrors, SchemaStatements) {
  for (const ErrorCase& c : kStatementErrors) expectFails(c);
}

TEST(AnalyzerErrors, ClassDeclarations) {
  for (const ErrorCase& c : kClassErrors) expectFails(c);
}

TEST(AnalyzerErrors, FieldDeclarations) {
  for (const ErrorCase& c : kFieldErrors) expectFails(c);
}

// The database name reaches the driver once its ';' is read, and not before.
TEST(AnalyzerErrors, DatabaseNameIsAnnouncedAfterItsSemicolon) {
  antest::Analysis a("declare database d\nclass c { };");
  EXPECT_FALSE(a.ok);
  EXPECT_EQ(a.msg, "expected \";\"");
  EXPECT_TRUE(a.dbnames.names.empty());

  antest::Analysis b("declare database d;\nfoo;");
  EXPECT_FALSE(b.ok);
  ASSERT_EQ(b.dbnames.names.size(), 1u);
  EXPECT_EQ(b.dbnames.names[0], "d");
}

}  // namespace

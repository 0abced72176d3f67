// Build integration options of the zktcomp binary: -M, -list-outputs, -notime, -ifchanged, -diag, -Werror.
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <utime.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "proc_util.h"

namespace {

using Names = std::vector<std::string>;
namespace fs = std::filesystem;

const std::string kCompiler = ZKT_COMPILER_PATH;
const std::string kSchemas = std::string(ZKT_SOURCE_DIR) + "/tests/schemas";

using procutil::TempDir;
using procutil::listDir;

ProcResult run(const std::string& dir, const Names& args) {
  Names argv{kCompiler};
  argv.insert(argv.end(), args.begin(), args.end());
  return procutil::runProgram(argv, dir);
}

Names lines(const std::string& text) {
  Names r;
  for (size_t from = 0, nl; (nl = text.find('\n', from)) != std::string::npos; from = nl + 1)
    r.push_back(text.substr(from, nl - from));
  return r;
}

long mtime(const std::string& path) {
  struct stat st;
  return stat(path.c_str(), &st) == 0 ? (long)st.st_mtime : -1;
}

// A schema in a directory with a blank that includes a file which includes
// another: the dependency file names both outputs as targets and the three
// inputs in the order opened, escaped for make. An error removes it.
TEST(BuildIntegration, DependencyFile) {
  TempDir t;
  fs::create_directories(t.path + "/my schemas");
  procutil::writeFile(t.path + "/my schemas/db.sch", "#include \"types.sch\"\ndeclare database db;\nclass c { T a; tree<a> ia; };\n");
  procutil::writeFile(t.path + "/my schemas/types.sch", "#include \"more$.sch\"\n");
  procutil::writeFile(t.path + "/my schemas/more$.sch", "#define T signed<4>\n");
  fs::create_directories(t.path + "/out dir");
  ProcResult r = run(t.path, {"-o", "out dir", "-M", "db.d", "my schemas/db.sch"});
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(procutil::readFile(t.path + "/db.d"),
            "out\\ dir/db.h out\\ dir/db.c: \\\n"
            "  my\\ schemas/db.sch \\\n"
            "  my\\ schemas/types.sch \\\n"
            "  my\\ schemas/more$$.sch\n");

  procutil::writeFile(t.path + "/my schemas/more$.sch", "#define T signed<3>\n");
  r = run(t.path, {"-o", "out dir", "-M", "db.d", "my schemas/db.sch"});
  EXPECT_EQ(r.status, 255);
  EXPECT_FALSE(procutil::fileExists(t.path + "/db.d"));
  EXPECT_EQ(listDir(t.path + "/out dir"), Names{});
}

// -list-outputs names exactly the files that the same options make, in a
// directory written with or without a trailing slash, and writes nothing.
TEST(BuildIntegration, ListOutputsEqualsARealRun) {
  struct Case {
    Names opts;
    const char* outArg;
    bool userFileExists;  // finishing_udf.c is there already: .new is written
  } cases[] = {
      {{}, "out", false},        {{"-hpp"}, "out", false},     {{"-cs"}, "out", false},
      {{"-java"}, "out", false}, {{"-dumpxml"}, "out", false}, {{"-hpp", "-java"}, "out/", false},
      {{}, "out/", true},
  };
  for (const Case& c : cases) {
    TempDir t;
    const std::string out = t.path + "/out";
    fs::create_directories(out);
    if (c.userFileExists) procutil::writeFile(out + "/finishing_udf.c", "edited");
    const Names before = listDir(out);
    Names args = c.opts;
    args.insert(args.end(), {"-o", c.outArg, kSchemas + "/finishing.sch"});
    Names listArgs = args;
    listArgs.insert(listArgs.begin(), "-list-outputs");
    ProcResult listed = run(t.path, listArgs);
    ASSERT_EQ(listed.status, 0) << listed.err;
    EXPECT_EQ(listDir(out), before) << "-list-outputs wrote a file";
    ASSERT_EQ(run(t.path, args).status, 0);

    Names names = before;
    for (const std::string& path : lines(listed.out)) {
      EXPECT_EQ(path.rfind("out/", 0), 0u) << path;
      names.push_back(path.substr(4));
    }
    EXPECT_EQ(names.size() > 1 ? names[before.size()] : "", "finishing.h");
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, listDir(out)) << c.opts.size() << " options, -o " << c.outArg;
  }
}

// Two -notime runs give the same bytes, with the fixed banner line; the
// console still shows the time.
TEST(BuildIntegration, NotimeIsReproducible) {
  TempDir t;
  fs::create_directories(t.path + "/a");
  fs::create_directories(t.path + "/b");
  for (const char* d : {"a", "b"}) {
    ProcResult r = run(t.path, {"-notime", "-hpp", "-o", d, kSchemas + "/basic.sch"});
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out.rfind("Compiled successfully: ", 0), 0u);
    if (d[0] == 'a') sleep(1);
  }
  for (const char* f : {"/basic.h", "/basic.c", "/basic.hpp"}) {
    const std::string a = procutil::readFile(t.path + "/a" + f);
    EXPECT_EQ(a, procutil::readFile(t.path + "/b" + f)) << f;
    EXPECT_NE(a.find("\n * at (time not recorded)\n */\n"), std::string::npos) << f;
  }
}

// -ifchanged keeps an unchanged file's time, replaces a changed one, and
// leaves no temporary behind, after success or failure.
TEST(BuildIntegration, IfchangedReplacesOnlyChangedFiles) {
  TempDir t;
  const std::string h = t.path + "/d.h", c = t.path + "/d.c";
  const Names args{"-notime", "-ifchanged", "-hpp", "-cs", "d.sch"};
  procutil::writeFile(t.path + "/d.sch", "declare database d;\nclass c { signed<4> a; tree<a> ia; };\n");
  ASSERT_EQ(run(t.path, args).status, 0);
  const std::string oldC = procutil::readFile(c);
  struct utimbuf old = {1000000, 1000000};
  for (const std::string& f : {h, c}) utime(f.c_str(), &old);

  ASSERT_EQ(run(t.path, args).status, 0);
  EXPECT_EQ(mtime(h), 1000000);
  EXPECT_EQ(mtime(c), 1000000);
  EXPECT_EQ(listDir(t.path), (Names{"d.c", "d.cs", "d.h", "d.hpp", "d.sch"}));

  procutil::writeFile(t.path + "/d.sch", "declare database d;\nclass c { signed<4> a, b; tree<a> ia; };\n");
  ASSERT_EQ(run(t.path, args).status, 0);
  EXPECT_NE(mtime(h), 1000000);
  EXPECT_NE(procutil::readFile(c), oldC);
  EXPECT_EQ(listDir(t.path), (Names{"d.c", "d.cs", "d.h", "d.hpp", "d.sch"}));

  // A layout error comes after every file was opened.
  procutil::writeFile(t.path + "/d.sch", "declare database d;\ncompact class big { char<65536> a; };\n");
  EXPECT_EQ(run(t.path, args).status, 255);
  EXPECT_EQ(listDir(t.path), (Names{"d.cs", "d.sch"}));  // the earlier run's, whole
}

// -diag gcc names the included file and line of an error and of a warning,
// one line each; -Werror turns the warning into a failure that removes the
// outputs.
TEST(BuildIntegration, GccDiagnosticsAndWerror) {
  TempDir t;
  procutil::writeFile(t.path + "/inc.sch", "persistent class c {\n  signed<4> a;\n  hash<a> h[10];\n};\n");
  procutil::writeFile(t.path + "/ok.sch", "declare database ok;\n#include \"inc.sch\"\n");
  procutil::writeFile(t.path + "/bad.sch", "declare database bad;\n#include \"inc.sch\"\n#include \"broken.sch\"\n");
  procutil::writeFile(t.path + "/broken.sch", "\nstruct s { @@ };\n");
  ProcResult r = run(t.path, {"-diag", "gcc", "ok.sch"});
  EXPECT_EQ(r.status, 0);
  EXPECT_EQ(r.err, "inc.sch:3: warning: Tree declaration expected\n");
  r = run(t.path, {"-diag", "gcc", "bad.sch"});
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.err, "inc.sch:3: warning: Tree declaration expected\nbroken.sch:2:17: error: Unrecognized Symbol \"@\"\n");
  EXPECT_EQ(r.out, "Error executing DDL compiler\n");

  ASSERT_TRUE(procutil::fileExists(t.path + "/ok.c"));
  r = run(t.path, {"-Werror", "ok.sch"});
  EXPECT_EQ(r.status, 255);
  EXPECT_EQ(r.out, "Error executing DDL compiler\n");
  EXPECT_EQ(r.err, "File inc.sch;  line 3: warning: Tree declaration expected\n\n"
                   "File ok.sch; error: warnings treated as errors\n\n");
  EXPECT_EQ(listDir(t.path), (Names{"bad.sch", "broken.sch", "inc.sch", "ok.sch"}));

  r = run(t.path, {"-diag", "clang", "ok.sch"});
  EXPECT_EQ(r.status, 2);
  EXPECT_EQ(lines(r.err)[0], "zktcomp: bad value \"clang\" for -diag: expected gcc or native");
}

}  // namespace

// Generated files checked whole: focused schemas under tests/expected, each compiled by the binary under one
// option set, every file written (and the console) against tests/expected/<dir>/; the routing of one function.
//
// ZKT_UPDATE_EXPECTED=1 rewrites the expected files from the current output instead of comparing.
#include <gtest/gtest.h>

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>

#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;

const std::string kExpected = std::string(ZKT_SOURCE_DIR) + "/tests/expected/";

struct FileRow {
  const char* schema;   // tests/expected/<schema>.sch
  const char* options;  // blank-separated
  const char* dir;      // tests/expected/<dir>/
  const char* only;     // the extensions compared; empty: every file
};

// clang-format off
const FileRow kRows[] = {
  // the model as the dump and the dictionary show it: types, numbering, indexes, events, system classes
  { "model",    "-dumpxml",                           "model",            ".c .xml" },
  { "model",    "-dumpxml -nosort -large",            "model-nosort-large", ".c .xml" },
  { "model",    "-cmode1",                            "model-cmode1",     ".c" },
  // a list index alone: an index table without key records; the name tables of -debug
  { "listonly", "-debug",                             "listonly",         ".c" },
  { "listonly", "-cmode1",                            "listonly-cmode1",  ".c" },
  { "iot",      "-dumpxml",                           "iot",              ".c .xml" },
  // the frame: heads and tails, include lines, the debug and dll decorations
  { "frame",    "",                                   "frame",            "" },
  { "frame",    "-debug -dll",                        "frame-debug-dll",  "" },
  { "frame",    "-hpp",                               "frame-hpp",        ".hpp" },
  // enums, handles, class codes, direct structs, object ids; renamed and mergeable
  { "objects",  "-hpp -smartptr",                     "objects",          "" },
  { "objects",  "-prefix -mergeable",                 "objects-prefix",   ".h" },
  // field accessors of every family with their C++ members and property structs
  { "scalars",  "-hpp -smartptr",                     "scalars",          "" },
  { "forward",  "-hpp -smartptr",                     "forward",          "" },
  { "chars",    "-hpp -smartptr",                     "chars",            "" },
  { "charseq",  "-hpp",                               "charseq",          "" },
  { "arrays",   "-hpp -smartptr",                     "arrays",           "" },
  { "members",  "-hpp -smartptr",                     "members",          "" },
  { "fixed",    "-hpp -smartptr",                     "fixed",            "" },
  { "seqtop",   "-hpp -smartptr",                     "seqtop",           "" },
  // class and index API, events, user-defined indexes, collations, XML and JSON
  { "classes",  "-hpp -smartptr",                     "classes",          "" },
  { "indexes",  "-hpp -smartptr",                     "indexes",          "" },
  { "oddities", "-hpp",                               "oddities",         ".hpp" },
  { "user",     "-hpp -smartptr -xml -json",          "user",             "" },
  { "quirks",   "-hpp -xml -json -suppress-api k",    "quirks",           "" },
  // C# and Java
  { "shop",     "-cs -java",                          "shop",             ".cs .java" },
  { "wide",     "-cs -cs-namespace N -java -java-package p.q", "wide",    ".cs .java" },
};
// clang-format on

std::vector<std::string> words(const std::string& s) {
  std::istringstream in(s);
  std::vector<std::string> r;
  for (std::string w; in >> w;) r.push_back(w);
  return r;
}

// The files a compile wrote (those of the row's extensions), banner time masked, and the console as "console".
std::map<std::string, std::string> generate(const FileRow& row) {
  const std::string out = procutil::makeTempDir();
  std::vector<std::string> argv{ZKT_COMPILER_PATH, "-o", out};
  for (const std::string& w : words(row.options)) argv.push_back(w);
  argv.push_back(std::string(row.schema) + ".sch");  // so named in the console
  const ProcResult r = procutil::runProgram(argv, kExpected);
  std::map<std::string, std::string> files;
  EXPECT_EQ(r.status, 0) << row.dir << "\n" << r.err;
  // the closing line names the time: only the lines before it
  const std::string console = r.out.substr(0, r.out.find("Compiled successfully")) + r.err;
  if (!console.empty()) files["console"] = console;
  const std::vector<std::string> only = words(row.only);
  for (const auto& e : std::filesystem::directory_iterator(out)) {
    const std::string name = e.path().filename().string(), ext = e.path().extension().string();
    if ((!only.empty() && std::find(only.begin(), only.end(), ext) == only.end())) continue;
    files[name] = gentest::maskTime(procutil::readFile(e.path().string()));
  }
  std::filesystem::remove_all(out);
  return files;
}

TEST(GenFiles, EveryFileIsTheExpectedOne) {
  const bool update = getenv("ZKT_UPDATE_EXPECTED") != nullptr;
  for (const FileRow& row : kRows) {
    const std::map<std::string, std::string> files = generate(row);
    const std::string dir = kExpected + row.dir;
    if (update) {
      std::filesystem::remove_all(dir);
      std::filesystem::create_directories(dir);
      for (const auto& f : files) procutil::writeFile(dir + "/" + f.first, f.second);
      continue;
    }
    std::map<std::string, std::string> want;
    for (const auto& e : std::filesystem::directory_iterator(dir))
      want[e.path().filename().string()] = procutil::readFile(e.path().string());
    for (const auto& w : want) {
      auto it = files.find(w.first);
      if (it == files.end())
        ADD_FAILURE() << row.dir << ": " << w.first << " not written";
      else
        EXPECT_EQ(it->second, w.second) << row.dir << "/" << w.first;
    }
    for (const auto& f : files) EXPECT_TRUE(want.count(f.first)) << row.dir << ": unexpected " << f.first;
  }
}

// A function head, ";", a line feed and a body: inline in the header, or a
// prototype in the header and the definition in the C file.
TEST(GenFiles, OneFunctionRoutedInBothModes) {
  for (bool debug : {false, true}) {
    gentest::Options o;
    o.debug = debug;
    Generated g("declare database d;", o);
    ASSERT_TRUE(g.ok) << g.msg;
    GenOutput& out = g.gen;
    out.m_fmtRet = 8;
    out.cFunction("d_f", 5, "(void)", "{\n  return 0;\n}\n");
    out.cppMethod("X", "  ZKT_RET f();\n", "f()\n{ return d::d_f(); }\n");
    EXPECT_EQ(Generated::text(out.m_h), debug ? "ZKT_RET  d_f  (void);\n"
                                              : "ZKT_TARGET_INLINE ZKT_RET  d_f  (void)\n{\n  return 0;\n}\n");
    EXPECT_EQ(Generated::text(out.m_c), debug ? "ZKT_RET  d_f  (void)\n{\n  return 0;\n}\n" : "");
    EXPECT_EQ(Generated::text(out.m_hpp), "  ZKT_RET f();\n");
    EXPECT_EQ(Generated::text(out.m_hpp_tail), "inline  ZKT_RET X::f()\n{ return d::d_f(); }\n");
  }
}

}  // namespace

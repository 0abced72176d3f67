// Generated files compiled with the system's gcc and g++ against the
// declaration-only runtime headers of tests/runtime.
#include <gtest/gtest.h>

#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "proc_util.h"

namespace {

using Names = std::vector<std::string>;

const std::string kCompiler = ZKT_COMPILER_PATH;
const std::string kRuntime = std::string(ZKT_SOURCE_DIR) + "/tests/runtime";

// Generated text that is known not to compile yet: option set, file, reason.
struct KnownException {
  const char* options;
  const char* file;
  const char* reason;
};
// Without -debug the header holds the definitions in the order of the text,
// and C refuses a call to a function that is defined further down.
const char kCalledBeforeDefined[] =
    "the text form of a decimal calls its get and put, and a nullable field's guards call the accessors of its "
    "indicator, all defined further down the header";
// The -smartptr constructor hooks up every character, string and binary field
// and every array and vector of them or of scalars; only plain scalars have
// their property member yet.
const char kPropertyLater[] =
    "the constructor names property members of character, string, array and vector fields, which are not written "
    "yet";
const std::vector<KnownException> kKnownExceptions = {
    {"forward ", "d.c", kCalledBeforeDefined},
    {"forward -dll", "d.c", kCalledBeforeDefined},
    {"forward", "unit.c", kCalledBeforeDefined},
    {"plain -hpp -smartptr", "unit.cpp", kPropertyLater},
    {"sequence -hpp -smartptr", "unit.cpp", kPropertyLater},
    {"objects -hpp -smartptr", "unit.cpp", kPropertyLater},
    {"classes -hpp -smartptr", "unit.cpp", kPropertyLater},
};

const KnownException* knownException(const std::string& options, const std::string& file) {
  for (const KnownException& k : kKnownExceptions)
    if (options == k.options && file == k.file) return &k;
  return nullptr;
}

// The full path of a program found on PATH, or "" if there is none.
std::string findTool(const std::string& name) {
  const char* path = getenv("PATH");
  std::string p = path ? path : "/usr/bin:/bin";
  size_t start = 0;
  while (start <= p.size()) {
    size_t end = p.find(':', start);
    if (end == std::string::npos) end = p.size();
    std::string cand = p.substr(start, end - start) + "/" + name;
    if (end > start && access(cand.c_str(), X_OK) == 0) return cand;
    start = end + 1;
  }
  return "";
}

// A struct, user-defined index and collation, so that the user-code files exist too.
// No class of the corpus is named "c" or "t": the cursor functions name their
// parameters so, and a parameter hides a type of the same name.
const char kBase[] =
    "declare database d;\n"
    "struct Place { char<16> city; signed<4> zone; };\n"
    "class obj {\n"
    "  signed<4> a;\n"
    "  char<8> b;\n"
    "  Place p;\n"
    "  tree<a> ia;\n"
    "  userdef tree<a> ua;\n"
    "  tree<b collate latin> ib;\n";
const std::string kPlainSchema = std::string(kBase) + "};\n";
// A sequence field makes the header include zktseq.h and the hpp zktseq.hpp.
const std::string kSeqSchema = std::string(kBase) + "  sequence<signed<4>> s;\n};\n";

// Enums, an oid struct, direct structs packed and not, each used by a class.
const std::string kObjectsSchema =
    "declare database d;\n"
    "declare oid K[10];\n"
    "enum color { red, green = 5 };\n"
    "struct K { unsigned<4> region; char<6> code; nchar<3> n; };\n"
    "direct struct V { double x; signed<4> y; char<3> c; nchar<2> w; boolean b[9]; };\n"
    "packed direct struct P { char<3> code; unsigned<1> level; signed<2> levels[4]; };\n"
    "struct In { signed<4> x; V v; };\n"
    "class obj { oid; unsigned<4> id; color col; In i; P p; tree<id> by_id; };\n";

// The class functions under their conditions: oid, events, persistent,
// dynamic, list, compact, autoid.
const std::string kClassesSchema =
    "declare database d;\n"
    "declare oid K[10];\n"
    "struct K { unsigned<4> region; };\n"
    "persistent class disk { oid; unsigned<4> id; string s; tree<id> by_id;\n"
    "  event<new> n; event<delete> d; event<delete_all> a; event<checkpoint> p; };\n"
    "transient class mem { autoid[100]; signed<4> a; list; };\n"
    "compact class small { signed<2> x; tree<x> by_x; };\n";

// Every kind of scalar, with field and class update events, sequences and a
// direct struct. The sequence field is what makes the header include the
// sequence interface that the _sequence functions name.
const std::string kScalarsSchema =
    "declare database d;\n"
    "enum color { red, green = 5 };\n"
    "enum wide { lo = 0, hi = 100000 };\n"
    "direct struct V { double x; signed<4> y; boolean b; float f; };\n"
    "class scal {\n"
    "  unsigned<1> u1; unsigned<2> u2; unsigned<4> u4; unsigned<8> u8;\n"
    "  signed<1> s1; signed<2> s2; signed<4> s4; signed<8> s8;\n"
    "  float fl; double db; boolean flag; color col; wide w; date d; time tm;\n"
    "  V v;\n"
    "  tree<u4> by_u4;\n"
    "  event<fl update> fl_changed; event<u2 update> u2_changed;\n"
    "};\n"
    "class upd { autoid[10]; signed<4> a; boolean b; float f; event<update> any; };\n"
    "class seq { unsigned<4> a; double b; sequence<signed<4>> s; sequences; };\n";

// Accessors that call accessors written behind them: the text form of a
// fixed-point number calls its field's get and put, a nullable field's guards
// call the accessors of its indicator, declared behind all fields.
const std::string kForwardSchema =
    "declare database d;\n"
    "class fwd { decimal<10,2> price; decimal<4,1> small; nullable signed<2> n; nullable double w;\n"
    "  unsigned<4> k; tree<k> by_k; };\n";

struct SchemaCase {
  const char* name;
  const std::string& text;
};
const SchemaCase kSchemas[] = {{"plain", kPlainSchema},     {"sequence", kSeqSchema},   {"objects", kObjectsSchema},
                               {"classes", kClassesSchema}, {"scalars", kScalarsSchema}, {"forward", kForwardSchema}};

class GenOutputCompile : public ::testing::Test {
protected:
  std::string dir = procutil::makeTempDir();
  std::string gcc = findTool("gcc");
  std::string gxx = findTool("g++");

  void SetUp() override {
    if (gcc.empty() || gxx.empty()) GTEST_SKIP() << "gcc or g++ not found";
  }
  void TearDown() override { std::filesystem::remove_all(dir); }

  // Generates the files of schema with opts into a fresh directory and returns it.
  std::string generate(const std::string& schema, const Names& opts) {
    std::string out = dir + "/" + std::to_string(++n_);
    EXPECT_EQ(mkdir(out.c_str(), 0755), 0);
    procutil::writeFile(out + "/x.sch", schema);
    Names argv{kCompiler, "-o", out};
    argv.insert(argv.end(), opts.begin(), opts.end());
    argv.push_back(out + "/x.sch");
    ProcResult r = procutil::runProgram(argv);
    EXPECT_EQ(r.status, 0) << r.err;
    return out;
  }

  // Compiles file (in out) to an object with tool and the extra flags.
  ProcResult compile(const std::string& tool, const std::string& out, const std::string& file,
                     const Names& flags = {}) {
    Names argv{tool, "-Wall", "-I", kRuntime, "-I", out};
    argv.insert(argv.end(), flags.begin(), flags.end());
    argv.insert(argv.end(), {"-c", out + "/" + file, "-o", out + "/" + file + ".o"});
    return procutil::runProgram(argv);
  }

  // Expects a warning-free compile unless the pair is a known exception.
  void expectCompiles(const std::string& tool, const std::string& out, const std::string& file,
                      const std::string& what, const Names& flags = {}) {
    if (const KnownException* k = knownException(what, file)) {
      std::cout << "known exception " << what << " " << file << ": " << k->reason << "\n";
      return;
    }
    ProcResult r = compile(tool, out, file, flags);
    EXPECT_EQ(r.status, 0) << what << " " << file << "\n" << r.err;
    EXPECT_EQ(r.err, "") << what << " " << file;
  }

private:
  int n_ = 0;
};

std::string join(const Names& v) {
  std::string s;
  for (const std::string& a : v) s += (s.empty() ? "" : " ") + a;
  return s;
}

// The C file and the user-code files in each placement of the functions.
TEST_F(GenOutputCompile, CFilesCompile) {
  struct Mode {
    Names opts;
    Names cflags;
  };
  const Mode modes[] = {
      {{}, {}},
      {{"-debug"}, {}},
      {{"-dll"}, {"-D__declspec(x)="}},
      {{"-debug", "-dll"}, {"-D__declspec(x)="}},
      {{"-hpp"}, {}},
  };
  for (const SchemaCase& s : kSchemas) {
    for (const Mode& m : modes) {
      std::string out = generate(s.text, m.opts);
      std::string what = std::string(s.name) + " " + join(m.opts);
      for (const char* f : {"d.c", "d_udf.c", "d_coll.c"})  // the user-code files only where wanted
        if (procutil::fileExists(out + "/" + f)) expectCompiles(gcc, out, f, what, m.cflags);
    }
  }
}

TEST_F(GenOutputCompile, CppWrapperCompiles) {
  const Names modes[] = {{"-hpp"}, {"-hpp", "-smartptr"}};
  for (const SchemaCase& s : kSchemas) {
    for (const Names& opts : modes) {
      std::string out = generate(s.text, opts);
      procutil::writeFile(out + "/unit.cpp", "#include \"d.hpp\"\n");
      expectCompiles(gxx, out, "unit.cpp", std::string(s.name) + " " + join(opts));
    }
  }
}

TEST_F(GenOutputCompile, HeaderIncludedTwiceInC) {
  for (const SchemaCase& s : kSchemas) {
    std::string out = generate(s.text, {});
    procutil::writeFile(out + "/unit.c", "#include \"d.h\"\n#include \"d.h\"\n");
    expectCompiles(gcc, out, "unit.c", s.name);
  }
}

// The hpp includes the header for itself; a C++ unit can't include it again.
TEST_F(GenOutputCompile, HeaderAfterCppWrapperIsRefused) {
  std::string out = generate(kPlainSchema, {"-hpp"});
  procutil::writeFile(out + "/unit.cpp", "#include \"d.hpp\"\n#include \"d.h\"\n");
  ProcResult r = compile(gxx, out, "unit.cpp");
  EXPECT_NE(r.status, 0);
  EXPECT_NE(r.err.find("#error C API schema file d.h should not be included directly from C++ application"),
            std::string::npos)
      << r.err;
}

}  // namespace

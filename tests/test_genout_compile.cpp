// Generated files compiled with the system's gcc and g++ against the
// declaration-only runtime headers of tests/runtime.
#include <gtest/gtest.h>

#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
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
// A char<n> or binary<n> field of a class with sequences declares its C++
// _sequence with two parameters and defines it with one.
const char kCharSequencePair[] =
    "the C++ _sequence of a char or binary field is declared with a second parameter that its definition lacks";
const char kCharArrayLoop[] = "the property struct of a char or binary array has a stray \")\" in its loop head";
const char kBitmapCppPut[] =
    "the C++ _put member of an updated_bitmap field calls a C _put that is not written for it";
const std::vector<KnownException> kKnownExceptions = {
    {"oddities -hpp", "unit.cpp",
     "search_any's inline definition is named search_all, so search_all is defined twice; a boolean patricia "
     "key is passed on without its number_of_bits"},
    {"oddities -hpp -smartptr", "unit.cpp", "as oddities -hpp"},
    {"forward ", "d.c", kCalledBeforeDefined},
    {"forward -cmode1", "d.c", kCalledBeforeDefined},
    {"forward -dll", "d.c", kCalledBeforeDefined},
    {"forward", "unit.c", kCalledBeforeDefined},
    {"charseq -hpp", "unit.cpp", kCharSequencePair},
    {"charseq -hpp -smartptr", "unit.cpp", kCharSequencePair},
    {"arrays -hpp -smartptr", "unit.cpp", kCharArrayLoop},
    {"listonly -hpp -smartptr", "unit.cpp", kCharArrayLoop},
    {"breaks -hpp", "unit.cpp", kBitmapCppPut},
    {"breaks -hpp -smartptr", "unit.cpp", kBitmapCppPut},
    {"fixed -hpp", "unit.cpp", kBitmapCppPut},
    {"fixed -hpp -smartptr", "unit.cpp", kBitmapCppPut},
};

// Warnings that the required text itself causes, where the text can't be
// changed: schema and option set, file, the warning options it may raise.
struct ExpectedWarnings {
  std::string options;  // "name *": every option set
  const char* file;
  std::vector<std::string> flags;
  const char* reason;
};
const char kSegmentless[] =
    "the assignment form declares a segment-less index table const and points a never-used z at it";
const char kArrayBreaks[] =
    "an enum array of a direct struct passes its enum pointer to a character buffer; the updated-bitmap scan "
    "keeps the number of fields in a uint1";
const std::vector<std::string> kArrayBreakFlags = {"-Wincompatible-pointer-types", "-Woverflow"};
const std::vector<ExpectedWarnings> kExpectedWarnings = {
    {"listonly -cmode1", "d.c", {"-Wdiscarded-qualifiers", "-Wunused-variable"}, kSegmentless},
    {"listonly -cmode1 -debug -nosort -large", "d.c", {"-Wdiscarded-qualifiers", "-Wunused-variable"}, kSegmentless},
    {"breaks *", "d.c", kArrayBreakFlags, kArrayBreaks},  // under every option set
    {"breaks", "unit.c", kArrayBreakFlags, kArrayBreaks},
};

const ExpectedWarnings* expectedWarnings(const std::string& options, const std::string& file) {
  for (const ExpectedWarnings& w : kExpectedWarnings)
    if (file == w.file && (options == w.options || (w.options.back() == '*' &&
                                                    options.rfind(w.options.substr(0, w.options.size() - 1), 0) == 0)))
      return &w;
  return nullptr;
}

// The warning lines of a compiler's output whose option is not among flags.
std::string unexpectedWarnings(const std::string& err, const std::vector<std::string>& flags) {
  std::string r;
  size_t at = 0;
  while (at < err.size()) {
    size_t end = err.find('\n', at);
    if (end == std::string::npos) end = err.size();
    const std::string line = err.substr(at, end - at);
    at = end + 1;
    if (line.find("warning:") == std::string::npos && line.find("error:") == std::string::npos) continue;
    bool allowed = false;
    for (const std::string& f : flags)
      if (line.find("[" + f + "]") != std::string::npos) allowed = true;
    if (!allowed) r += line + "\n";
  }
  return r;
}

const KnownException* knownException(const std::string& options, const std::string& file) {
  for (const KnownException& k : kKnownExceptions)
    if (options == k.options && file == k.file) return &k;
  return nullptr;
}

// No class of the corpus is named "c" or "t": the cursor functions name their
// parameters so, and a parameter hides a type of the same name.

// What the required array text itself breaks: an enum array of a direct
// struct passes its enum pointer as a character buffer, and the updated-bitmap
// scan counts fields in a uint1 that 302 fields overflow.
std::string breaksSchema() {
  std::string fields;
  for (int i = 0; i < 300; i++) fields += "signed<4> f" + std::to_string(i) + "; ";
  return "declare database d;\n"
         "enum color { red, green };\n"
         "direct struct V { signed<4> y; color es[2]; };\n"
         "class holder { V v; signed<4> k; tree<k> by_k; };\n"
         "class wide { " +
         fields + "boolean updated_bitmap[]; signed<4> k; tree<k> by_k; };\n";
}
const std::string kBreaksSchema = breaksSchema();

struct SchemaCase {
  const char* name;
  std::string text;
};
// A focused schema of tests/expected (whose files test_genout.cpp checks whole).
std::string focused(const char* name) {
  return procutil::readFile(std::string(ZKT_SOURCE_DIR) + "/tests/expected/" + name + ".sch");
}
const std::string kUserSchema = focused("user");
const SchemaCase kSchemas[] = {
    {"objects", focused("objects")}, {"indexes", focused("indexes")}, {"oddities", focused("oddities")},
    {"listonly", focused("listonly")}, {"classes", focused("classes")}, {"scalars", focused("scalars")},
    {"forward", focused("forward")}, {"chars", focused("chars")},     {"charseq", focused("charseq")},
    {"arrays", focused("arrays")},   {"breaks", kBreaksSchema},       {"user", kUserSchema},
    {"members", focused("members")}, {"fixed", focused("fixed")},     {"seqtop", focused("seqtop")},
    {"quirks", focused("quirks")},   {"iot", focused("iot")}};

class GenOutputCompile : public ::testing::Test {
protected:
  std::string dir = procutil::makeTempDir();
  std::string gcc = procutil::findTool("gcc");
  std::string gxx = procutil::findTool("g++");

  void SetUp() override {
    if (gcc.empty() || gxx.empty()) GTEST_SKIP() << "gcc or g++ not found";
  }
  void TearDown() override { std::filesystem::remove_all(dir); }

  // Generates the files of schema with opts into a fresh directory and returns it.
  std::string generate(const std::string& schema, const Names& opts) {
    std::string out = dir + "/" + std::to_string(++n_);
    EXPECT_EQ(mkdir(out.c_str(), 0755), 0);
    ProcResult r = procutil::compileIn(out, schema, opts);
    EXPECT_EQ(r.status, 0) << r.err;
    return out;
  }

  // Compiles file (in out) to an object with tool and the extra flags.
  ProcResult compile(const std::string& tool, const std::string& out, const std::string& file,
                     const Names& flags = {}) {
    Names argv{tool, "-Wall", "-I", kRuntime, "-I", out};
    if (tool == gcc) argv.push_back("-std=c99");
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
    if (const ExpectedWarnings* w = expectedWarnings(what, file)) {
      EXPECT_NE(r.err, "") << what << " " << file << ": the expected warnings are gone: " << w->reason;
      EXPECT_EQ(unexpectedWarnings(r.err, w->flags), "") << what << " " << file;
      return;
    }
    EXPECT_EQ(r.err, "") << what << " " << file;
  }

  int n_corpus_ = 1000;

private:
  int n_ = 0;
};

std::string join(const Names& v) {
  std::string s;
  for (const std::string& a : v) s += (s.empty() ? "" : " ") + a;
  return s;
}

// Each focused schema in each placement of the functions: the C file and the
// user-code files with gcc, the header included twice in C, the C++ wrapper with g++.
TEST_F(GenOutputCompile, FocusedSchemasCompile) {
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
      {{"-cmode1"}, {}},
      {{"-cmode1", "-debug", "-nosort", "-large"}, {}},
      {{"-hpp", "-smartptr"}, {}},  // the C++ wrapper only
  };
  for (const SchemaCase& s : kSchemas) {
    for (const Mode& m : modes) {
      const std::string out = generate(s.text, m.opts);
      const std::string what = std::string(s.name) + " " + join(m.opts);
      const bool hpp = !m.opts.empty() && m.opts[0] == "-hpp", wrapperOnly = hpp && m.opts.size() == 2;
      for (const char* f : {"d.c", "d_udf.c", "d_coll.c"})  // the user-code files only where wanted
        if (!wrapperOnly && procutil::fileExists(out + "/" + f)) expectCompiles(gcc, out, f, what, m.cflags);
      if (m.opts.empty()) {
        procutil::writeFile(out + "/unit.c", "#include \"d.h\"\n#include \"d.h\"\n");
        expectCompiles(gcc, out, "unit.c", s.name);
      }
      if (hpp) {
        procutil::writeFile(out + "/unit.cpp", "#include \"d.hpp\"\n");
        expectCompiles(gxx, out, "unit.cpp", what);
      }
    }
  }
}

// What the required text of the fixed views and sequences itself breaks:
// each schema's C file (functions in it, -debug) fails with the diagnostic.
// Compiled without dropping any diagnostic of the copy functions.
TEST_F(GenOutputCompile, FixedAndSequenceBreaks) {
  struct Break {
    const char* schema;
    Names opts;
    const char* diagnostic;
    const char* reason;
  };
  // clang-format off
  const Break breaks[] = {
    { "declare database d;\nstruct T { string s; };\nclass c1 { sequence<T> q; list; };\n", {"-debug"},
      "unknown type name \u2018T_fixed\u2019", "a struct element without a fixed view names the view" },
    { "declare database db;\nclass c1 { sequence<datetime asc> q; list; };\n", {"-debug", "-prefix"},
      "implicit declaration of function \u2018zkt_w_seq_first_db_datetime\u2019",
      "a datetime element's wrapper suffix is the type's name, which the prefix renames" },
    { "declare database d;\ndirect struct V { signed<4> y; };\nclass c1 { V v; signed<4> k; tree<k> by_k; };\n",
      {"-debug", "-suppress-api", "V"}, "implicit declaration of function \u2018V_y_get\u2019",
      "a suppressed direct struct with an owner gets copy functions that call its missing accessors" },
    { "declare database d;\nclass c1 { string s; boolean updated_bitmap[]; list; };\n", {"-debug"},
      "expected expression before \u2018?\u2019 token",
      "a class whose only fixed field is its bitmap gets a _fixed_put without a clause" },
    { "declare database d;\ndeclare oid unsigned<4>[10];\ndeclare auto_oid[5];\n"
      "class c1 { signed<4> k; tree<*> all; };\n", {"-debug"}, "stray \u2018@\u2019 in program",
      "tree<*> takes the hidden auto_oid@ field too, whose name goes into the key functions' names" },
  };
  // clang-format on
  for (const Break& b : breaks) {
    const std::string out = generate(b.schema, b.opts);
    const std::string db = std::string(b.schema).find("database db;") != std::string::npos ? "db" : "d";
    const ProcResult r = procutil::runProgram(
        {gcc, "-std=c99", "-Wall", "-I", kRuntime, "-I", out, "-c", out + "/" + db + ".c", "-o", out + "/x.o"});
    EXPECT_NE(r.err.find(b.diagnostic), std::string::npos) << b.reason << "\n" << r.err;
  }
}


// The user schema with XML and JSON methods: the C file and the user-code
// files with gcc under the options that change them, the C++ wrapper with
// g++, and a unit that expands every key macro of the header.
TEST_F(GenOutputCompile, XmlJsonAndUserCodeCompile) {
  struct Mode {
    Names opts;
    Names cflags;
  };
  const Mode modes[] = {
      {{}, {}},
      {{"-debug"}, {}},
      {{"-prefix"}, {}},
      {{"-mergeable", "-debug"}, {}},
      {{"-dll"}, {"-D__declspec(x)="}},
  };
  for (const Mode& m : modes) {
    Names opts{"-xml", "-json"};
    opts.insert(opts.end(), m.opts.begin(), m.opts.end());
    const std::string out = generate(kUserSchema, opts);
    const std::string what = "user " + join(opts);
    for (const char* f : {"d.c", "d_udf.c", "d_coll.c"}) {
      EXPECT_TRUE(procutil::fileExists(out + "/" + f)) << what << " " << f;
      expectCompiles(gcc, out, f, what, m.cflags);
    }
    std::string unit = "#include \"d.h\"\n";
    const std::string h = procutil::readFile(out + "/d.h");
    int macros = 0;
    for (size_t at = h.find("#define "); at != std::string::npos; at = h.find("#define ", at + 1)) {
      const size_t end = h.find("(ek)", at);
      const std::string name = h.substr(at + 8, end == std::string::npos ? 0 : end - at - 8);
      if (name.find("_extkey") == std::string::npos || name.find(' ') != std::string::npos) continue;
      unit += "void use_" + std::to_string(++macros) + "(void* ek) { (void)(" + name + "(ek)); }\n";
    }
    EXPECT_EQ(macros, 13) << what;  // two, one, one, one and eight segments
    procutil::writeFile(out + "/unit.c", unit);
    expectCompiles(gcc, out, "unit.c", what, m.cflags);
  }
  const std::string out = generate(kUserSchema, {"-xml", "-json", "-hpp"});
  procutil::writeFile(out + "/unit.cpp", "#include \"d.hpp\"\n");
  expectCompiles(gxx, out, "unit.cpp", "user -xml -json -hpp");
}

// The hpp includes the header for itself; a C++ unit can't include it again.
TEST_F(GenOutputCompile, HeaderAfterCppWrapperIsRefused) {
  std::string out = generate(focused("classes"), {"-hpp"});
  procutil::writeFile(out + "/unit.cpp", "#include \"d.hpp\"\n#include \"d.h\"\n");
  ProcResult r = compile(gxx, out, "unit.cpp");
  EXPECT_NE(r.status, 0);
  EXPECT_NE(r.err.find("#error C API schema file d.h should not be included directly from C++ application"),
            std::string::npos)
      << r.err;
}

}  // namespace

// Corpus schemas whose required text can't compile under an option set:
// the schema, an option the set holds, the file kind ("c", "c++", or
// "generate" when the compiler refuses), a text of the diagnostic, why.
struct CorpusException {
  const char* schema;
  const char* option;
  const char* kind;
  const char* diagnostic;
  const char* reason;
};
// clang-format off
// "release" stands for every option set without -debug and -hpp, where the
// functions are defined in the header; "outside" for the others.
const char kSequencesWithoutField[] =
    "a class declared with sequences has _sequence prototypes naming the sequence interface, which the header "
    "includes only for a sequence field";
// A struct's fixed view is declared when the struct is counted, before a
// member struct declared behind it has a count of its own; its copy
// functions are written later and copy that member all the same.
const char kMemberDeclaredLater[] =
    "the fixed view of a struct leaves out a member struct declared behind it, while its copy functions "
    "copy that member";
const CorpusException kCorpusExceptions[] = {
  { "modifiers.sch", "outside", "c",        "unknown type name \u2018zkt_trans_t\u2019", kSequencesWithoutField },
  { "modifiers.sch", "outside", "c++",      "\u2018zkt_trans_t\u2019 was not declared",  kSequencesWithoutField },
  { "basic.sch",     "release", "c",        "error: conflicting types for",       kCalledBeforeDefined },
  { "basic.sch",     "release", "c++",      "was not declared in this scope",     kCalledBeforeDefined },
  { "fields.sch",    "release", "c",        "error: conflicting types for",       kCalledBeforeDefined },
  { "fields.sch",    "release", "c++",      "was not declared in this scope",     kCalledBeforeDefined },
  { "basic.sch",     "-prefix", "generate", "error: initial value for basic_Shape.color is not integer: \"GREEN\"",
    "the enum elements are renamed before the dictionary reads the initial value that names one" },
  { "direct.sch",    "-prefix", "c",        "error: \u2018Vec3_d_aligned_to_1\u2019 undeclared",
    "layout texts name the direct struct before the prefix is applied" },
  { "events.sch",    "-hpp",    "c++",      "_updated_bitmap_put\u2019 is not a member of", kBitmapCppPut },
  { "fields.sch",    "-hpp",    "c++",      "_updated_bitmap_put\u2019 is not a member of", kBitmapCppPut },
  { "direct.sch",    "-prefix", "c++",      "error: \u2018Tag_d_aligned_to_1\u2019 was not declared",
    "layout texts name the direct struct before the prefix is applied; the header's fixed view holds them too" },
  { "finishing.sch", "release", "c",        "has no member named \u2018street\u2019", kMemberDeclaredLater },
  { "finishing.sch", "outside", "c",        "has no member named \u2018street\u2019", kMemberDeclaredLater },
  { "finishing.sch", "release", "c++",      "has no member named \u2018street\u2019", kMemberDeclaredLater },
  { "chain.sch",     "release", "c",        "has no member named \u2018next\u2019",   kMemberDeclaredLater },
  { "chain.sch",     "outside", "c",        "has no member named \u2018next\u2019",   kMemberDeclaredLater },
  { "chain.sch",     "release", "c++",      "has no member named \u2018next\u2019",   kMemberDeclaredLater },
  { "finishing.sch", "-hpp",    "c++",      "too few arguments to function",
    "a boolean patricia key's C++ methods pass the key without its number of bits" },
  { "indexes.sch",   "-hpp",    "c++",      "too few arguments to function",
    "a boolean patricia key's C++ methods pass the key without its number of bits" },
};
// clang-format on

bool holds(const Names& opts, const char* opt) { return std::find(opts.begin(), opts.end(), opt) != opts.end(); }

const CorpusException* corpusException(const std::string& schema, const Names& opts, const char* kind) {
  const bool release = !holds(opts, "-debug") && !holds(opts, "-hpp");
  for (const CorpusException& e : kCorpusExceptions) {
    if (schema != e.schema || std::string(kind) != e.kind) continue;
    const std::string o = e.option;
    if (o == "release" ? release : o == "outside" ? !release : holds(opts, e.option)) return &e;
  }
  return nullptr;
}

// A compile or run that the table says must fail, with its diagnostic.
void expectKnownFailure(const ProcResult& r, const CorpusException& e, const std::string& what) {
  EXPECT_NE(r.status, 0) << what << ": the known failure is gone: " << e.reason;
  EXPECT_NE(r.err.find(e.diagnostic), std::string::npos) << what << "\n" << r.err;
}

// Every corpus schema: the C file with gcc, the header alone with g++, and
// the C++ wrapper with g++, under the option sets that change the text.
TEST_F(GenOutputCompile, CorpusCompiles) {
  const std::string corpus = std::string(ZKT_SOURCE_DIR) + "/tests/schemas";
  struct Mode {
    Names opts;
    Names cflags;
  };
  const Mode modes[] = {
      {{}, {}},
      {{"-debug"}, {}},
      {{"-cmode1", "-nosort"}, {}},
      // Mergeable bodies name the C file's dictionary, so they compile only
      // out of the header.
      {{"-prefix", "-mergeable", "-dll", "-debug"}, {"-D__declspec(x)="}},
      {{"-large", "-size-t", "4", "-compact"}, {}},
      {{"-hpp"}, {}},
      {{"-hpp", "-smartptr"}, {}},
  };
  int schemas = 0;
  for (const auto& entry : std::filesystem::directory_iterator(corpus)) {
    const std::string file = entry.path().filename().string();
    if (entry.path().extension() != ".sch") continue;
    schemas++;
    for (const Mode& m : modes) {
      const std::string what = file + " " + join(m.opts);
      const std::string out = dir + "/" + std::to_string(++n_corpus_);
      std::filesystem::create_directory(out);
      Names argv{kCompiler, "-o", out, "-I", corpus};
      argv.insert(argv.end(), m.opts.begin(), m.opts.end());
      argv.push_back(entry.path().string());
      ProcResult r = procutil::runProgram(argv);
      if (const CorpusException* e = corpusException(file, m.opts, "generate")) {
        expectKnownFailure(r, *e, what);
        continue;
      }
      ASSERT_EQ(r.status, 0) << what << ": " << r.err;
      std::string db;
      for (const auto& f : std::filesystem::directory_iterator(out)) {
        const std::string n = f.path().filename().string();
        if (f.path().extension() == ".h") db = n.substr(0, n.size() - 2);
      }
      ASSERT_FALSE(db.empty()) << what;
      // A table of index keys without any record is declared const in the
      // assignment form and a never-used pointer is set to it: the required
      // text gives these two warnings.
      const bool segmentless =
          procutil::readFile(out + "/" + db + ".c").find("v_all_index_fields[1]; /*empty*/") != std::string::npos;
      const std::vector<std::string> allowed =
          segmentless ? std::vector<std::string>{"-Wdiscarded-qualifiers", "-Wunused-variable"}
                      : std::vector<std::string>{};
      ProcResult c = compile(gcc, out, db + ".c", m.cflags);
      if (const CorpusException* e = corpusException(file, m.opts, "c")) {
        expectKnownFailure(c, *e, what);
      } else {
        EXPECT_EQ(c.status, 0) << what << "\n" << c.err;
        EXPECT_EQ(unexpectedWarnings(c.err, allowed), "") << what;
      }
      const bool hpp = std::find(m.opts.begin(), m.opts.end(), "-hpp") != m.opts.end();
      procutil::writeFile(out + "/unit.cpp", "#include \"" + db + (hpp ? ".hpp" : ".h") + "\"\n");
      ProcResult x = compile(gxx, out, "unit.cpp", m.cflags);
      if (const CorpusException* e = corpusException(file, m.opts, "c++")) {
        expectKnownFailure(x, *e, what + " C++");
        continue;
      }
      EXPECT_EQ(x.status, 0) << what << " C++\n" << x.err;
      EXPECT_EQ(x.err, "") << what << " C++";
    }
  }
  EXPECT_GE(schemas, 10);
}

// Generator frame: whole heads and tails against expected files, the routing of one function, small writers, names and widths.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;
using gentest::Options;

std::string expected(const std::string& name) {
  return procutil::readFile(std::string(ZKT_SOURCE_DIR) + "/tests/expected/frame/" + name);
}

Options opts(bool debug, bool hpp, bool smartptr, bool dll) {
  Options o;
  o.debug = debug;
  o.hpp = hpp;
  o.smartptr = smartptr;
  o.dll = dll;
  return o;
}

const char kEmpty[] = "declare database d;";
const char kSequences[] = "declare database d;\nclass c { sequence<signed<4>> s; };";
const char kUserdef[] = "declare database d;\nclass c { signed<4> a; userdef tree<a> u; };";
const char kCollation[] = "declare database d;\nclass c { string a; tree<a collate latin> by_a; };";

enum Which { H, C, HPP, UDF, COLL };

struct FileCase {
  const char* schema;
  Options options;
  Which stream;
  const char* file;  // under tests/expected/frame
};

TEST(GenFrame, HeadsAndTailsAreTheExpectedFiles) {
  // clang-format off
  const FileCase cases[] = {
    { kEmpty,      Options(),                          H,    "d.h" },
    { kEmpty,      Options(),                          C,    "d.c" },
    { kEmpty,      opts(false, true, false, false),    HPP,  "d.hpp" },
    { kUserdef,    Options(),                          UDF,  "d_udf.c" },
    { kCollation,  Options(),                          COLL, "d_udf.c" },  // the same head
  };
  // clang-format on
  for (const FileCase& c : cases) {
    Generated g(c.schema, c.options);
    ASSERT_TRUE(g.run()) << g.msg;
    IOutStream* const streams[] = {g.gen.m_h, g.gen.m_c, g.gen.m_hpp, g.gen.m_udf, g.gen.m_coll};
    std::string text = gentest::maskTime(Generated::text(streams[c.stream]));
    // the user-code files go on with their stubs: only their head is the frame's
    if (c.stream == UDF || c.stream == COLL) text = text.substr(0, expected(c.file).size());
    EXPECT_EQ(text, expected(c.file)) << c.file;
  }
}

// With -debug the header has no wrappers and no inline macro; with -dll it
// imports the dictionary function.
TEST(GenFrame, DebugDllHeader) {
  Generated g(kEmpty, opts(true, false, false, true));
  ASSERT_TRUE(g.run()) << g.msg;
  std::string want = expected("d.h");
  const std::string wrap = "#include \"zktwrap.h\"\n";
  want.replace(want.find(wrap), wrap.size(),
               "#ifndef ZKT_DLL_SPEC\n#define ZKT_DLL_SPEC __declspec(dllimport)\n#endif\n");
  want.replace(want.find("zkt_dictionary_h d_get_dictionary"), 16, "zkt_dictionary_h ZKT_DLL_SPEC");
  const std::string macro = "#ifndef ZKT_TARGET_INLINE \n#define ZKT_TARGET_INLINE  __inline\n#endif\n\n";
  want.erase(want.find(macro), macro.size());
  EXPECT_EQ(gentest::maskTime(Generated::text(g.gen.m_h)), want);
}

// With -dll the C file exports the dictionary function.
TEST(GenFrame, DllCFile) {
  Generated g(kEmpty, opts(false, false, false, true));
  ASSERT_TRUE(g.run()) << g.msg;
  std::string want = expected("d.c");
  want.insert(want.find("#include \"d.h\""), "#define ZKT_DLL_SPEC __declspec(dllexport)\n");
  want.replace(want.find("zkt_dictionary_h d_get_dictionary"), 16, "zkt_dictionary_h ZKT_DLL_SPEC");
  EXPECT_EQ(gentest::maskTime(Generated::text(g.gen.m_c)), want);
}

// Sequences add an include to the header; the C++ header has one include,
// where sequences win over the smart pointers.
TEST(GenFrame, IncludeLines) {
  struct Case {
    const char* schema;
    bool smartptr;
    const char* h;    // behind the zktuda.h include
    const char* hpp;  // in front of the interface define
  };
  // clang-format off
  const Case cases[] = {
    { kEmpty,      false, "\n#ifndef ZKT_COMP_VER_MAJOR", "#include \"zkt.h\"\n" },
    { kEmpty,      true,  "\n#ifndef ZKT_COMP_VER_MAJOR", "#include \"zkt.hpp\"\n" },
    { kSequences,  true,  "#include \"zktseq.h\"\n\n#ifndef ZKT_COMP_VER_MAJOR", "#include \"zktseq.hpp\"\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Generated g(c.schema, opts(false, true, c.smartptr, false));
    ASSERT_TRUE(g.run()) << g.msg;
    const std::string h = Generated::text(g.gen.m_h);
    const std::string hpp = Generated::text(g.gen.m_hpp);
    EXPECT_NE(h.find(std::string("#include \"zktuda.h\"\n") + c.h), std::string::npos) << c.h;
    EXPECT_NE(hpp.find(std::string("#define __ZKT__d__HPP__\n\n") + c.hpp + "\n#define ZKT_CPP_INTERFACE\n"),
              std::string::npos)
        << c.hpp;
  }
}

// A function head, ";", a line feed and a body: inline in the header, or a
// prototype in the header and the definition in the C file.
TEST(GenFrame, OneFunctionRoutedInBothModes) {
  for (bool debug : {false, true}) {
    Generated g(kEmpty, opts(debug, false, false, false));
    ASSERT_TRUE(g.ok) << g.msg;
    GenOutput& o = g.gen;
    o.m_fmtRet = 8;
    o.cFunction("d_f", 5, "(void)", "{\n  return 0;\n}\n");
    o.cppMethod("X", "  ZKT_RET f();\n", "f()\n{ return d::d_f(); }\n");
    if (debug) {
      EXPECT_EQ(Generated::text(o.m_h), "ZKT_RET  d_f  (void);\n");
      EXPECT_EQ(Generated::text(o.m_c), "ZKT_RET  d_f  (void)\n{\n  return 0;\n}\n");
    } else {
      EXPECT_EQ(Generated::text(o.m_h), "ZKT_TARGET_INLINE ZKT_RET  d_f  (void)\n{\n  return 0;\n}\n");
      EXPECT_EQ(Generated::text(o.m_c), "");
    }
    EXPECT_EQ(Generated::text(o.m_hpp), "  ZKT_RET f();\n");
    EXPECT_EQ(Generated::text(o.m_hpp_tail), "inline  ZKT_RET X::f()\n{ return d::d_f(); }\n");
  }
}

TEST(GenFrame, SmallWriters) {
  Generated g(kEmpty, opts(false, false, false, true));
  ASSERT_TRUE(g.ok) << g.msg;
  GenOutput& o = g.gen;
  HIOutStream os(IOutStream::createStrStream(""));
  o.head2(os.get(), "Class person");
  o.outConstant(os.get(), "person_code", 7);
  const std::string text = Generated::text(os.get());
  EXPECT_EQ(text,
            "\n/*---------------------------------------------------------------------*/\n"
            "/* Class person                                                        */\n"
            "\n"
            "#define person_code 7\n");
  EXPECT_EQ(text.find(" */\n") - text.find("/* Class") + 3, 73u);  // the title line
  EXPECT_EQ(o.MF("f", 0), mstring("ZKT_DLL_SPEC f"));
  EXPECT_EQ(o.MF("f", 16), mstring("ZKT_DLL_SPEC f  "));
  o.m_dll = false;
  EXPECT_EQ(o.MF("f", 3), mstring("f  "));
  EXPECT_EQ(std::string(GenOutput::inline_macro()), "ZKT_TARGET_INLINE ");
}

TEST(GenFrame, NameWithPrefix) {
  struct Case {
    bool prefix;
    const char* name;
    const char* result;
  };
  // clang-format off
  const Case cases[] = {
    { true,  "a",     "db_a" },
    { true,  "dbx",   "dbx" },    // a plain prefix test: no "_" needed
    { true,  "db",    "db_db" },  // not longer than the prefix
    { true,  "d",     "db_d" },
    { false, "a",     "a" },
  };
  // clang-format on
  Generated g("declare database db;");
  ASSERT_TRUE(g.ok) << g.msg;
  for (const Case& c : cases) {
    g.gen.m_prefix = c.prefix;
    EXPECT_EQ(std::string(g.gen.nameWithPrefix(c.name).c_str()), c.result) << c.name;
  }
}

// Renaming with the prefix, and the widths that later generators align by.
TEST(GenFrame, CalculateFormating) {
  const char* schema =
      "declare database db;\n"
      "enum color { red, green };\n"
      "struct pt { signed<4> xx; };\n"
      "class a { color c; signed<2> longname; tree<longname> idx_a; };\n"
      "class dbx { signed<4> v; hash<v> h_v_long[10]; };\n";
  Options o;
  o.prefix = true;
  Generated g(schema, o);
  ASSERT_TRUE(g.layout()) << g.msg;
  Class* a = g.cls("a");
  Class* dbx = g.cls("dbx");
  Struct* pt = g.type("pt");
  Enum* color = g.schema().findEnum("color");
  ASSERT_TRUE(a && dbx && pt && color);
  g.gen.calculateFormating();
  EXPECT_EQ(std::string(a->m_name.c_str()), "db_a");
  EXPECT_EQ(std::string(dbx->m_name.c_str()), "dbx");
  EXPECT_EQ(std::string(pt->m_name.c_str()), "db_pt");
  EXPECT_EQ(std::string(color->m_name.c_str()), "db_color");
  EXPECT_EQ(std::string(color->v_els[1].m_choice.c_str()), "db_green");
  const Field& c = a->v_field[0];
  EXPECT_EQ(std::string(c.m_eltype.c_str()), "db_color");
  EXPECT_EQ(std::string(c.m_pstruct->m_name.c_str()), "db_color");
  EXPECT_EQ(std::string(c.m_pstruct->m_cType.c_str()), "db_color");
  std::string floatName;  // base types are renamed too
  for (ISet::HPos pos(g.schema().s_struct.first()); pos.valid(); pos.next()) {
    const Struct* s = static_cast<Struct*>(pos.get().get());
    if (s->m_cType == "float") floatName = s->m_name.c_str();
  }
  EXPECT_EQ(floatName, "db_float");
  // name lengths: "db_unsigned<8>" 14, field "longname" 8, index "h_v_long" 8, C type "zkt_datetime" 12
  EXPECT_EQ(g.gen.m_maxClassName, 14);
  EXPECT_EQ(g.gen.m_maxFieldName, 8);
  EXPECT_EQ(g.gen.m_maxIndexName, 8);
  EXPECT_EQ(g.gen.m_maxCtypeName, 12);
  EXPECT_EQ(g.gen.m_fmtRet, 12);
  EXPECT_EQ(g.gen.m_idxMethodName, 20);
  EXPECT_EQ(a->m_maxIndexName, 5);
  EXPECT_EQ(a->m_maxFuncName, 8 + 5 + 4 + 16);
  EXPECT_EQ(pt->m_maxFuncName, 2 + 5 + 16);
}

}  // namespace

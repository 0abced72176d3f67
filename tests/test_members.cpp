// Blob, reference, struct-member, optional and spatial accessors: functions per family, bodies by offsets, guards, index and events, C++ members, property structs and errors.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "genout_fn_util.h"
#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;
using gentest::Options;
using Names = std::vector<std::string>;

// An oid of 4 bytes; p and g are the classes under test.
const char kOid[] = "declare oid K[10];\nstruct K { unsigned<4> region; };\nclass q { oid; signed<4> v; list; };\n";
const char kStruct[] = "struct S { signed<4> x; };\n";

// Debug mode: prototypes in the header, bodies in the C file.
Options debugOptions() {
  Options o;
  o.debug = true;
  return o;
}

std::string cFile(const std::string& schema) { return gentest::debugCFile("declare database d;\n" + schema); }

// Generated with -hpp; the C++ header with its inline definitions.
std::string hppFile(const std::string& schema, bool smartptr = false) {
  Options o;
  o.hpp = true;
  o.smartptr = smartptr;
  Generated g("declare database d;\n" + schema, o);
  if (!g.run()) return "(failed: " + g.msg + ")";
  return Generated::text(g.gen.m_hpp) + Generated::text(g.gen.m_hpp_tail);
}

TEST(Members, FunctionsPerFamily) {
  struct Case {
    std::string schema;
    const char* prefix;
    Names functions;  // of the field, in order
  };
  // clang-format off
  const Case cases[] = {
    { "class p { blob b; list; };",                          "p_b", { "p_b_get", "p_b_size", "p_b_put", "p_b_append" } },
    { std::string(kOid) + "class p { ref<q> r; list; };",   "p_r", { "p_r_get", "p_r_put" } },
    { std::string(kStruct) + "class p { S s; list; };",     "p_s", { "p_s_read_handle", "p_s_write_handle" } },
    { std::string(kStruct) + "class p { optional S o; list; };", "p_o", { "p_o_read_handle", "p_o_write_handle", "p_o_erase" } },
    { "class g { rect<signed<4>> r[2]; list; };",            "g_r", { "g_r_get", "g_r_put" } },
    { "class g { point<double> pt[2]; list; };",             "g_pt", { "g_pt_get", "g_pt_put" } },
  };
  // clang-format on
  for (const Case& c : cases) {
    Generated g("declare database d;\n" + c.schema, debugOptions());
    ASSERT_TRUE(g.run()) << g.msg;
    EXPECT_EQ(gentest::functionsOf(Generated::text(g.gen.m_h), c.prefix), c.functions) << c.schema;
  }
}

// A blob (size 8, alignment 4) stands ahead of its indicator at 0; a
// reference after a string stands at 4 and 2, else at 0 and takes the
// one-offset wrappers; the oid is 4 bytes.
TEST(Members, Bodies) {
  const std::string oid = kOid, st = kStruct;
  struct Case {
    std::string schema;
    const char* text;  // a body, from its opening brace
  };
  // clang-format off
  const Case cases[] = {
    { "class p { blob b; list; };", "{ return zkt_w_blob_get2( (zkt_objhandle_h)handle, 0, 0, 0, start_offset, dest, dest_size, len);\n}\n\n" },
    { "class p { blob b; list; };", "{ return zkt_w_blob_len2( (zkt_objhandle_h)handle, 0, 0, 0, result);\n}\n\n" },
    { "class p { blob b; list; };", "{ return zkt_w_blob_put2( (zkt_objhandle_h)handle, 0, 0, 0, (const char*)src, nbytes);\n}\n\n" },
    { "class p { blob b; list; };", "{ return zkt_w_blob_append2( (zkt_objhandle_h)handle, 0, 0, 0, (const char*)src, nbytes);\n}\n\n" },
    // the class's update event changes nothing (a blob can raise none of its own)
    { "class p { blob b; list; event<update> e; };",   "{ return zkt_w_blob_put2( (zkt_objhandle_h)handle, 0, 0, 0, (const char*)src, nbytes);\n}\n\n" },
    { "class p { blob b; list; event<update> e; };",   "{ return zkt_w_blob_append2( (zkt_objhandle_h)handle, 0, 0, 0, (const char*)src, nbytes);\n}\n\n" },
    // nullable: the size reads through the get guard, the append writes through the put guard
    { "class p { nullable blob b; list; };", "{ uint1 indicator; ZKT_RET rc = p_b_indicator_get(handle, &indicator); if (rc != ZKT_S_OK) return rc; else if (!indicator) return ZKT_S_NULL_VALUE; return zkt_w_blob_len2( (zkt_objhandle_h)handle, 0, 0, 0, result);\n}\n\n" },
    { "class p { nullable blob b; list; };", "{ ZKT_RET rc = p_b_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc; return zkt_w_blob_append2( (zkt_objhandle_h)handle, 0, 0, 0, (const char*)src, nbytes);\n}\n\n" },
    // references: equal offsets, unequal ones, indexed, with an update event
    { oid + "class p { ref<q> r; list; };", "{ return zkt_w_chars_get( (zkt_objhandle_h) handle, 0, 0, (char*)result, sizeof(*result), 4);\n}\n\n" },
    { oid + "class p { ref<q> r; list; };", "{ return zkt_w_chars_put( (zkt_objhandle_h)handle, 0, 0, (const char *)src, sizeof(*src), 4, 0);\n}\n\n" },
    { oid + "compact class p { string s; ref<q> r; list; };", "{ return zkt_w_chars_get2( (zkt_objhandle_h) handle, 4, 2, 1, (char*)result, sizeof(*result), 4);\n}\n\n" },
    { oid + "compact class p { string s; ref<q> r; list; };", "{ return zkt_w_chars_put2( (zkt_objhandle_h)handle, 4, 2, 1, (const char *)src, sizeof(*src), 4, 0);\n}\n\n" },
    { oid + "class p { ref<q> r; tree<r> ir; };", "{ return zkt_w_chars_put( (zkt_objhandle_h)handle, 0, 0, (const char *)src, sizeof(*src), 4, 1);\n}\n\n" },
    { oid + "class p { ref<q> r; list; event<update> e; };", "{ return zkt_w_chars_put( (zkt_objhandle_h)handle, 0, 0, (const char *)src, sizeof(*src), 4, 0);\n}\n\n" },
    // struct members: no guard even when nullable; {idx} 1 when an index path starts at the member
    { st + "class p { S s; list; };", "{ return zkt_w_struct_get2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0); \n}\n\n" },
    { st + "class p { S s; list; };", "{ return zkt_w_struct_put2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0, 0);\n}\n\n" },
    { st + "class p { S s; tree<s.x> ix; };", "{ return zkt_w_struct_put2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0, 1);\n}\n\n" },
    { st + "class p { nullable S s; list; };", "{ return zkt_w_struct_get2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0); \n}\n\n" },
    { st + "class p { nullable S s; list; };", "{ return zkt_w_struct_put2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0, 0);\n}\n\n" },
    { "direct struct V { signed<4> y; };\nclass p { V v; list; };", "{ return zkt_w_struct_get2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0); \n}\n\n" },
    { "direct struct V { signed<4> y; };\nclass p { V v; list; };", "{ return zkt_w_struct_put2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0, 0);\n}\n\n" },
    // the member's fields are the struct's own accessors, without index
    { st + "class p { S s; tree<s.x> ix; };", "{ return zkt_w_b4_put( (zkt_objhandle_h) handle, 0, 0, 0, (uint4) value);\n}\n\n" },
    // optional
    { st + "class p { optional S o; list; };", "{ return zkt_w_optional_get2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, 0, 0, 0); \n}\n\n" },
    { st + "class p { optional S o; list; };", "{ return zkt_w_optional_erase2( (zkt_objhandle_h)handle, 0, 0, 0); \n}\n\n" },
    // spatial: esize, n (two per dimension of a rectangle), the coordinate type code (int4 6, double 11), {idx}
    { "class g { rect<signed<4>> r[2]; list; };", "{ return zkt_w_rect_get( (zkt_objhandle_h)handle, 0, 0, 0, 4, 4, dest );\n}\n\n" },
    { "class g { rect<signed<4>> r[2]; list; };", "{ return zkt_w_rect_put( (zkt_objhandle_h)handle, 0, 0, 0, 6, 4, 4, 0, src );\n}\n\n" },
    { "class g { rect<signed<4>> r[2]; rtree<r> ir; };", "{ return zkt_w_rect_put( (zkt_objhandle_h)handle, 0, 0, 0, 6, 4, 4, 1, src );\n}\n\n" },
    { "class g { point<double> pt[2]; list; };", "{ return zkt_w_point_get( (zkt_objhandle_h)handle, 0, 0, 0, 8, 2, dest );\n}\n\n" },
    { "class g { point<double> pt[2]; list; event<update> e; };", "{ return zkt_w_point_put( (zkt_objhandle_h)handle, 0, 0, 0, 11, 8, 2, 0, src );\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) EXPECT_NE(cFile(c.schema).find(c.text), std::string::npos) << c.schema << "\n" << c.text;
  EXPECT_EQ(cFile(std::string(kStruct) + "class p { nullable S s; list; };").find("p_s_indicator_get(handle, &indicator)"),
            std::string::npos);
}

// The optional struct's global number and its sizes and alignments (4, 4, 4, 4).
TEST(Members, OptionalWriteHandle) {
  Generated g(std::string("declare database d;\n") + kStruct + "class p { optional S o; list; };", debugOptions());
  ASSERT_TRUE(g.run()) << g.msg;
  const int gnum = g.schema().findType("S")->m_globalNum;
  ASSERT_GE(gnum, 0);
  EXPECT_NE(Generated::text(g.gen.m_c).find("{ return zkt_w_optional_put2( (zkt_objhandle_h)handle, (zkt_objhandle_h)h, " +
                                            std::to_string(gnum) + ", 0, 0, 0, 4, 4, 4, 4); \n}\n\n"),
            std::string::npos);
}

// The prototypes of a struct member: both declare h "/*OUT*/".
TEST(Members, Prototypes) {
  Generated g(std::string("declare database d;\n") + kStruct + "class p { S s; blob b; list; };", debugOptions());
  ASSERT_TRUE(g.run()) << g.msg;
  const int width = g.schema().findClass("p")->m_maxFuncName;
  auto proto = [&](const std::string& name, const std::string& params) {
    return "ZKT_RET      " + name + std::string(width - name.size(), ' ') + params + ";\n";
  };
  const std::string h = Generated::text(g.gen.m_h);
  EXPECT_NE(h.find(proto("p_s_read_handle", " ( p *handle, /*OUT*/ S * h )") +
                   proto("p_s_write_handle", " ( p *handle, /*OUT*/ S * h )")),
            std::string::npos)
      << h;
  EXPECT_NE(h.find(proto("p_b_put", " ( p *handle, const void * src, uint4 nbytes )")), std::string::npos) << h;
}

TEST(Members, CppMembers) {
  const std::string hpp = hppFile(std::string(kOid) + kStruct +
                                  "class p { blob b; ref<q> r; S s; optional S o; rect<signed<4>> x[2]; list; };");
  // clang-format off
  const char* const texts[] = {
    ("  ZKT_RET b_get(uint4 start_offset, char * dest, uint4 dest_size, uint4 & len );\n  ZKT_RET b_size(uint4 & result);\n"
     "  ZKT_RET b_put( const void * src, uint4 nbytes );\n  ZKT_RET b_append( const void * src, uint4 nbytes );\n"),
    "inline  ZKT_RET p::b_get(uint4 start_offset, char * dest, uint4 dest_size, uint4 & len )\n{ ZKT_RET ret_ = d::p_b_get(this, start_offset, dest, dest_size, &len); return ret_; \n}\n\n",
    "inline  ZKT_RET p::b_size(uint4 & result)\n{ ZKT_RET ret_ = d::p_b_size(this, &result); return ret_;\n}\n\n",
    "inline  ZKT_RET p::b_put( const void * src, uint4 nbytes )\n{ ZKT_RET ret_ = d::p_b_put(this, src, nbytes); return ret_; \n} \n\n",
    "inline  ZKT_RET p::b_append( const void * src, uint4 nbytes )\n{ ZKT_RET ret_ = d::p_b_append(this, src, nbytes); return ret_; \n} \n\n",
    "  ZKT_RET r_get( d_oid & result );\n  ZKT_RET r_put( d_oid & src );\n",
    "inline  ZKT_RET p::r_get ( d_oid & result )\n{ ZKT_RET ret_ = d::p_r_get(this, &result); return ret_;\n} \n\n",
    "inline  ZKT_RET p::r_put( d_oid & src )\n{ ZKT_RET ret_ = d::p_r_put(this, & src); return ret_;\n} \n\n",
    "  ZKT_RET s_read( S & s );\n  ZKT_RET s_write( S & s );\n",
    "inline  ZKT_RET p::s_read( S & s )\n{ ZKT_RET ret_ = d::p_s_read_handle(this, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; \n} \n\n",
    "inline  ZKT_RET p::s_write( S & s )\n{ ZKT_RET ret_ = d::p_s_write_handle(this, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; \n} \n\n",
    // optional: _read marks the object, not s
    "  ZKT_RET o_read( S & s); \n  ZKT_RET o_write( S & s); \n  ZKT_RET o_erase();\n",
    "inline  ZKT_RET p::o_read( S & s) \n{ ZKT_RET ret_ = d::p_o_read_handle( this, &s ); set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
    "inline  ZKT_RET p::o_write( S & s) \n{ ZKT_RET ret_ = d::p_o_write_handle( this, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
    "inline  ZKT_RET p::o_erase() \n{ ZKT_RET ret_ = d::p_o_erase( this ); return ret_; \n}\n\n",
    "  ZKT_RET x_get(int4 *dest );\n  ZKT_RET x_put(const int4 * src );\n",
    "inline  ZKT_RET p::x_get(int4 *dest )\n{ ZKT_RET ret_ = d::p_x_get(this, dest); return ret_; \n}\n\n",
    "inline  ZKT_RET p::x_put(const int4 * src )\n{ ZKT_RET ret_ = d::p_x_put(this, src); return ret_; \n}\n\n",
  };
  // clang-format on
  for (const char* t : texts) EXPECT_NE(hpp.find(t), std::string::npos) << t;
}

// The property struct of a point speaks of a rectangle: intended.
TEST(Members, SpatialProperty) {
  const std::string hpp = hppFile("class g { point<float> pt[3]; list; };", true);
  EXPECT_NE(hpp.find("  struct { \n    g* handle_;\n"
                     "    operator std::vector<float>() const {\n      std::vector<float> arr_(3);\n"
                     "      ZKT_CPP_CHECK(g_pt_get(handle_, &arr_[0]));\n      return arr_;\n    }\n"
                     "    std::vector<float> const& operator=(std::vector<float> const& arr_) {\n"
                     "      if (3 != arr_.size()) {\n"
                     "        throw ZktException(ZKT_E_CORE, \"Wrong size of rectangle\", __FILE__, __LINE__);\n      }\n"
                     "      ZKT_CPP_CHECK(g_pt_put(handle_, &arr_[0]));\n      return arr_;\n    }\n"
                     "  } pt;\n\n"),
            std::string::npos)
      << hpp;
  EXPECT_EQ(hppFile("class g { point<float> pt[3]; list; };").find("operator std::vector<float>"), std::string::npos);
}

TEST(Members, SpatialLength) {
  Options o;
  Generated g("declare database d;\nclass g { rect<signed<4>> r[2]; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_NE(Generated::text(g.gen.m_h).find("\n#define g_r_length 4\n"), std::string::npos);
}

// Coordinates that are not simple throw after the define.
TEST(Members, SpatialNotSimpleThrows) {
  Generated g("declare database d;\nclass g { rect<char<4>> r[2]; list; };");
  ASSERT_TRUE(g.ok) << g.msg;
  try {
    g.run();
    ADD_FAILURE() << "no throw";
  } catch (const char* e) {
    EXPECT_STREQ(e, "unknown case");
  }
  EXPECT_NE(Generated::text(g.gen.m_h).find("#define g_r_length 4\n"), std::string::npos);
}

// Through the binary: the console text, exit 255, the outputs removed where
// the error is reported; a non-simple rect ends in the job's catch, no abort.
TEST(Members, ConsoleErrors) {
  struct Case {
    std::string schema;
    const char* err;
    bool removed;
  };
  const Case cases[] = {
      {"class p { optional signed<4> o; list; };", "File x.sch; error: optional may be only struct\n\n", true},
      {"direct struct V { signed<4> y; };\nclass p { optional V o; list; };",
       "File x.sch; error: optional may be only struct\n\n", true},
      {"class g { rect<char<4>> r[2]; list; };", "internal error: unknown case\n", false},
  };
  for (const Case& c : cases) {
    const std::string dir = procutil::makeTempDir();
    procutil::writeFile(dir + "/x.sch", "declare database d;\n" + c.schema);
    ProcResult r = procutil::runProgram({ZKT_COMPILER_PATH, "x.sch"}, dir);
    EXPECT_EQ(r.status, 255) << c.schema;
    EXPECT_EQ(r.err, c.err);
    if (c.removed) {
      EXPECT_FALSE(procutil::fileExists(dir + "/d.h")) << c.schema;
      EXPECT_FALSE(procutil::fileExists(dir + "/d.c")) << c.schema;
    }
    std::filesystem::remove_all(dir);
  }
}

// An optional field of a struct whose API nobody generates gets no error.
TEST(Members, OptionalErrorOnlyWithApi) {
  Generated g("declare database d;\nstruct T { optional signed<4> o; };\nclass p { signed<4> a; list; };");
  EXPECT_TRUE(g.run()) << g.msg;
}

}  // namespace

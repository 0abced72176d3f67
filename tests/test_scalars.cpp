// Scalar accessors: wrapper choice by size, boolean, float, enum, offsets, events, guards, auto ids, direct structs, text forms, sequences, C++ members.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "genout_fn_util.h"
#include "genout_util.h"

namespace {

using gentest::Generated;
using gentest::Options;
using Names = std::vector<std::string>;

// Generated in debug mode; the C file holds the bodies.
std::string cFile(const std::string& schema, Options o = Options()) {
  return gentest::debugCFile("declare database d;\nenum color { red, green };\n" + schema, o);
}

// One field alone in a class stands at offset 0 in both layouts, field number 0.
TEST(Scalars, BodiesByKind) {
  struct Case {
    const char* schema;
    const char* text;  // a body, from its opening brace
  };
  // clang-format off
  const Case cases[] = {
    { "class p { unsigned<1> a; list; };", "{ return zkt_w_b1_get( (zkt_objhandle_h) handle, 0, 0, result);\n}\n\n" },
    { "class p { unsigned<1> a; list; };", "{ return zkt_w_b1_put( (zkt_objhandle_h) handle, 0, 0, 0, (uint1) value);\n}\n\n" },
    { "class p { signed<2> a; list; };",   "{ return zkt_w_b2_get( (zkt_objhandle_h) handle, 0, 0, result);\n}\n\n" },
    { "class p { signed<2> a; list; };",   "{ return zkt_w_b2_put( (zkt_objhandle_h) handle, 0, 0, 0, (uint2) value);\n}\n\n" },
    { "class p { unsigned<4> a; list; };", "{ return zkt_w_b4_put( (zkt_objhandle_h) handle, 0, 0, 0, (uint4) value);\n}\n\n" },
    { "class p { signed<8> a; list; };",   "{ return zkt_w_b8_get( (zkt_objhandle_h) handle, 0, 0, result);\n}\n\n" },
    { "class p { signed<8> a; list; };",   "{ return zkt_w_b8_put( (zkt_objhandle_h) handle, 0, 0, 0, & value);\n}\n\n" },
    { "class p { double a; list; };",      "{ return zkt_w_b8_put( (zkt_objhandle_h) handle, 0, 0, 0, & value);\n}\n\n" },
    { "class p { float a; list; };",       "{ return zkt_w_b4_get( (zkt_objhandle_h) handle, 0, 0, result);\n}\n\n" },
    { "class p { float a; list; };",       "{{ union { float f; uint4 i; } u; u.f = value; return zkt_w_b4_put( (zkt_objhandle_h) handle, 0, 0, 0, u.i); }\n}\n\n" },
    // a boolean takes both offsets even where they are equal; "0,result" has no blank
    { "class p { boolean a; list; };",     "{ return zkt_w_bit_get2( (zkt_objhandle_h) handle, 0, 0, 0,result);\n}\n\n" },
    { "class p { boolean a; list; };",     "{ return zkt_w_bit_put2( (zkt_objhandle_h) handle, 0, 0, 0, 0, (uint1) value);\n}\n\n" },
    { "class p { color a; list; };",       "{{ uint1 temp; ZKT_RET rc = zkt_w_b1_get( (zkt_objhandle_h) handle, 0, 0, &temp);\n  *result = (color) temp; return rc; }\n}\n\n" },
    { "class p { color a; list; };",       "{ return zkt_w_b1_put( (zkt_objhandle_h) handle, 0, 0, 0, (uint1) value);\n}\n\n" },
    // indexed
    { "class p { unsigned<4> a; tree<a> ia; };", "{ return zkt_w_b4_put( (zkt_objhandle_h) handle, 0, 0, 1, (uint4) value);\n}\n\n" },
    // the field's own update event, and the class's
    { "class p { float a; list; event<a update> e; };", "{{ union { float f; uint4 i; } u; u.f = value; return zkt_w_b4_put_ev( (zkt_objhandle_h) handle, 0, 0, 0, u.i, 0); }\n}\n\n" },
    { "class p { unsigned<4> a; list; event<update> e; };", "{ return zkt_w_b4_put_ev( (zkt_objhandle_h) handle, 0, 0, 0, (uint4) value, 0);\n}\n\n" },
    { "class p { boolean a; list; event<update> e; };", "{ return zkt_w_bit_put_ev2( (zkt_objhandle_h) handle, 0, 0, 0, 0, (uint1) value, 0);\n}\n\n" },
    // a 2-byte field behind a string: offset 8 normal, 4 compact (4-byte field first, string 4 or 2 bytes)
    { "compact class p { string s; unsigned<4> a; unsigned<2> b; list; };", "{ return zkt_w_b2_get2( (zkt_objhandle_h) handle, 8, 4, 2,result);\n}\n\n" },
    { "compact class p { string s; unsigned<4> a; unsigned<2> b; list; };", "{ return zkt_w_b2_put2( (zkt_objhandle_h) handle, 8, 4, 2, 0, (uint2) value);\n}\n\n" },
    // nullable: guards before the call; the indicator is a bit behind the field
    { "class p { nullable signed<2> n; list; };", "{ uint1 indicator; ZKT_RET rc = p_n_indicator_get(handle, &indicator); if (rc != ZKT_S_OK) return rc; else if (!indicator) return ZKT_S_NULL_VALUE; return zkt_w_b2_get( (zkt_objhandle_h) handle, 0, 0, result);\n}\n\n" },
    { "class p { nullable signed<2> n; list; };", "{ ZKT_RET rc = p_n_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc; return zkt_w_b2_put( (zkt_objhandle_h) handle, 0, 0, 0, (uint2) value);\n}\n\n" },
    // a direct struct's scalars are bytes
    { "direct struct V { signed<4> y; };\nclass p { V v; list; };", "{ return zkt_w_chars_get2( (zkt_objhandle_h) handle, fieldoffs(V_d_aligned_to_1, y), fieldoffs(V_d_aligned_to_1, y), 0, (char*)result, sizeof(*result), fieldsz(V_d_aligned_to_1, y));\n}\n\n" },
    { "direct struct V { signed<4> y; };\nclass p { V v; list; };", "{ return zkt_w_chars_put2( (zkt_objhandle_h) handle, fieldoffs(V_d_aligned_to_1, y), fieldoffs(V_d_aligned_to_1, y), 0, (char*)&value, sizeof(value), fieldsz(V_d_aligned_to_1, y), 0);\n}\n\n" },
    // text forms of a fixed-point number of 8 bytes, precision 2
    { "class p { decimal<10,2> m; list; };", "{zkt_int8 _scaled_num; ZKT_RET _rc = p_m_get(handle, &_scaled_num); return _rc == ZKT_S_OK ? zkt_w_numeric_b8_to_string(_scaled_num, 2, buf, buf_size) : _rc; }\n\n" },
    { "class p { decimal<10,2> m; list; };", "{ return zkt_w_numeric_b8_to_string(scaled_num, 2, buf, buf_size); }\n\n" },
    { "class p { decimal<10,2> m; list; };", "{zkt_int8 _scaled_num;  ZKT_RET _rc = zkt_w_numeric_b8_from_string(&_scaled_num, 2, buf); return _rc == ZKT_S_OK ? p_m_put(handle, _scaled_num) : _rc; }\n\n" },
    { "class p { decimal<10,2> m; list; };", "{ return zkt_w_numeric_b8_from_string(scaled_num, 2, buf); }\n\n" },
    // sequences: class code 1, the field's offset
    { "class p { unsigned<4> a; sequences; };", "{ return zkt_w_seq_sequence_uint4(trans, 1, 0, seq); }\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) EXPECT_NE(cFile(c.schema).find(c.text), std::string::npos) << c.schema << "\n" << c.text;
}

TEST(Scalars, FunctionsPerKind) {
  struct Case {
    const char* schema;
    Names functions;  // of the field, in order
  };
  // clang-format off
  const Case cases[] = {
    { "class p { unsigned<4> a; list; };", { "p_a_get", "p_a_put" } },
    // the functions of the autoid index share the field's name
    { "class p { autoid[10]; list; };", { "p_autoid_get", "p_autoid_index_cursor", "p_autoid_compare", "p_autoid_find", "p_autoid_autoid_from_cursor" } },
    { "class p { decimal<10,2> a; list; };", { "p_a_get_chars", "p_a_to_chars", "p_a_put_chars", "p_a_from_chars", "p_a_get", "p_a_put" } },
    { "class p { unsigned<4> a; sequences; };", { "p_a_sequence", "p_a_get", "p_a_put" } },
    { "class p { nullable unsigned<4> a; list; };", { "p_a_get", "p_a_put", "p_a_indicator_get", "p_a_indicator_put" } },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o;
    o.debug = true;
    Generated g(std::string("declare database d;\n") + c.schema, o);
    ASSERT_TRUE(g.run()) << g.msg;
    EXPECT_EQ(gentest::functionsOf(Generated::text(g.gen.m_h), "p_a"), c.functions) << c.schema;
  }
}

// A hidden field leaves no trace, not even its line end; a struct whose
// owners all suppress their API has no accessors.
TEST(Scalars, HiddenAndSuppressed) {
  Options o;
  o.debug = true;
  Generated g("declare database d;\nclass p { signed<4> a; list; };", o);
  ASSERT_TRUE(g.ok) << g.msg;
  g.schema().findClass("p")->v_field[0].m_isHidden = true;
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  EXPECT_EQ(h.find("p_a_"), std::string::npos);
  const size_t from = h.find("p_checkpoint"), to = h.find("p_from_cursor");  // nothing between them
  ASSERT_LT(from, to);
  EXPECT_EQ(h.substr(from, to - from).find("\n\n"), std::string::npos);

  o.suppress = {"p"};
  Generated s("declare database d;\nstruct S { signed<4> x; };\nclass p { S s; list; };", o);
  ASSERT_TRUE(s.run()) << s.msg;
  EXPECT_EQ(Generated::text(s.gen.m_h).find("S_x_get"), std::string::npos);
}

TEST(Scalars, CppMembers) {
  Options o;
  o.hpp = true;
  o.smartptr = true;
  Generated g("declare database d;\nclass p { unsigned<4> a; autoid[10]; decimal<4,1> m; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string hpp = Generated::text(g.gen.m_hpp);
  // clang-format off
  const char* const texts[] = {
    "  ZKT_RET a_get( uint4 & result );\n"
    "  struct { \n    p* handle_;\n    operator  uint4() const {\n      uint4 val_;\n      ZKT_CPP_CHECK(p_a_get(handle_, &val_));\n      return val_;\n    }\n"
    "    uint4 operator=(uint4 val_) {\n      ZKT_CPP_CHECK(p_a_put(handle_, val_));\n      return val_;\n    }\n"
    "  } a;\n\n"
    "  ZKT_RET a_put( uint4 value );\n",
    // an auto id's property struct has no assignment
    "  ZKT_RET autoid_get( autoid_t & result );\n"
    "  struct { \n    p* handle_;\n    operator  autoid_t() const {\n      autoid_t val_;\n      ZKT_CPP_CHECK(p_autoid_get(handle_, &val_));\n      return val_;\n    }\n"
    "  } autoid;\n\n",
    "inline  ZKT_RET p::a_get ( uint4 & result )\n{ ZKT_RET ret_ = d::p_a_get(this, &result); return ret_;\n} \n\n",
    "inline  ZKT_RET p::a_put( uint4 value )\n{ ZKT_RET ret_ = d::p_a_put(this, value); return ret_; \n} \n\n",
    "  ZKT_RET m_get_chars(char* buf, int buf_size);\n",
    "  static ZKT_RET m_to_chars(int2 scaled_num, char* buf, int buf_size);\n",
    "  ZKT_RET m_put_chars(char const* buf);\n",
    "  static ZKT_RET m_from_chars(int2& scaled_num, char const* buf);\n",
    "inline  ZKT_RET p::m_get_chars(char* buf, int buf_size)\n{ return d::p_m_get_chars(this, buf, buf_size);\n} \n\n",
    "inline  ZKT_RET p::m_to_chars(int2 scaled_num, char* buf, int buf_size)\n{ return d::p_m_to_chars(scaled_num, buf, buf_size);\n} \n\n",
    "inline  ZKT_RET p::m_put_chars(char const* buf)\n{ return d::p_m_put_chars(this, buf); \n} \n\n",
    "inline  ZKT_RET p::m_from_chars(int2& scaled_num, char const* buf)\n{ return d::p_m_from_chars(&scaled_num, buf); \n} \n\n",
    "  p() {\n    a.handle_ = this;\n    autoid.handle_ = this;\n    m.handle_ = this;\n  }\n\n",
  };
  // clang-format on
  for (const char* t : texts) EXPECT_NE(hpp.find(t), std::string::npos) << t;
  EXPECT_EQ(hpp.find("autoid_put"), std::string::npos);
}

TEST(Scalars, SequenceMember) {
  Options o;
  o.hpp = true;
  Generated g("declare database d;\nclass p { unsigned<4> a; sequences; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string hpp = Generated::text(g.gen.m_hpp);
  EXPECT_NE(hpp.find("static Sequence<uint4> a_sequence(zkt_trans_h trans);\n"), std::string::npos);
  EXPECT_NE(hpp.find("inline Sequence<uint4> p::a_sequence(zkt_trans_h trans)\n{ Sequence<uint4> seq; "
                     "ZKT_CPP_CHECK(d::p_a_sequence(trans, seq.iter)); return seq; }\n\n"),
            std::string::npos);
}

// A direct struct's put passes ", " without its first {ev} characters; above
// 2 nothing. Its accessors only meet an event when the frame is given a class
// with an update event, which this test does directly.
TEST(Scalars, DirectStructPutTail) {
  struct Case {
    int events_before;  // events declared ahead of the update event: its id
    const char* text;
  };
  // clang-format off
  const Case cases[] = {
    { 0, "{ return zkt_w_chars_put_ev2( (zkt_objhandle_h) handle, fieldoffs(V_d_aligned_to_1, y), fieldoffs(V_d_aligned_to_1, y), 0, (char*)&value, sizeof(value), fieldsz(V_d_aligned_to_1, y), 0, );\n}\n\n" },
    { 1, "{ return zkt_w_chars_put_ev2( (zkt_objhandle_h) handle, fieldoffs(V_d_aligned_to_1, y), fieldoffs(V_d_aligned_to_1, y), 0, (char*)&value, sizeof(value), fieldsz(V_d_aligned_to_1, y), 0 );\n}\n\n" },
    { 2, "{ return zkt_w_chars_put_ev2( (zkt_objhandle_h) handle, fieldoffs(V_d_aligned_to_1, y), fieldoffs(V_d_aligned_to_1, y), 0, (char*)&value, sizeof(value), fieldsz(V_d_aligned_to_1, y), 0);\n}\n\n" },
    { 3, "{ return zkt_w_chars_put_ev2( (zkt_objhandle_h) handle, fieldoffs(V_d_aligned_to_1, y), fieldoffs(V_d_aligned_to_1, y), 0, (char*)&value, sizeof(value), fieldsz(V_d_aligned_to_1, y), 0);\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    std::string events;
    for (int i = 0; i < c.events_before; i++) events += "event<new> n" + std::to_string(i) + "; ";
    Options o;
    o.debug = true;
    Generated g("declare database d;\ndirect struct V { signed<4> y; };\nclass p { V v; list; " + events +
                    "event<update> u; };",
                o);
    ASSERT_TRUE(g.run()) << g.msg;
    Class& cls = *g.schema().findClass("p");
    ASSERT_EQ(cls.getClassUpdateEvent(), c.events_before);
    g.gen.output(*g.schema().findType("V"), &cls);
    EXPECT_NE(Generated::text(g.gen.m_c).find(c.text), std::string::npos) << c.events_before;
  }
}

}  // namespace

// Character and string accessors: functions per family, bodies by offsets, events, guards, index and sequences, C++ members and property structs.
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
std::string cFile(const std::string& schema) { return gentest::debugCFile("declare database d;\n" + schema); }

TEST(Chars, FunctionsPerFamily) {
  struct Case {
    const char* schema;
    Names functions;  // of the field, in order
  };
  // clang-format off
  const Case cases[] = {
    { "class p { char<4> a; list; };",     { "p_a_get", "p_a_put" } },
    { "class p { binary<4> a; list; };",   { "p_a_get", "p_a_put" } },
    { "class p { nchar<3> a; list; };",    { "p_a_get", "p_a_put" } },
    { "class p { string a; list; };",      { "p_a_get", "p_a_size", "p_a_put" } },
    { "class p { varbinary a; list; };",   { "p_a_get", "p_a_size", "p_a_put" } },
    { "class p { nstring a; list; };",     { "p_a_get", "p_a_size", "p_a_put" } },
    // only the narrow fixed ones have a sequence
    { "class p { char<4> a; sequences; };",   { "p_a_sequence", "p_a_get", "p_a_put" } },
    { "class p { binary<4> a; sequences; };", { "p_a_sequence", "p_a_get", "p_a_put" } },
    { "class p { nchar<4> a; sequences; };",  { "p_a_get", "p_a_put" } },
    { "class p { string a; sequences; };",    { "p_a_get", "p_a_size", "p_a_put" } },
    { "class p { nullable char<4> a; list; };", { "p_a_get", "p_a_put", "p_a_indicator_get", "p_a_indicator_put" } },
    { "class p { nullable nstring a; list; };", { "p_a_get", "p_a_size", "p_a_put", "p_a_indicator_get", "p_a_indicator_put" } },
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

// A field alone stands at offset 0 in both layouts; a nullable one behind its
// indicator byte. Behind a string (4 bytes normal, 2 compact) a char<n>
// stands at 4 and 2, an nchar<n> at 4 and 0 (before the string).
TEST(Chars, Bodies) {
  struct Case {
    const char* schema;
    const char* text;  // a body, from its opening brace
  };
  // clang-format off
  const Case cases[] = {
    // equal offsets: one-offset wrappers; the put's cast has no blank before handle
    { "class p { char<4> a; list; };",   "{ return zkt_w_chars_get( (zkt_objhandle_h) handle, 0, 0, dest, dest_size, 4);\n}\n\n" },
    { "class p { char<4> a; list; };",   "{ return zkt_w_chars_put( (zkt_objhandle_h)handle, 0, 0, src, len, 4, 0);\n}\n\n" },
    { "class p { binary<8> a; list; };", "{ return zkt_w_chars_get( (zkt_objhandle_h) handle, 0, 0, dest, dest_size, 8);\n}\n\n" },
    { "class p { binary<8> a; list; };", "{ return zkt_w_chars_put( (zkt_objhandle_h)handle, 0, 0, src, len, 8, 0);\n}\n\n" },
    // nchar<3> is 3 nchar_t of 2 bytes
    { "class p { nchar<3> a; list; };",  "{ return zkt_w_nchars_get( (zkt_objhandle_h) handle, 0, 0, dest, dest_size, 6);\n}\n\n" },
    { "class p { nchar<3> a; list; };",  "{ return zkt_w_nchars_put( (zkt_objhandle_h)handle, 0, 0, src, len, 6, 0);\n}\n\n" },
    // unequal offsets
    { "compact class p { string s; char<4> a; list; };", "{ return zkt_w_chars_get2( (zkt_objhandle_h) handle, 4, 2, 1, dest, dest_size, 4);\n}\n\n" },
    { "compact class p { string s; char<4> a; list; };", "{ return zkt_w_chars_put2( (zkt_objhandle_h)handle, 4, 2, 1, src, len, 4, 0);\n}\n\n" },
    { "compact class p { string s; nchar<3> a; list; };", "{ return zkt_w_nchars_get2( (zkt_objhandle_h) handle, 4, 0, 1, dest, dest_size, 6);\n}\n\n" },
    { "compact class p { string s; nchar<3> a; list; };", "{ return zkt_w_nchars_put2( (zkt_objhandle_h)handle, 4, 0, 1, src, len, 6, 0);\n}\n\n" },
    // variable sizes: always both offsets; "len); " and "result); " end in a blank
    { "class p { string a; list; };",    "{ return zkt_w_string_get2( (zkt_objhandle_h) handle, 0, 0, 0, dest, dest_size, len); \n}\n\n" },
    { "class p { string a; list; };",    "{ return zkt_w_string_len2( (zkt_objhandle_h) handle, 0, 0, 0, result); \n}\n\n" },
    { "class p { string a; list; };",    "{ return zkt_w_string_put2( (zkt_objhandle_h) handle, 0, 0, 0, src, len, 0);\n}\n\n" },
    { "class p { varbinary a; list; };", "{ return zkt_w_string_put2( (zkt_objhandle_h) handle, 0, 0, 0, src, len, 0);\n}\n\n" },
    { "class p { nstring a; list; };",   "{ return zkt_w_nstring_get2( (zkt_objhandle_h) handle, 0, 0, 0, dest, dest_size, len); \n}\n\n" },
    { "class p { nstring a; list; };",   "{ return zkt_w_nstring_len2( (zkt_objhandle_h) handle, 0, 0, 0, result); \n}\n\n" },
    { "class p { nstring a; list; };",   "{ return zkt_w_nstring_put2( (zkt_objhandle_h) handle, 0, 0, 0, src, len, 0);\n}\n\n" },
    { "compact class p { string s; nchar<3> a; list; };", "{ return zkt_w_string_get2( (zkt_objhandle_h) handle, 0, 6, 0, dest, dest_size, len); \n}\n\n" },
    // the field's own update event, at equal and unequal offsets, and the class's
    { "class p { char<10> a; list; event<a update> e; };", "{ return zkt_w_chars_put_ev( (zkt_objhandle_h)handle, 0, 0, src, len, 10, 0, 0);\n}\n\n" },
    { "compact class p { string s; char<10> a; list; event<a update> e; };", "{ return zkt_w_chars_put_ev2( (zkt_objhandle_h)handle, 4, 2, 1, src, len, 10, 0, 0);\n}\n\n" },
    { "class p { nchar<2> a; list; event<update> e; };", "{ return zkt_w_nchars_put_ev( (zkt_objhandle_h)handle, 0, 0, src, len, 4, 0, 0);\n}\n\n" },
    { "class p { string a; list; event<new> n; event<a update> e; };", "{ return zkt_w_string_put_ev2( (zkt_objhandle_h) handle, 0, 0, 0, src, len, 0, 1);\n}\n\n" },
    { "class p { nstring a; list; event<update> e; };", "{ return zkt_w_nstring_put_ev2( (zkt_objhandle_h) handle, 0, 0, 0, src, len, 0, 0);\n}\n\n" },
    // indexed
    { "class p { char<4> a; tree<a> ia; };", "{ return zkt_w_chars_put( (zkt_objhandle_h)handle, 0, 0, src, len, 4, 1);\n}\n\n" },
    { "class p { string a; tree<a> ia; };",  "{ return zkt_w_string_put2( (zkt_objhandle_h) handle, 0, 0, 0, src, len, 1);\n}\n\n" },
    // nullable: the guards; a string's size reads through the get guard
    { "class p { nullable char<2> a; list; };", "{ uint1 indicator; ZKT_RET rc = p_a_indicator_get(handle, &indicator); if (rc != ZKT_S_OK) return rc; else if (!indicator) return ZKT_S_NULL_VALUE; return zkt_w_chars_get( (zkt_objhandle_h) handle, 1, 0, dest, dest_size, 2);\n}\n\n" },
    { "class p { nullable char<2> a; list; };", "{ ZKT_RET rc = p_a_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc; return zkt_w_chars_put( (zkt_objhandle_h)handle, 1, 0, src, len, 2, 0);\n}\n\n" },
    { "class p { nullable string a; list; };",  "{ uint1 indicator; ZKT_RET rc = p_a_indicator_get(handle, &indicator); if (rc != ZKT_S_OK) return rc; else if (!indicator) return ZKT_S_NULL_VALUE; return zkt_w_string_len2( (zkt_objhandle_h) handle, 0, 0, 0, result); \n}\n\n" },
    { "class p { nullable string a; list; };",  "{ ZKT_RET rc = p_a_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc; return zkt_w_string_put2( (zkt_objhandle_h) handle, 0, 0, 0, src, len, 0);\n}\n\n" },
    // sequences: class code 1, the compact offset in a compact class, else the normal one
    { "class p { char<4> a; sequences; };",                  "{ return zkt_w_seq_sequence_char(trans, 1, 0, seq, 4); }\n\n" },
    { "compact class p { string s; binary<4> a; sequences; };", "{ return zkt_w_seq_sequence_char(trans, 1, 2, seq, 4); }\n\n" },
    { "class p { string s; binary<4> a; sequences; };",         "{ return zkt_w_seq_sequence_char(trans, 1, 4, seq, 4); }\n\n" },
    // a direct struct's char<n>: offsets and size as text, equal, so one offset
    { "direct struct V { signed<4> y; char<3> c; };\nclass p { V v; list; };", "{ return zkt_w_chars_get( (zkt_objhandle_h) handle, fieldoffs(V_d_aligned_to_1, c), 0, dest, dest_size, fieldsz(V_d_aligned_to_1, c));\n}\n\n" },
    { "direct struct V { signed<4> y; char<3> c; };\nclass p { V v; list; };", "{ return zkt_w_chars_put( (zkt_objhandle_h)handle, fieldoffs(V_d_aligned_to_1, c), 0, src, len, fieldsz(V_d_aligned_to_1, c), 0);\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) EXPECT_NE(cFile(c.schema).find(c.text), std::string::npos) << c.schema << "\n" << c.text;
  // a string never takes a one-offset wrapper
  EXPECT_EQ(cFile("class p { string a; list; };").find("zkt_w_string_put("), std::string::npos);
}

// The prototypes: names padded to the class's function width, the fixed
// put's parameters ending in a blank, a line end ahead of every field.
TEST(Chars, Prototypes) {
  Options o;
  o.debug = true;
  Generated g("declare database d;\nclass p { char<4> a; nstring w; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const int width = g.schema().findClass("p")->m_maxFuncName;
  auto proto = [&](const std::string& name, const std::string& params) {
    return "ZKT_RET      " + name + std::string(width - name.size(), ' ') + params + ";\n";
  };
  const std::string expected = proto("p_a_get", " ( p *handle, /*OUT*/ char * dest, uint2 dest_size)") +
                               proto("p_a_put", " ( p *handle, const char * src, uint2 len) ") + "\n" +
                               proto("p_w_get", " ( p *handle, /*OUT*/ nchar_t * dest, uint2 dest_size, /*OUT*/ uint2 * len)") +
                               proto("p_w_size", " ( p *handle, /*OUT*/ uint2 *result)") +
                               proto("p_w_put", " ( p *handle, const nchar_t * src, uint2 len)");
  EXPECT_NE(Generated::text(g.gen.m_h).find(expected), std::string::npos) << Generated::text(g.gen.m_h);
}

TEST(Chars, CppMembers) {
  Options o;
  o.hpp = true;
  o.smartptr = true;
  Generated g("declare database d;\nclass p { char<4> a; string s; nchar<3> n; nstring w; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string hpp = Generated::text(g.gen.m_hpp);
  // clang-format off
  const char* const texts[] = {
    // the property struct stands ahead of the get's declaration
    "  struct { \n    p* handle_;\n"
    "    operator std::string() const {\n      std::string str_(4, '\\0');\n      ZKT_CPP_CHECK(p_a_get(handle_, &str_[0], 4));\n      return str_;\n    }\n"
    "    operator Char<4>() const {\n      Char<4> chars_;\n      ZKT_CPP_CHECK(p_a_get(handle_, chars_.body, 4));\n      return chars_;\n    }\n"
    "    std::string const& operator=(std::string const& str_) {\n      ZKT_CPP_CHECK(p_a_put(handle_, str_.data(), (uint2)str_.size()));\n      return str_;\n    }\n"
    "    Char<4> const& operator=(Char<4> const& str_) {\n      ZKT_CPP_CHECK(p_a_put(handle_, str_.body, 4));\n      return str_;\n    }\n"
    "  } a;\n\n"
    "  ZKT_RET a_get(char * dest, uint2 dest_size);\n"
    "  ZKT_RET a_put( const char * src, uint2 len );\n",
    "inline  ZKT_RET p::a_get(char * dest, uint2 dest_size)\n{ ZKT_RET ret_ = d::p_a_get(this,dest,dest_size); return ret_; \n}\n\n",
    "inline  ZKT_RET p::a_put( const char * src, uint2 len )\n{ ZKT_RET ret_ = d::p_a_put(this,src, len); return ret_; \n}\n\n",
    // a string's property struct comes after its size
    "  ZKT_RET s_get( char * dest, uint2 dest_size, uint2 & len);\n"
    "  ZKT_RET s_size(uint2 &result);\n"
    "  struct { \n    p* handle_;\n    operator std::string() const {\n      std::string str_;\n      uint2 len_;\n"
    "      ZKT_CPP_CHECK(p_s_size(handle_, &len_));\n      str_.resize(len_);\n"
    "      ZKT_CPP_CHECK(p_s_get(handle_, &str_[0], len_, &len_));\n      return str_;\n    }\n"
    "    std::string const& operator=(std::string const& str_) {\n      ZKT_CPP_CHECK(p_s_put(handle_, str_.data(), (uint2)str_.size()));\n      return str_;\n    }\n"
    "  } s;\n\n"
    "  ZKT_RET s_put(const char * src, uint2 len);\n",
    "inline  ZKT_RET p::s_get( char * dest, uint2 dest_size, uint2 & len)\n{ ZKT_RET ret_ = d::p_s_get(this, dest, dest_size, &len); return ret_; \n}\n\n",
    "inline  ZKT_RET p::s_size(uint2 &result)\n{ ZKT_RET ret_ = d::p_s_size(this, &result); return ret_;\n}\n\n",
    "inline  ZKT_RET p::s_put(const char * src, uint2 len)\n{ ZKT_RET ret_ = d::p_s_put(this,src,len); return ret_; \n} \n\n",
    // wide characters: no property struct
    "  ZKT_RET n_get(nchar_t * dest, uint2 dest_size);\n  ZKT_RET n_put( const nchar_t * src, uint2 len );\n",
    "  ZKT_RET w_get( nchar_t * dest, uint2 dest_size, uint2 & len);\n  ZKT_RET w_size(uint2 &result);\n  ZKT_RET w_put(const nchar_t * src, uint2 len);\n",
    "  p() {\n    a.handle_ = this;\n    s.handle_ = this;\n  }\n\n",
  };
  // clang-format on
  for (const char* t : texts) EXPECT_NE(hpp.find(t), std::string::npos) << t;
}

// The sequence's declaration has a parameter that its definition lacks:
// intended.
TEST(Chars, SequenceMember) {
  Options o;
  o.hpp = true;
  Generated g("declare database d;\nclass p { char<4> a; sequences; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string hpp = Generated::text(g.gen.m_hpp);
  EXPECT_NE(hpp.find("static Sequence< Char<4> > a_sequence(zkt_trans_h trans, zkt_seq_iterator_h seq);\n"),
            std::string::npos);
  EXPECT_NE(hpp.find("inline Sequence< Char<4> > p::a_sequence(zkt_trans_h trans)\n{ Sequence< Char<4> > seq; "
                     "ZKT_CPP_CHECK(d::p_a_sequence(trans, seq.iter)); return seq; }\n\n"),
            std::string::npos);
}

// A struct's fields are generated without a class: no event, no sequence.
TEST(Chars, StructFields) {
  const std::string c =
      cFile("struct S { char<5> x; string y; };\nclass p { S s; event<update> u; sequences; };");
  EXPECT_NE(c.find("{ return zkt_w_chars_put2( (zkt_objhandle_h)handle, 4, 2, 0, src, len, 5, 0);\n}\n\n"), std::string::npos) << c;
  EXPECT_NE(c.find("{ return zkt_w_string_put2( (zkt_objhandle_h) handle, 0, 0, 1, src, len, 0);\n}\n\n"), std::string::npos) << c;
  EXPECT_EQ(c.find("S_x_sequence"), std::string::npos);
}

}  // namespace

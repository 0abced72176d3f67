// Vector accessors: bodies by element kind, functions per kind, the guard asymmetry, no define and no event, the _size members, property structs, errors.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "genout_fn_util.h"
#include "genout_util.h"

namespace {

using gentest::Generated;
using gentest::Options;
using Names = std::vector<std::string>;

const char kHead[] =
    "declare database d;\nenum color { red, green };\nstruct S5 { unsigned<1> a; unsigned<4> b; };\n"
    "struct K { unsigned<4> id; };\ndeclare oid K[4];\nclass q { oid; signed<4> z; list; };\n";

std::string cFile(const std::string& schema) { return gentest::debugCFile(kHead + schema); }

// One field alone in class p, with the class's update event that no vector
// accessor passes: {H} is "(zkt_objhandle_h)handle, 0, 0, 0".
TEST(Vectors, BodiesByKind) {
  struct Case {
    const char* type;  // of the elements of vector v
    const char* text;  // a body, from its opening brace
  };
  // clang-format off
  const Case cases[] = {
    { "S5",           "{ return zkt_w_vector_size_get2( (zkt_objhandle_h)handle, 0, 0, 0, result);\n}\n\n" },
    // struct: no size on _at, the unaligned sizes and alignments on _put
    { "S5",           "{ return zkt_w_v_struct_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, (zkt_objhandle_h)h, index);\n}\n\n" },
    { "S5",           "{ return zkt_w_v_struct_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size, 0 );\n}\n\n" },
    { "S5",           "{ return zkt_w_v_struct_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, (zkt_objhandle_h)h, index, 5, 5, 4, 4, 0 );\n}\n\n" },
    { "S5",           "{ return zkt_w_v_struct_e_erase2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0 );\n}\n\n" },
    { "color",        "{{ uint1 temp; ZKT_RET rc = zkt_w_v_simple_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 1, &temp);\n  *result = (color) temp; return rc; }\n}\n\n" },
    { "color",        "{ return zkt_w_v_simple_e_getrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 1, num, dest, 1 );\n}\n\n" },
    { "color",        "{{ uint1 temp = (uint1) value; \n  return zkt_w_v_simple_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 1, 0, & temp); }\n}\n\n" },
    { "color",        "{ return zkt_w_v_simple_e_putrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 1, num, 0, src, 1 );\n}\n\n" },
    { "boolean",      "{ return zkt_w_v_bit_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, result);\n}\n\n" },
    { "boolean",      "{ return zkt_w_v_bit_e_getrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, num, dest );\n}\n\n" },
    // no size and no {idx}
    { "boolean",      "{ return zkt_w_v_bit_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size );\n}\n\n" },
    { "boolean",      "{ return zkt_w_v_bit_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0, & value);\n}\n\n" },
    { "boolean",      "{ return zkt_w_v_bit_e_putrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, num, 0, src );\n}\n\n" },
    { "double",       "{ return zkt_w_v_simple_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 8, result);\n}\n\n" },
    { "double",       "{ return zkt_w_v_simple_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size, 8, 0 );\n}\n\n" },
    { "double",       "{ return zkt_w_v_simple_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 8, 0, & value);\n}\n\n" },
    { "char<4>",      "{ return zkt_w_v_chars_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, dest, dest_size );\n}\n\n" },
    { "char<4>",      "{ return zkt_w_v_chars_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size, 4, 0 );\n}\n\n" },
    { "char<4>",      "{ return zkt_w_v_chars_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, src, len, 0 );\n}\n\n" },
    { "nchar<3>",     "{ return zkt_w_v_nchars_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size, 6, 0 );\n}\n\n" },
    { "nchar<3>",     "{ return zkt_w_v_nchars_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 6, src, len, 0 );\n}\n\n" },
    { "string",       "{ return zkt_w_v_string_e_get_len2( (zkt_objhandle_h)handle, 0, 0, 0, index, retlen);\n}\n\n" },
    { "string",       "{ return zkt_w_v_string_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, dest, dest_size, retlen);\n}\n\n" },
    // "size," without a blank
    { "string",       "{ return zkt_w_v_string_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size,0 );\n}\n\n" },
    { "string",       "{ return zkt_w_v_string_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, value, len, 0);\n}\n\n" },
    { "string",       "{ return zkt_w_v_string_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0, 0, 0);\n}\n\n" },
    { "nstring",      "{ return zkt_w_v_nstring_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size, 0 );\n}\n\n" },
    { "ref<q>",       "{ return zkt_w_v_chars_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, (char*)result, sizeof(*result));\n}\n\n" },
    { "ref<q>",       "{ return zkt_w_v_chars_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size, 4, 0);\n}\n\n" },
    { "ref<q>",       "{ return zkt_w_v_chars_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, (const char*)src, sizeof(*src), 0 );\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    const std::string text = cFile(std::string("class p { vector<") + c.type + "> v; list; event<update> u; };");
    EXPECT_NE(text.find(c.text), std::string::npos) << c.type << "\n" << c.text;
  }
}

// Writing an element checks the indicator like a read; only _alloc sets it.
TEST(Vectors, GuardAsymmetry) {
  const std::string get =
      "{ uint1 indicator; ZKT_RET rc = p_v_indicator_get(handle, &indicator); if (rc != ZKT_S_OK) return rc; else if "
      "(!indicator) return ZKT_S_NULL_VALUE;";
  const std::string put = "{ ZKT_RET rc = p_v_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc;";
  const std::string c = cFile("class p { nullable vector<signed<4>> v; tree<v> tv; };");
  // clang-format off
  const std::string texts[] = {
    get + " return zkt_w_vector_size_get2( (zkt_objhandle_h)handle, 0, 0, 0, result);\n}\n\n",
    put + " return zkt_w_v_simple_size_put2( (zkt_objhandle_h)handle, 0, 0, 0, size, 4, 1 );\n}\n\n",
    get + " return zkt_w_v_simple_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, 1, & value);\n}\n\n",
    get + " return zkt_w_v_simple_e_putrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 4, num, 1, src, 0 );\n}\n\n",
  };
  // clang-format on
  for (const std::string& t : texts) EXPECT_NE(c.find(t), std::string::npos) << t;
  const std::string s = cFile("class p { nullable vector<string> v; list; };");
  EXPECT_NE(s.find(get + " return zkt_w_v_string_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0, 0, 0);\n}\n\n"),
            std::string::npos);
}

TEST(Vectors, FunctionsPerKind) {
  struct Case {
    const char* field;
    Names functions;  // of p_a, in order
  };
  // clang-format off
  const Case cases[] = {
    { "S5",         { "p_a_size", "p_a_at", "p_a_alloc", "p_a_put", "p_a_erase" } },
    { "signed<4>",  { "p_a_size", "p_a_at", "p_a_get_range", "p_a_alloc", "p_a_put", "p_a_put_range" } },
    { "boolean",    { "p_a_size", "p_a_at", "p_a_get_range", "p_a_alloc", "p_a_put", "p_a_put_range" } },
    { "char<4>",    { "p_a_size", "p_a_at", "p_a_alloc", "p_a_put" } },
    { "binary<4>",  { "p_a_size", "p_a_at", "p_a_alloc", "p_a_put" } },
    { "string",     { "p_a_size", "p_a_at_len", "p_a_at", "p_a_alloc", "p_a_put", "p_a_erase" } },
    { "varbinary",  { "p_a_size", "p_a_at_len", "p_a_at", "p_a_alloc", "p_a_put", "p_a_erase" } },
    { "ref<q>",     { "p_a_size", "p_a_at", "p_a_alloc", "p_a_put" } },
    { "nchar<3>",   { "p_a_size", "p_a_at", "p_a_alloc", "p_a_put" } },
    { "nstring",    { "p_a_size", "p_a_at_len", "p_a_at", "p_a_alloc", "p_a_put", "p_a_erase" } },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o;
    o.debug = true;
    Generated g(kHead + std::string("class p { vector<") + c.field + "> a; list; };", o);
    ASSERT_TRUE(g.run()) << g.msg;
    const std::string h = Generated::text(g.gen.m_h);
    EXPECT_EQ(gentest::functionsOf(h, "p_a"), c.functions) << c.field;
    EXPECT_EQ(h.find("p_a_length"), std::string::npos) << c.field;
  }
}

TEST(Vectors, CppMembers) {
  Options o;
  o.hpp = true;
  o.smartptr = true;
  Generated g(std::string(kHead) +
                  "class p { vector<S5> s; vector<signed<4>> i; vector<char<4>> ch; vector<string> st; vector<ref<q>> r; "
                  "vector<nstring> ns; list; };",
              o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string hpp = Generated::text(g.gen.m_hpp), tail = Generated::text(g.gen.m_hpp_tail);
  // clang-format off
  const char* const decls[] = {
    "  ZKT_RET s_size(uint2 &result);\n",
    "  ZKT_RET i_size(uint2 & result); \n",
    "  ZKT_RET ch_size(uint2 & result ); \n",
    "  ZKT_RET r_size(uint2 & result ); \n",
    "  ZKT_RET ns_size(uint2 &result); \n",
    "  ZKT_RET s_alloc(uint2 size);\n",
    "  ZKT_RET s_erase(uint2 index);\n",
    // simple: after _get_range
    "  ZKT_RET i_get_range(uint2 start_index, uint2 num, int4 *dest );\n"
    "  struct { \n    p* handle_;\n"
    "    operator std::vector<int4>() const {\n      std::vector<int4> vec_;\n      uint2 len_;\n      ZKT_CPP_CHECK(p_i_size(handle_, &len_));\n      vec_.resize(len_);\n      ZKT_CPP_CHECK(p_i_get_range(handle_, 0, len_, (int4*)&vec_[0]));\n      return vec_;\n    }\n"
    "    std::vector<int4> const& operator=(std::vector<int4> const& vec_) {\n      ZKT_CPP_CHECK(p_i_alloc(handle_, (uint2)vec_.size()));\n      ZKT_CPP_CHECK(p_i_put_range(handle_, 0, (uint2)vec_.size(), (int4*)&vec_[0]));\n      return vec_;\n    }\n"
    "  } i;\n\n"
    "  ZKT_RET i_alloc(uint2 size);\n",
    // char<4>: after _alloc
    "  ZKT_RET ch_alloc(uint2 size);\n"
    "  struct { \n    p* handle_;\n"
    "    operator std::vector< Char<4> >() const {\n      std::vector< Char<4> > vec_;\n      uint2 len_;\n      ZKT_CPP_CHECK(p_ch_size(handle_, &len_));\n      vec_.resize(len_);\n      for (uint2 i_ = 0, n_= len_; i_ < n_; ++i_) { \n        ZKT_CPP_CHECK(p_ch_at(handle_, i_, &vec_[i_].body, 4));\n      }\n      return vec_;\n    }\n"
    "    std::vector< Char<4> > const& operator=(std::vector< Char<4> > const& vec_) {\n      uint2 len_ = (uint2)vec_.size();\n      ZKT_CPP_CHECK(p_ch_alloc(handle_, len_));\n      for (uint2 i_ = 0; i_ < len_; ++i_) { \n          ZKT_CPP_CHECK(p_ch_put(handle_, i_, &vec_[i_].body, 4));\n      }\n      return vec_;\n    }\n"
    "  } ch;\n\n"
    "  ZKT_RET ch_put(uint2 index, const char * src, uint2 len);\n",
    // string: after _size
    "  ZKT_RET st_size(uint2 &result); \n"
    "  struct { \n    p* handle_;\n"
    "    operator std::vector<std::string>() const {\n      std::vector<std::string> vec_;\n      uint2 len_;\n      ZKT_CPP_CHECK(p_st_size(handle_, &len_));\n      vec_.resize(len_);\n      for (uint2 i_ = 0, n_= len_; i_ < n_; ++i_) { \n        ZKT_CPP_CHECK(p_st_at_len(handle_, i_, &len_));\n        vec_[i_].resize(len_);\n        ZKT_CPP_CHECK(p_st_at(handle_, i_, &vec_[i_][0], len_, &len_));\n      }\n      return vec_;\n    }\n"
    "    std::vector<std::string> const& operator=(std::vector<std::string> const& vec_) {\n      uint2 len_ = (uint2)vec_.size();\n      ZKT_CPP_CHECK(p_st_alloc(handle_, len_));\n      for (uint2 i_ = 0; i_ < len_; ++i_) { \n          ZKT_CPP_CHECK(p_st_put(handle_, i_, &vec_[i_][0], (uint2)vec_[i_].size()));\n      }\n      return vec_;\n    }\n"
    "  } st;\n\n"
    "  ZKT_RET st_at_len(uint2 index, uint2 &retlen);\n",
  };
  const char* const defs[] = {
    "inline  ZKT_RET p::s_size(uint2 &result) \n{ ZKT_RET ret_ = d::p_s_size(this, &result); return ret_;\n}\n\n",
    "inline  ZKT_RET p::i_size(uint2 & result) \n{ ZKT_RET ret_ = d::p_i_size(this, &result); return ret_;\n}\n\n",
    "inline ZKT_RET p::ch_size(uint2 & result) \n{ ZKT_RET ret_ = d::p_ch_size(this, &result); return ret_;\n}\n\n",
    "inline ZKT_RET p::r_size(uint2 & result) \n{ ZKT_RET ret_ = d::p_r_size(this, &result); return ret_;\n}\n\n",
    // one line end after the string family's definition
    "inline  ZKT_RET p::ns_size(uint2 &result) \n{ ZKT_RET ret_ = d::p_ns_size(this, &result); return ret_;\n}\ninline  ZKT_RET p::ns_at_len(",
    "inline  ZKT_RET p::s_alloc(uint2 size)\n{ ZKT_RET ret_ = d::p_s_alloc(this, size); return ret_; \n}\n\n",
    "inline  ZKT_RET p::s_erase(uint2 index)\n{ ZKT_RET ret_ = d::p_s_erase(this, index); return ret_; \n}\n\n",
    "inline  ZKT_RET p::r_at(uint2 index, d_oid & result)\n{ ZKT_RET ret_ = d::p_r_at(this, index, &result); return ret_; \n}\n\n",
  };
  // clang-format on
  for (const char* t : decls) EXPECT_NE(hpp.find(t), std::string::npos) << t;
  for (const char* t : defs) EXPECT_NE(tail.find(t), std::string::npos) << t;
}

TEST(Vectors, Errors) {
  Generated g("declare database d;\nclass p { vector<blob> b; list; };");
  EXPECT_FALSE(g.run());
  EXPECT_EQ(g.msg, "Blob cannot be element of a vector");
}

}  // namespace

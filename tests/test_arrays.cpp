// Array accessors: bodies by element kind and case, functions per kind, guards, events, C++ members, property structs, the updated bitmap, the length define, errors and the size panic.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "genout_fn_util.h"
#include "genout_util.h"
#include "proc_util.h"

namespace {

using gentest::Generated;
using gentest::Options;
using Names = std::vector<std::string>;

const char kHead[] =
    "declare database d;\nenum color { red, green };\nstruct S5 { unsigned<1> a; unsigned<4> b; };\n"
    "struct K { unsigned<4> id; };\ndeclare oid K[4];\nclass q { oid; signed<4> z; list; };\n";

// The C file of a debug compile: it holds the bodies.
std::string cFile(const std::string& schema, Options o = Options()) {
  return gentest::debugCFile(kHead + schema, o);
}

// One field alone in class p: offsets 0 in both layouts, field number 0, so
// {H} is "(zkt_objhandle_h)handle, 0, 0, 0".
TEST(Arrays, BodiesByKindAndCase) {
  struct Case {
    const char* schema;
    const char* text;  // a body, from its opening brace
  };
  // clang-format off
  const Case cases[] = {
    // struct of size 5 aligned 4: sizes aligned to 8
    { "class p { S5 s[2]; list; };", "{ return zkt_w_va_struct_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, (zkt_objhandle_h)h, index, 8, 8, 2);\n}\n\n" },
    { "class p { S5 s[2]; list; };", "{ return zkt_w_va_struct_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, (zkt_objhandle_h)h, index, 8, 8, 0, 2);\n}\n\n" },
    // enum: read into the stored width and cast
    { "class p { color e[3]; list; };", "{{ uint1 temp; ZKT_RET rc = zkt_w_va_simple_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 1, &temp, 3);\n  *result = (color) temp; return rc; }\n}\n\n" },
    { "class p { color e[3]; list; };", "{ return zkt_w_va_simple_e_getrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 1, num, dest, 3, 1);\n}\n\n" },
    { "class p { color e[3]; list; };", "{{ uint1 temp = (uint1) value;\n  return zkt_w_va_simple_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 1, 0, &temp, 3); }\n}\n\n" },
    { "class p { color e[3]; list; };", "{ return zkt_w_va_simple_e_putrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 1, num, 0, src, 3, 1);\n}\n\n" },
    // boolean with the class's update event: only the two puts pass it
    { "class p { boolean b[4]; list; event<update> u; };", "{ return zkt_w_va_bit_e_getrange2( (zkt_objhandle_h)handle, 0, 0, 0, 0, 4,result,4 );\n}\n\n" },
    { "class p { boolean b[4]; list; event<update> u; };", "{ return zkt_w_va_bit_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, result, 4);\n}\n\n" },
    { "class p { boolean b[4]; list; event<update> u; };", "{ return zkt_w_va_bit_e_getrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, num, dest, 4);\n}\n\n" },
    { "class p { boolean b[4]; list; event<update> u; };", "{ return zkt_w_va_bit_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0, &value, 4, 0);\n}\n\n" },
    { "class p { boolean b[4]; list; event<update> u; };", "{ return zkt_w_va_bit_e_putrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, num, 0, src, 4, 0);\n}\n\n" },
    // other element types drop the event; indexed
    { "class p { signed<4> i[3]; list; event<update> u; };", "{ return zkt_w_va_simple_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, result, 3);\n}\n\n" },
    { "class p { signed<4> i[3]; list; event<update> u; };", "{ return zkt_w_va_simple_e_getrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 4, num, dest, 3, 0);\n}\n\n" },
    { "class p { signed<4> i[3]; list; event<update> u; };", "{ return zkt_w_va_simple_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, 0, &value, 3);\n}\n\n" },
    { "class p { signed<4> i[3]; tree<i> ti; };", "{ return zkt_w_va_simple_e_putrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 4, num, 1, src, 3, 0);\n}\n\n" },
    // a direct struct's arrays go as bytes
    { "direct struct V { signed<2> ys[3]; };\nclass p { V v; list; };", "{ return zkt_w_va_chars_e_get2( (zkt_objhandle_h)handle, fieldoffs(V_d_aligned_to_1, ys), fieldoffs(V_d_aligned_to_1, ys), 0, index, 2, (char*)result, sizeof(*result), 3);\n}\n\n" },
    { "direct struct V { signed<2> ys[3]; };\nclass p { V v; list; };", "{ return zkt_w_va_simple_e_getrange2( (zkt_objhandle_h)handle, fieldoffs(V_d_aligned_to_1, ys), fieldoffs(V_d_aligned_to_1, ys), 0, start_index, 1, num*sizeof(*dest), dest, 3, 0);\n}\n\n" },
    { "direct struct V { signed<2> ys[3]; };\nclass p { V v; list; };", "{ return zkt_w_va_chars_e_put2( (zkt_objhandle_h)handle, fieldoffs(V_d_aligned_to_1, ys), fieldoffs(V_d_aligned_to_1, ys), 0, index, 2, (char*)&value, sizeof(value), 0, 3);\n}\n\n" },
    // "{n},  0" with two blanks
    { "direct struct V { signed<2> ys[3]; };\nclass p { V v; list; };", "{ return zkt_w_va_simple_e_putrange2( (zkt_objhandle_h)handle, fieldoffs(V_d_aligned_to_1, ys), fieldoffs(V_d_aligned_to_1, ys), 0, start_index, 1, num*sizeof(*src), 0, src, 3,  0);\n}\n\n" },
    // an enum of a direct struct: result passes uncast
    { "direct struct V { color es[2]; };\nclass p { V v; list; };", "{ return zkt_w_va_chars_e_get2( (zkt_objhandle_h)handle, fieldoffs(V_d_aligned_to_1, es), fieldoffs(V_d_aligned_to_1, es), 0, index, 1, result, sizeof(*result), 2);\n}\n\n" },
    // fixed and variable characters
    { "class p { char<4> ch[2]; list; };", "{ return zkt_w_va_chars_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, dest, dest_size, 2);\n}\n\n" },
    { "class p { char<4> ch[2]; list; };", "{ return zkt_w_va_chars_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, src, len, 0, 2);\n}\n\n" },
    { "class p { nchar<3> nc[2]; list; };", "{ return zkt_w_va_nchars_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 6, dest, dest_size, 2);\n}\n\n" },
    { "class p { string st[2]; list; };", "{ return zkt_w_va_string_e_get_len2( (zkt_objhandle_h)handle, 0, 0, 0, index, retlen, 2);\n}\n\n" },
    { "class p { string st[2]; list; };", "{ return zkt_w_va_string_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, dest, dest_size, retlen, 2);\n}\n\n" },
    { "class p { string st[2]; list; };", "{ return zkt_w_va_string_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, value, len, 0, 2);\n}\n\n" },
    { "class p { string st[2]; list; };", "{ return zkt_w_va_string_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0, 0, 0, 2);\n}\n\n" },
    { "class p { nstring ns[2]; list; };", "{ return zkt_w_va_nstring_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0, 0, 0, 2);\n}\n\n" },
    // references
    { "class p { ref<q> r[2]; list; };", "{ return zkt_w_va_chars_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, (char*)result, sizeof(*result), 2);\n}\n\n" },
    { "class p { ref<q> r[2]; list; };", "{ return zkt_w_va_chars_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, (const char*)src, sizeof(*src), 0, 2);\n}\n\n" },
    // guards: get on the reads, put on _put, _put_range and _erase
    { "class p { nullable signed<4> n[3]; list; };", "{ uint1 indicator; ZKT_RET rc = p_n_indicator_get(handle, &indicator); if (rc != ZKT_S_OK) return rc; else if (!indicator) return ZKT_S_NULL_VALUE; return zkt_w_va_simple_e_getrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 4, num, dest, 3, 0);\n}\n\n" },
    { "class p { nullable signed<4> n[3]; list; };", "{ ZKT_RET rc = p_n_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc; return zkt_w_va_simple_e_putrange2( (zkt_objhandle_h)handle, 0, 0, 0, start_index, 4, num, 0, src, 3, 0);\n}\n\n" },
    { "class p { nullable string n[3]; list; };", "{ ZKT_RET rc = p_n_indicator_put(handle, 1); if (rc != ZKT_S_OK) return rc; return zkt_w_va_string_e_put2( (zkt_objhandle_h)handle, 0, 0, 0, index, 0, 0, 0, 3);\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) EXPECT_NE(cFile(c.schema).find(c.text), std::string::npos) << c.schema << "\n" << c.text;
}

TEST(Arrays, FunctionsPerKind) {
  struct Case {
    const char* field;
    Names functions;  // of p_a, in order
  };
  // clang-format off
  const Case cases[] = {
    { "S5 a[2];",       { "p_a_at", "p_a_put" } },
    { "signed<4> a[2];", { "p_a_at", "p_a_get_range", "p_a_put", "p_a_put_range" } },
    { "boolean a[2];",  { "p_a_get", "p_a_at", "p_a_get_range", "p_a_put", "p_a_put_range" } },
    { "char<4> a[2];",  { "p_a_at", "p_a_put" } },
    { "binary<4> a[2];", { "p_a_at", "p_a_put" } },
    { "nchar<4> a[2];", { "p_a_at", "p_a_put" } },
    { "string a[2];",   { "p_a_at_len", "p_a_at", "p_a_put", "p_a_erase" } },
    { "varbinary a[2];", { "p_a_at_len", "p_a_at", "p_a_put", "p_a_erase" } },
    { "nstring a[2];",  { "p_a_at_len", "p_a_at", "p_a_put", "p_a_erase" } },
    { "ref<q> a[2];",   { "p_a_at", "p_a_put" } },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o;
    o.debug = true;
    Generated g(kHead + std::string("class p { ") + c.field + " list; };", o);
    ASSERT_TRUE(g.run()) << g.msg;
    const std::string h = Generated::text(g.gen.m_h);
    EXPECT_EQ(gentest::functionsOf(h, "p_a"), c.functions) << c.field;
    EXPECT_NE(h.find("#define p_a_length 2\n"), std::string::npos) << c.field;
  }
}

TEST(Arrays, CppMembers) {
  Options o;
  o.hpp = true;
  o.smartptr = true;
  Generated g(std::string(kHead) + "class p { S5 s[2]; boolean b[4]; char<4> ch[2]; string st[2]; ref<q> r[2]; list; };",
              o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string hpp = Generated::text(g.gen.m_hpp);
  // clang-format off
  const char* const texts[] = {
    "  ZKT_RET s_at(uint2 index, /*OUT*/ S5 & s );\n",
    "inline  ZKT_RET p::s_at(uint2 index, /*OUT*/ S5 & s )\n{ ZKT_RET ret_ = d::p_s_at(this, index, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
    "inline  ZKT_RET p::s_put(uint2 index, S5 & s )\n{ ZKT_RET ret_ = d::p_s_put(this, index, &s ); s.set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
    // the boolean _get, simple _at and _put end without the blank
    "inline  ZKT_RET p::b_get(uint1 &result)\n{ ZKT_RET ret_ = d::p_b_get(this, &result); return ret_;\n}\n\n",
    "inline  ZKT_RET p::b_at(uint2 index, uint1 &result)\n{ ZKT_RET ret_ = d::p_b_at(this, index, &result); return ret_;\n}\n\n",
    "inline  ZKT_RET p::b_put(uint2 index, uint1 value )\n{ ZKT_RET ret_ = d::p_b_put(this, index, value); return ret_;\n}\n\n",
    "inline  ZKT_RET p::b_get_range(uint2 start_index, uint2 num, uint1 *dest )\n{ ZKT_RET ret_ = d::p_b_get_range(this, start_index, num, dest); return ret_; \n}\n\n",
    "inline  ZKT_RET p::b_put_range(uint2 start_index, uint2 num, const uint1 * src )\n{ ZKT_RET ret_ = d::p_b_put_range(this, start_index, num, src); return ret_; \n}\n\n",
    // the property struct follows the members of _get_range
    "  ZKT_RET b_get_range(uint2 start_index, uint2 num, uint1 *dest );\n"
    "  struct { \n    p* handle_;\n"
    "    operator std::vector<uint1>() const {\n      std::vector<uint1> arr_(4);\n      ZKT_CPP_CHECK(p_b_get_range(handle_, 0, 4, (uint1*)&arr_[0]));\n      return arr_;\n    }\n"
    "    std::vector<uint1> const& operator=(std::vector<uint1> const& arr_) {\n      ZKT_CPP_CHECK(p_b_put_range(handle_, 0, (uint2)arr_.size(), (uint1*)&arr_[0]));\n      return arr_;\n    }\n"
    "  } b;\n\n"
    "  ZKT_RET b_put(uint2 index, uint1 value );\n",
    // char<4>: after _at, with the stray ")" in the loop head
    "  ZKT_RET ch_at(uint2 index, char * dest, uint2 dest_size);\n"
    "  struct { \n    p* handle_;\n"
    "    operator std::vector< Char<4> >() const {\n      std::vector< Char<4> > vec_(2);\n      for (uint2 i_ = 0; i_ < 2); ++i_) { \n        ZKT_CPP_CHECK(p_ch_at(handle_, i_, &vec_[i_].body, 4));\n      }\n      return vec_;\n    }\n"
    "    std::vector< Char<4> > const& operator=(std::vector< Char<4> > const& vec_) {\n      uint2 len_ = (uint2)vec_.size();\n      for (uint2 i_ = 0; i_ < len_; ++i_) { \n          ZKT_CPP_CHECK(p_ch_put(handle_, i_, &vec_[i_].body, 4));\n      }\n      return vec_;\n    }\n"
    "  } ch;\n\n"
    "  ZKT_RET ch_put(uint2 index, const char * src, uint2 len);\n",
    // string: after _at_len
    "  ZKT_RET st_at_len(uint2 index, uint2 &retlen);\n"
    "  struct { \n    p* handle_;\n"
    "    operator std::vector<std::string>() const {\n      std::vector<std::string> vec_(2);\n      for (uint2 i_ = 0; i_ < 2; ++i_) { \n        uint2 len_;\n        ZKT_CPP_CHECK(p_st_at_len(handle_, i_, &len_));\n        vec_[i_].resize(len_);\n        ZKT_CPP_CHECK(p_st_at(handle_, i_, &vec_[i_][0], len_, &len_));\n      }\n      return vec_;\n    }\n"
    "    std::vector<std::string> const& operator=(std::vector<std::string> const& vec_) {\n      uint2 len_ = (uint2)vec_.size();\n      for (uint2 i_ = 0; i_ < len_; ++i_) { \n          ZKT_CPP_CHECK(p_st_put(handle_, i_, &vec_[i_][0], (uint2)vec_[i_].size()));\n      }\n      return vec_;\n    }\n"
    "  } st;\n\n"
    "  ZKT_RET st_at(uint2 index, char * dest, uint2 dest_size, uint2 &retlen);\n",
    "inline  ZKT_RET p::st_erase(uint2 index)\n{ ZKT_RET ret_ = d::p_st_erase(this, index); return ret_; \n}\n\n",
    "inline  ZKT_RET p::r_put(uint2 index, d_oid & src )\n{ ZKT_RET ret_ = d::p_r_put(this, index, & src); return ret_; \n}\n\n",
    "  p() {\n    b.handle_ = this;\n    ch.handle_ = this;\n    st.handle_ = this;\n  }\n\n",
  };
  // clang-format on
  for (const char* t : texts) EXPECT_NE(hpp.find(t), std::string::npos) << t;
}

// A class of fields s, updated_bitmap and the indicator of n: the scan's
// prototype is followed by one define per field in the header.
TEST(Arrays, UpdatedBitmap) {
  Options o;
  o.debug = true;
  o.hpp = true;
  Generated g("declare database d;\nclass p { signed<4> s; boolean updated_bitmap[]; nullable signed<2> n; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h), c = Generated::text(g.gen.m_c);
  EXPECT_EQ(gentest::functionsOf(h, "p_updated_bitmap"),
            (Names{"p_updated_bitmap_get", "p_updated_bitmap_at", "p_updated_bitmap_get_range",
                   "p_updated_bitmap_get_fldname"}));
  EXPECT_NE(h.find(" ( p *handle, uint2* index, char * dest, uint2 "
                   "dest_size,  uint2 * len );\n\n#define p_s_field_index 0\n#define p_updated_bitmap_field_index 1\n"
                   "#define p_n_field_index 2\n#define p_n_indicator_field_index 3\n"),
            std::string::npos)
      << h;
  EXPECT_NE(h.find("#define p_updated_bitmap_length 4\n"), std::string::npos);
  EXPECT_NE(c.find("{\nuint1 fld_data[64];\nuint1 fsz = p_updated_bitmap_length;\nuint1 j,i,pos;\nuint2 nel;\n"
                   "ZKT_RET rc = ZKT_S_OK;\npos = (*index)&(0xfff8); \nif (pos != (*index)){\n  j =  (*index)&7;\n}else j = 0;\n"
                   "while(pos<fsz){\n   nel = fsz;\n    if (nel>(sizeof(fld_data)/sizeof(fld_data[0]))){\n"
                   "        nel = (sizeof(fld_data)/sizeof(fld_data[0]));\n    }\n"
                   "    if ((rc = p_updated_bitmap_get_range(handle,pos,nel,fld_data)) != ZKT_S_OK){\n        return rc;\n    }\n"
                   "    for (i=0;i<(nel+7)/8;i++){\n        if (fld_data[i]){\n            uint1 v = fld_data[i];\n"
                   "            for (;j<8;j++){\n                if ((v>>j)&1){\n                    /*actually get fldname here*/\n"
                   "                    *index = pos+i*8+j+1;\n"
                   "                    return zkt_get_fieldname_by_fldno((zkt_objhandle_h)handle,(uint2)(*index-1),dest,dest_size,len);\n"
                   "                }\n            }\n       }\n       j = 0;\n    }\n    pos += nel;\n}\nreturn ZKT_S_NOTFOUND;\n}\n\n"),
            std::string::npos)
      << c;
  // the C++ _put is written though no C _put exists
  EXPECT_NE(Generated::text(g.gen.m_hpp_tail).find("inline  ZKT_RET p::updated_bitmap_put(uint2 index, uint1 value )"),
            std::string::npos);
}

// A bitmap declared far too small for the class's fields becomes an array of
// unsigned<1> and is scanned value by value.
TEST(Arrays, UpdatedBitmapTooSmall) {
  Options o;
  o.debug = true;
  std::string fields;  // 20 fields: one word of unsigned<1> is far too small for 21 bits
  for (int i = 0; i < 20; i++) fields += "signed<4> f" + std::to_string(i) + "; ";
  Generated g("declare database d;\nclass p { " + fields + "boolean updated_bitmap[1]; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string c = Generated::text(g.gen.m_c);
  EXPECT_NE(c.find("{\nuint1 fld_data;\nuint1 fsz;\nuint1 pos = 1;\nZKT_RET rc = ZKT_S_OK;\n"
                   "if ((rc = p_updated_bitmap_at(handle,0,&fsz)) != ZKT_S_OK){\n    return rc;\n}\n"
                   "pos = *index;  pos++;\nif (pos<=fsz){\n    if ((rc = p_updated_bitmap_at(handle,pos,&fld_data)) != ZKT_S_OK){\n"
                   "        return rc;\n    }\n    /*actually get fldname here*/\n    *index = pos;\n"
                   "    return zkt_get_fieldname_by_fldno((zkt_objhandle_h)handle,(uint2)(*index-1),dest,dest_size,len);\n"
                   "}else return ZKT_S_NOTFOUND;\nreturn rc;\n}\n\n"),
            std::string::npos)
      << c;
}

// The length define is written before the element type fails.
TEST(Arrays, DefineBeforeBlobError) {
  Generated g("declare database d;\nclass p { blob b[2]; list; };");
  EXPECT_FALSE(g.run());
  EXPECT_EQ(g.msg, "Blob cannot be element of an array");
  EXPECT_NE(Generated::text(g.gen.m_h).find("#define p_b_length 2\n"), std::string::npos);
}

// Element categories that no schema puts into an array or vector, set on the
// model: a sequence is an error, an auto id no case at all.
TEST(Arrays, CategoriesWithoutBranch) {
  for (bool vector : {false, true}) {
    Generated g(vector ? "declare database d;\nclass p { vector<signed<4>> a; list; };"
                       : "declare database d;\nclass p { signed<4> a[2]; list; };");
    ASSERT_TRUE(g.run()) << g.msg;
    Class& cls = *g.schema().findClass("p");
    TypeCategory& cat = cls.v_field[0].m_pstruct->m_category;
    cat = ET_SEQUENCE;
    EXPECT_FALSE(g.attempt([&] { g.gen.output(cls, &cls); }));
    EXPECT_EQ(g.msg, "Sequence cannot be element of an array") << vector;  // for a vector too: intended
    // a vector of direct structs has no case either
    for (TypeCategory other : {ET_AUTOID, ET_VERSION, vector ? ET_DIRECT_STRUCT : ET_AUTOOID}) {
      cat = other;
      try {
        g.gen.output(cls, &cls);
        ADD_FAILURE() << other;
      } catch (const char* e) {
        EXPECT_STREQ(e, "unknown case");
      }
    }
  }
}

// Through the binary: the error on the console, exit 255, the outputs removed;
// an empty array in a struct panics.
TEST(Arrays, ConsoleErrors) {
  struct Case {
    const char* schema;
    const char* err;
  };
  const Case cases[] = {
      {"class p { blob b[2]; list; };", "File x.sch; error: Blob cannot be element of an array\n\n"},
      {"class p { vector<blob> b; list; };", "File x.sch; error: Blob cannot be element of a vector\n\n"},
      {"struct S { signed<4> a; boolean updated_bitmap[]; };\nclass p { S s; list; };",
       "internal error: internal error, array size\n"},
  };
  for (const Case& c : cases) {
    const std::string dir = procutil::makeTempDir();
    procutil::writeFile(dir + "/x.sch", std::string("declare database d;\n") + c.schema);
    ProcResult r = procutil::runProgram({ZKT_COMPILER_PATH, "x.sch"}, dir);
    EXPECT_EQ(r.status, 255) << c.schema;
    EXPECT_EQ(r.err, c.err);
    if (r.err.find("internal") == std::string::npos) {
      EXPECT_FALSE(procutil::fileExists(dir + "/d.h")) << c.schema;
      EXPECT_FALSE(procutil::fileExists(dir + "/d.c")) << c.schema;
    }
    std::filesystem::remove_all(dir);
  }
}

// Where the functions land and how they are decorated, through the binary:
// release defines them inline in the header, -debug puts the prototypes in
// the header and the bodies in the C file; -wchar changes nothing.
TEST(Arrays, Placement) {
  const std::string schema = "declare database d;\nclass p { signed<4> a[2]; list; };\nclass r { vector<nstring> v; list; };\n";
  struct Case {
    Names opts;
    const char* header;  // a text of d.h
    const char* cfile;   // a text of d.c, or nullptr for none of the field's functions
  };
  // clang-format off
  const Case cases[] = {
    { {},                   "( p *handle, uint2 index, /*OUT*/ int4 *result)\n{ return zkt_w_va_simple_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, result, 2);\n}\n\n", nullptr },
    { {"-debug"},           "( p *handle, uint2 index, /*OUT*/ int4 *result);\n", "( p *handle, uint2 index, /*OUT*/ int4 *result)\n{ return zkt_w_va_simple_e_get2(" },
    { {"-debug", "-dll"},   "ZKT_RET      ZKT_DLL_SPEC p_a_at", "ZKT_DLL_SPEC p_a_at" },
    { {"-prefix"},          "( d_p *handle, uint2 index, /*OUT*/ int4 *result)\n{ return zkt_w_va_simple_e_get2(", nullptr },
    { {"-mergeable"},       "( p *handle, uint2 index, /*OUT*/ int4 *result)\n{ return zkt_w_va_simple_e_get2( (zkt_objhandle_h)handle, 0, 0, 0, index, 4, result, 2);\n}\n\n", nullptr },
  };
  // clang-format on
  const std::string dir = procutil::makeTempDir();
  procutil::writeFile(dir + "/x.sch", schema);
  int n = 0;
  auto compile = [&](const Names& opts) {
    const std::string out = dir + "/" + std::to_string(++n);
    std::filesystem::create_directory(out);
    Names argv{ZKT_COMPILER_PATH, "-o", out};
    argv.insert(argv.end(), opts.begin(), opts.end());
    argv.push_back(dir + "/x.sch");
    EXPECT_EQ(procutil::runProgram(argv).status, 0);
    return out;
  };
  for (const Case& c : cases) {
    const std::string out = compile(c.opts);
    const std::string h = gentest::maskTime(procutil::readFile(out + "/d.h"));
    const std::string cf = gentest::maskTime(procutil::readFile(out + "/d.c"));
    EXPECT_NE(h.find(c.header), std::string::npos) << c.header;
    if (c.cfile == nullptr)
      EXPECT_EQ(cf.find("_a_at"), std::string::npos);
    else
      EXPECT_NE(cf.find(c.cfile), std::string::npos) << c.cfile;
  }
  const std::string w2 = compile({"-wchar", "2", "-hpp"}), w4 = compile({"-wchar", "4", "-hpp"});
  for (const char* f : {"/d.h", "/d.c", "/d.hpp"})
    EXPECT_EQ(gentest::maskTime(procutil::readFile(w2 + f)), gentest::maskTime(procutil::readFile(w4 + f))) << f;
  std::filesystem::remove_all(dir);
}

}  // namespace

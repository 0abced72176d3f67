// Whole-struct functions: a direct struct's get_ptr, get_all and put_all in both packings, the {struct}_fixed view and its copy functions.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "genout_fn_util.h"
#include "genout_util.h"

namespace {

using gentest::Generated;
using gentest::Options;
using Names = std::vector<std::string>;

const char kHead[] = "declare database d;\n";

// The header and C file of schema in debug mode, or the failure.
struct Files {
  std::string h, c, hpp;
};
Files generate(const std::string& schema, bool hpp = false) {
  Options o;
  o.debug = true;
  o.hpp = hpp;
  Generated g(kHead + schema, o);
  if (!g.run()) return {"(failed: " + g.msg + ")", "", ""};
  return {Generated::text(g.gen.m_h), Generated::text(g.gen.m_c), Generated::text(g.gen.m_hpp)};
}

const char kUnpacked[] = "direct struct V { char<3> c; nchar<2> w; boolean b[9]; };\nclass p { V v; list; };";
const char kPacked[] = "packed direct struct V { char<3> c; nchar<2> w; boolean b[9]; };\nclass p { V v; list; };";

TEST(DirectStruct, Bodies) {
  struct Case {
    const char* schema;
    const char* text;  // a body in the C file
  };
  // clang-format off
  const Case cases[] = {
    { kUnpacked, "{\n return zkt_w_direct_struct_get_ptr( (zkt_objhandle_h) handle, (void**)dest, sizeof(V_d_aligned_to_1));\n}\n\n" },
    { kPacked,   "{\n return zkt_w_direct_struct_get_ptr( (zkt_objhandle_h) handle, (void**)dest, sizeof(V_d_aligned_to_1));\n}\n\n" },
    // unpacked: straight into dest and from src; "rc=" and "0, 0 ," intended
    { kUnpacked, "{\n  ZKT_RET rc= zkt_w_chars_get( (zkt_objhandle_h) handle, 0, 0 , (char*)dest, sizeof(*dest), sizeof(*dest));\n return rc;\n}\n\n" },
    { kUnpacked, "{\n  return zkt_w_chars_put( (zkt_objhandle_h) handle, 0, 0, (char*)src, sizeof(*src), sizeof(*src), 0);\n}\n\n" },
    // packed: through a local copy, member by member
    { kPacked,   "{\n V_d_aligned_to_1 src;\n ZKT_RET rc= zkt_w_chars_get( (zkt_objhandle_h) handle, 0, 0 , (char*)&src, sizeof(V_d_aligned_to_1), sizeof(V_d_aligned_to_1));\n"
                 " zkt_memcpy((char*)&dest->c, (char*)&src.c, sizeof(dest->c));\n"
                 " zkt_memcpy((char*)&dest->w, (char*)&src.w, sizeof(dest->w));\n"
                 " zkt_memcpy((char*)&dest->b, (char*)&src.b, sizeof(dest->b));\n"
                 " return rc;\n}\n\n" },
    { kPacked,   "{\n V_d_aligned_to_1 dest;\n"
                 " zkt_memcpy((char*)&dest.c, (char*)&src->c, sizeof(dest.c));\n"
                 " zkt_memcpy((char*)&dest.w, (char*)&src->w, sizeof(dest.w));\n"
                 " zkt_memcpy((char*)&dest.b, (char*)&src->b, sizeof(dest.b));\n"
                 " return zkt_w_chars_put( (zkt_objhandle_h) handle, 0, 0, (char*)&dest, sizeof(V_d_aligned_to_1), sizeof(V_d_aligned_to_1), 0);\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) EXPECT_NE(generate(c.schema).c.find(c.text), std::string::npos) << c.schema << "\n" << c.text;
}

TEST(DirectStruct, SignaturesAndMembers) {
  for (const char* schema : {kUnpacked, kPacked}) {
    const Files f = generate(schema, true);
    // ahead of the field accessors
    const Names fns = gentest::functionsOf(f.h, "V_");
    ASSERT_GE(fns.size(), 3u) << f.h;
    EXPECT_EQ(Names(fns.begin(), fns.begin() + 3), (Names{"V_get_ptr", "V_get_all", "V_put_all"}));
    for (const char* params : {" ( V *handle, /*OUT*/ V_d_aligned_to_1** dest);\n", " ( V *handle, /*OUT*/ V_d * dest);\n",
                               " ( V *handle, const V_d * src);\n"})
      EXPECT_NE(f.h.find(params), std::string::npos) << params;
    // clang-format off
    for (const char* text : {
           "  ZKT_RET get_all ( V_d * dest);\n",
           "inline  ZKT_RET V::get_all ( V_d * dest)\n{ ZKT_RET ret_ = d::V_get_all(this, dest); return ret_; \n}\n\n",
           "  ZKT_RET put_all ( V_d * src);\n",
           "inline  ZKT_RET V::put_all ( V_d * src)\n{ ZKT_RET ret_ = d::V_put_all(this, src); return ret_; \n}\n\n" })
      EXPECT_NE(f.hpp.find(text), std::string::npos) << text;
    // clang-format on
    EXPECT_EQ(f.hpp.find("get_ptr"), std::string::npos);  // no C++ member
  }
}

TEST(FixedStruct, Declarations) {
  struct Case {
    const char* schema;
    const char* text;  // in the header
  };
  // clang-format off
  const Case cases[] = {
    // eight booleans to the byte; strings and vectors are left out
    { "struct S { signed<4> a; char<4> c; nchar<2> n; boolean bits[9]; signed<2> arr[3]; string s; vector<signed<4>> v; };\n"
      "class p { S s; list; };",
      "typedef struct S_fixed_ {\n  int4 a;\n  char c[4];\n  nchar_t n[4 / sizeof(nchar_t)];\n  uint1 bits[2];\n  int2 arr[3];\n} S_fixed;\n\n" },
    // a direct struct's sizes are those of its packed type, in both packings
    { kUnpacked,
      "typedef struct V_fixed_ {\n  char c[fieldsz(V_d_aligned_to_1, c)];\n  nchar_t w[fieldsz(V_d_aligned_to_1, w) / sizeof(nchar_t)];\n  uint1 b[2];\n} V_fixed;\n\n" },
    { kPacked,
      "typedef struct V_fixed_ {\n  char c[fieldsz(V_d_aligned_to_1, c)];\n  nchar_t w[fieldsz(V_d_aligned_to_1, w) / sizeof(nchar_t)];\n  uint1 b[2];\n} V_fixed;\n\n" },
    // a member struct with a fixed view is in it; an optional one and a direct struct are not
    { "struct S { signed<4> a; };\nclass p { S s; optional S o; binary<2> b; list; };",
      "typedef struct p_fixed_ {\n  S_fixed s;\n  char b[2];\n} p_fixed;\n\n" },
    { kUnpacked, "typedef struct p_fixed_" },
  };
  // clang-format on
  for (const Case& c : cases) {
    const std::string h = generate(c.schema).h;
    if (std::string(c.text) == "typedef struct p_fixed_")
      EXPECT_EQ(h.find(c.text), std::string::npos) << c.schema;
    else
      EXPECT_NE(h.find(c.text), std::string::npos) << c.schema << "\n" << c.text;
  }
}

// Nothing counts: no type and no functions.
TEST(FixedStruct, AbsentWithoutFixedFields) {
  const Files f = generate("struct T { string s; vector<signed<4>> v; };\nclass p { T t; string q; list; };");
  EXPECT_EQ(f.h.find("T_fixed"), std::string::npos);
  EXPECT_EQ(f.h.find("p_fixed"), std::string::npos);
  EXPECT_EQ(f.c.find("_fixed_"), std::string::npos);
}

// A member struct declared behind the struct that holds it has no count yet
// when the holder is counted, but has one when the functions are written.
TEST(FixedStruct, MemberDeclaredLater) {
  const Files f = generate("struct A { signed<4> x; B b; };\nstruct B { signed<4> z; };\nclass p { A a; list; };");
  EXPECT_NE(f.h.find("typedef struct A_fixed_ {\n  int4 x;\n} A_fixed;\n\n"), std::string::npos);
  EXPECT_NE(f.c.find("(rc_ = A_b_read_handle(handle_, &b)) == ZKT_S_OK && ((rc_ = B_fixed_get(&b, &dst_->b))"),
            std::string::npos);
}

TEST(FixedStruct, Functions) {
  struct Case {
    const char* schema;
    const char* text;  // in the C file
  };
  // clang-format off
  const Case cases[] = {
    // a nullable field keeps going on a null; a struct member takes two clauses
    { "struct S2 { signed<4> a; };\nclass p { nullable signed<4> x; S2 s; char<4> k; signed<2> arr[3]; list; };",
      "{ ZKT_RET rc_ = ZKT_S_OK, has_nulls_ = ZKT_S_OK;\n  S2 s;\n  return\n"
      "    ((rc_ = p_x_get(handle_, &dst_->x)) == ZKT_S_OK || (has_nulls_ = rc_) == ZKT_S_NULL_VALUE) &&\n"
      "    (rc_ = p_s_read_handle(handle_, &s)) == ZKT_S_OK && ((rc_ = S2_fixed_get(&s, &dst_->s)) == ZKT_S_OK || (has_nulls_ = rc_) == ZKT_S_NULL_VALUE) &&\n"
      "    (rc_ = p_k_get(handle_, dst_->k, 4)) == ZKT_S_OK &&\n"
      "    (rc_ = p_arr_get_range(handle_, 0, 3, dst_->arr)) == ZKT_S_OK &&\n"
      "    (rc_ = p_x_indicator_get(handle_, &dst_->x_indicator)) == ZKT_S_OK\n"
      "  ? has_nulls_ : rc_;\n}\n\n" },
    // a clear indicator in the source marks the field null instead
    { "struct S2 { signed<4> a; };\nclass p { nullable signed<4> x; S2 s; char<4> k; signed<2> arr[3]; list; };",
      "{ ZKT_RET rc_;\n  S2 s;\n  return\n"
      "    (rc_ = !src_->x_indicator ? p_x_indicator_put(handle_, 0) : p_x_put(handle_, src_->x)) == ZKT_S_OK &&\n"
      "    (rc_ = p_s_write_handle(handle_, &s)) == ZKT_S_OK && (rc_ = S2_fixed_put(&s, &src_->s)) == ZKT_S_OK &&\n"
      "    (rc_ = p_k_put(handle_, src_->k, 4)) == ZKT_S_OK &&\n"
      "    (rc_ = p_arr_put_range(handle_, 0, 3, src_->arr)) == ZKT_S_OK &&\n"
      "    (rc_ = p_x_indicator_put(handle_, src_->x_indicator)) == ZKT_S_OK\n"
      "  ? ZKT_S_OK : rc_;\n}\n\n" },
    // the member struct's own functions
    { "struct S2 { signed<4> a; };\nclass p { S2 s; list; };",
      "{ ZKT_RET rc_ = ZKT_S_OK, has_nulls_ = ZKT_S_OK;\n  return\n    (rc_ = S2_a_get(handle_, &dst_->a)) == ZKT_S_OK\n  ? has_nulls_ : rc_;\n}\n\n" },
    // the bitmap is read but never written back
    { "class p { signed<4> a; boolean updated_bitmap[]; list; };",
      "{ ZKT_RET rc_;\n  return\n    (rc_ = p_a_put(handle_, src_->a)) == ZKT_S_OK\n  ? ZKT_S_OK : rc_;\n}\n\n" },
    { "class p { signed<4> a; boolean updated_bitmap[]; list; };",
      "    (rc_ = p_updated_bitmap_get_range(handle_, 0, " },
    // a class whose only fixed field is the bitmap gets a put without a
    // clause, which doesn't compile: intended
    { "class p { string s; boolean updated_bitmap[]; list; };",
      "{ ZKT_RET rc_;\n  return\n  ? ZKT_S_OK : rc_;\n}\n\n" },
    // nchar and binary take the size in bytes
    { "class p { nchar<3> n; binary<5> b; list; };",
      "    (rc_ = p_n_get(handle_, dst_->n, 6)) == ZKT_S_OK &&\n    (rc_ = p_b_get(handle_, dst_->b, 5)) == ZKT_S_OK\n" },
  };
  // clang-format on
  for (const Case& c : cases) EXPECT_NE(generate(c.schema).c.find(c.text), std::string::npos) << c.schema << "\n" << c.text;
}

TEST(FixedStruct, SignaturesWithoutCpp) {
  const Files f = generate("class p { signed<4> a; list; };", true);
  const Names fns = gentest::functionsOf(f.h, "p_fixed");
  EXPECT_EQ(fns, (Names{"p_fixed_get", "p_fixed_put"}));
  EXPECT_NE(f.h.find(" ( p *handle_, p_fixed* dst_ );\n"), std::string::npos);
  EXPECT_NE(f.h.find(" ( p *handle_, p_fixed const* src_ );\n"), std::string::npos);
  EXPECT_EQ(f.hpp.find("fixed"), std::string::npos);
}

}  // namespace

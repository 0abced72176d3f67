// Sequence accessors per element kind and order, their C++ members and warning; the top-N functions of unique keys.
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

struct Files {
  std::string h, c, hpp;
  std::vector<std::string> warnings;
};
Files generate(const std::string& schema, Options o = Options()) {
  Generated g(kHead + schema, o);
  if (!g.run()) return {"(failed: " + g.msg + ")", "", "", {}};
  return {Generated::text(g.gen.m_h), Generated::text(g.gen.m_c), Generated::text(g.gen.m_hpp), g.warnings};
}
Options debug() {
  Options o;
  o.debug = true;
  return o;
}

TEST(Sequences, FunctionsByOrder) {
  struct Case {
    const char* field;
    Names functions;  // of p_q, in order
  };
  // clang-format off
  const Names unordered = { "p_q_first", "p_q_last", "p_q_append", "p_q_append_nullable", "p_q_insert", "p_q_insert_nullable",
                            "p_q_delete", "p_q_count", "p_q_map", "p_q_subseq", "p_q_iterator", "p_q_from_cursor", "p_q_project", "p_q_store" };
  const Names ordered = { "p_q_first", "p_q_last", "p_q_append", "p_q_append_nullable", "p_q_insert", "p_q_insert_nullable",
                          "p_q_delete", "p_q_search", "p_q_join", "p_q_count", "p_q_map", "p_q_subseq", "p_q_iterator", "p_q_from_cursor",
                          "p_q_project", "p_q_store" };
  const Case cases[] = {
    { "sequence<signed<4>> q;",      unordered },
    { "sequence<signed<4> asc> q;",  ordered },
    { "sequence<datetime desc> q;",  ordered },
    { "sequence<char<8>> q;",        unordered },
  };
  // clang-format on
  for (const Case& c : cases) {
    const Files f = generate(std::string("class p { ") + c.field + " list; };", debug());
    EXPECT_EQ(gentest::functionsOf(f.h, "p_q"), c.functions) << c.field;
  }
}

// A class of the sequence alone: both offsets 0, field number 0, class code 1.
TEST(Sequences, Bodies) {
  struct Case {
    const char* field;
    const char* text;  // in the C file
    Options o;
  };
  Options mergeable = debug();
  mergeable.mergeable = true;
  // clang-format off
  const Case cases[] = {
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_first_int4((zkt_objhandle_h)handle, 0, 0, val); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_last_int4((zkt_objhandle_h)handle, 0, 0, val); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_append_int4((zkt_objhandle_h)handle, 0, 0, 0, vals, n_items, ZKT_SEQ_NO_ORDER, 0); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_append_int4((zkt_objhandle_h)handle, 0, 0, 0, vals, n_items, ZKT_SEQ_NO_ORDER, null_bitmap); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_insert_int4((zkt_objhandle_h)handle, 0, 0, 0, pos, vals, n_items, ZKT_SEQ_NO_ORDER, 0); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_delete_int4((zkt_objhandle_h)handle, 0, 0, 0, from, till, ZKT_SEQ_NO_ORDER); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_count((zkt_objhandle_h)handle, 0, 0, count); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_map_int4((zkt_objhandle_h)handle, 0, 0, dst_iterator, map_iterator); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_subseq_int4((zkt_objhandle_h)handle, 0, 0, iterator, from, till); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_subseq_int4((zkt_objhandle_h)handle, 0, 0, iterator, 0, ZKT_SEQ_INFINITY); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_from_cursor_int4(trans, 0, 0, 1, iterator, cursor); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_project_int4((zkt_objhandle_h)handle, 0, 0, dst, src); }\n\n", debug() },
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_store_int4((zkt_objhandle_h)handle, 0, 0, 0, src, ZKT_SEQ_NO_ORDER); }\n\n", debug() },
    { "sequence<signed<4> asc> q;", "{ return zkt_w_seq_search_int4((zkt_objhandle_h)handle, 0, 0, iterator, low, low_boundary, high, high_boundary, ZKT_SEQ_ASC_ORDER); }\n\n", debug() },
    { "sequence<signed<4> asc> q;", "{ return zkt_w_seq_join_int4((zkt_objhandle_h)handle, 0, 0, result, join_with, ZKT_SEQ_ASC_ORDER); }\n\n", debug() },
    // boolean: the element's C type
    { "sequence<boolean> q;", "{ return zkt_w_seq_first_uint1((zkt_objhandle_h)handle, 0, 0, val); }\n\n", debug() },
    // char<8>: no cast, the size last; _join takes none
    { "sequence<char<8> asc> q;", "{ return zkt_w_seq_first_char((zkt_objhandle_h)handle, 0, 0, val, 8); }\n\n", debug() },
    { "sequence<char<8> asc> q;", "{ return zkt_w_seq_append_char((zkt_objhandle_h)handle, 0, 0, 0, vals, n_items, ZKT_SEQ_ASC_ORDER, 8, 0); }\n\n", debug() },
    { "sequence<char<8> asc> q;", "{ return zkt_w_seq_search_char((zkt_objhandle_h)handle, 0, 0, iterator, low, low_boundary, high, high_boundary, ZKT_SEQ_ASC_ORDER, 8); }\n\n", debug() },
    { "sequence<char<8> asc> q;", "{ return zkt_w_seq_join_char((zkt_objhandle_h)handle, 0, 0, result, join_with, ZKT_SEQ_ASC_ORDER); }\n\n", debug() },
    { "sequence<char<8> asc> q;", "{ return zkt_w_seq_from_cursor_char(trans, 0, 0, 1, iterator, cursor, 8); }\n\n", debug() },
    // datetime: the type's name, no cast although it differs from the C type
    { "sequence<datetime desc> q;", "{ return zkt_w_seq_first_datetime((zkt_objhandle_h)handle, 0, 0, val); }\n\n", debug() },
    { "sequence<datetime desc> q;", "{ return zkt_w_seq_search_datetime((zkt_objhandle_h)handle, 0, 0, iterator, low, low_boundary, high, high_boundary, ZKT_SEQ_DESC_ORDER); }\n\n", debug() },
    // the class code behind the origin
    { "sequence<signed<4>> q;", "{ return zkt_w_seq_from_cursor_int4(trans, 0, 0, dict.class_code_origin + 1, iterator, cursor); }\n\n", mergeable },
  };
  // clang-format on
  for (const Case& c : cases)
    EXPECT_NE(generate(std::string("class p { ") + c.field + " list; };", c.o).c.find(c.text), std::string::npos)
        << c.field << "\n" << c.text;
}

// Under -prefix the type's name has the database name in front (unless it
// already starts with it, so the database here is not "d").
TEST(Sequences, PrefixedDatetime) {
  Options o = debug();
  o.prefix = true;
  Generated g("declare database db;\nclass p { sequence<datetime desc> q; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_NE(Generated::text(g.gen.m_c).find("{ return zkt_w_seq_first_db_datetime((zkt_objhandle_h)handle, 0, 0, val); }\n\n"),
            std::string::npos);
}

TEST(Sequences, StructElement) {
  const Files f = generate("struct E { signed<4> a; char<4> b; };\nclass p { sequence<E> q; list; };", debug());
  // clang-format off
  for (const char* text : {
         " (p *handle, E_fixed* val);\n",
         " (p *handle, E_fixed const* vals, zkt_size_t n_items);\n" })
    EXPECT_NE(f.h.find(text), std::string::npos) << text;
  for (const char* text : {
         "{ return zkt_w_seq_first_char((zkt_objhandle_h)handle, 0, 0, (char*)val, sizeof(E_fixed)); }\n\n",
         "{ return zkt_w_seq_append_char((zkt_objhandle_h)handle, 0, 0, 0, (char*)vals, n_items, ZKT_SEQ_NO_ORDER, sizeof(E_fixed), 0); }\n\n",
         "{ return zkt_w_seq_map_char((zkt_objhandle_h)handle, 0, 0, dst_iterator, map_iterator, sizeof(E_fixed)); }\n\n" })
    EXPECT_NE(f.c.find(text), std::string::npos) << text;
  // clang-format on
  EXPECT_TRUE(f.warnings.empty());
}

// A struct element above 32 bytes is warned about; the compile goes on.
TEST(Sequences, LargeStructElementWarns) {
  const Files f = generate("struct E { char<40> x; };\nclass p { sequence<E> q; list; };", debug());
  EXPECT_EQ(f.warnings, (std::vector<std::string>{"Size of sequence element is larger than ZKT_SEQ_MAX_CHAR_SIZE"}));
  EXPECT_NE(f.c.find("zkt_w_seq_first_char("), std::string::npos);
}

TEST(Sequences, CppMembers) {
  Options o;
  o.hpp = true;
  const std::string hpp = generate("class p { sequence<signed<4> asc> q; sequence<char<8>> z; list; };", o).hpp;
  // clang-format off
  const char* const texts[] = {
    "  ZKT_RET q_first(int4* val);\n",
    "inline  ZKT_RET p::q_first(int4* val)\n{ return d::p_q_first(this, val); }\n\n",
    "  ZKT_RET q_append(int4 const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap = NULL);\n",
    "inline  ZKT_RET p::q_append(int4 const* vals, zkt_size_t n_items, zkt_bitmap_word_t const* null_bitmap)\n{ return d::p_q_append_nullable(this, vals, n_items, null_bitmap); }\n\n",
    // _search and _join start with one blank
    "inline ZKT_RET p::q_search(Sequence<int4> &seq, int4 low, zkt_seq_boundary_kind_t low_boundary, int4 high, zkt_seq_boundary_kind_t high_boundary)\n{ return d::p_q_search(this, seq.iter, low, low_boundary, high, high_boundary); }\n\n",
    "inline ZKT_RET p::q_join(Sequence<zkt_seq_no_t>& result, Sequence<int4> const& joinWith)\n{ return d::p_q_join(this, result.iter, joinWith.iter); }\n\n",
    "inline  Sequence<int4> p::q_iterator()\n{ Sequence<int4> seq; ZKT_CPP_CHECK(d::p_q_iterator(this, seq.iter)); return seq; }\n\n",
    "  static ZKT_RET q_from_cursor(zkt_trans_h, Sequence<int4>& seq, zkt_cursor_h cursor);\n",
    "inline  ZKT_RET p::q_from_cursor(zkt_trans_h trans, Sequence<int4>& seq, zkt_cursor_h cursor)\n{ return d::p_q_from_cursor(trans, seq.iter, cursor); }\n\n",
    // the C++ element keeps its blanks
    "  Sequence< Char<8> > z_map(Sequence<zkt_seq_no_t> const& mapSeq);\n",
    "inline  Sequence< Char<8> > p::z_project(GenericSequence const& seq)\n{ Sequence< Char<8> > result; ZKT_CPP_CHECK(d::p_z_project(this, result.iter, seq.iter)); return result; }\n\n",
    "inline  ZKT_RET p::z_store(Sequence< Char<8> > const& src)\n{ return d::p_z_store(this, src.iter); }\n\n",
  };
  // clang-format on
  for (const char* t : texts) EXPECT_NE(hpp.find(t), std::string::npos) << t;
  EXPECT_EQ(hpp.find("  ZKT_RET q_append_nullable("), std::string::npos);  // only called
  EXPECT_EQ(hpp.find("  ZKT_RET q_insert_nullable("), std::string::npos);
}

// ---------------------------------------------------------------- top-N

const char kFromCursorProto[] = " ( zkt_trans_h t, zkt_cursor_h c, /*OUT*/ p *handle );\n";

size_t count(const std::string& text, const std::string& what) {
  size_t n = 0;
  for (size_t p = text.find(what); p != std::string::npos; p = text.find(what, p + 1)) n++;
  return n;
}

TEST(Top, WhichFields) {
  struct Case {
    const char* schema;
    Names tops;
  };
  // clang-format off
  const Case cases[] = {
    // plain scalar, autoid, fixed and variable characters: between _get and _put
    { "class p { signed<4> x; char<6> k; string v; nchar<3> n; nstring ns; sequence<signed<4>> q;\n"
      "  unique tree<x> ix; unique tree<k> ik; unique tree<v> iv; unique tree<n> in; unique tree<ns> ins; list; };",
      { "p_x_top", "p_k_top", "p_v_top", "p_n_top", "p_ns_top" } },
    { "class p { autoid[10]; signed<4> x; sequence<signed<4>> q; list; };", { "p_autoid_top" } },
    // not unique
    { "class p { signed<4> x; sequence<signed<4>> q; list; };", {} },
    { "class p { signed<4> x; sequence<signed<4>> q; tree<x> ix; };", {} },
    // sequences alone don't make a struct hold sequences
    { "class p { signed<4> x; unique tree<x> ix; sequences; };", {} },
  };
  // clang-format on
  for (const Case& c : cases) {
    Names tops;
    for (const std::string& n : gentest::functionNames(generate(c.schema, debug()).h))
      if (n.size() > 4 && n.compare(n.size() - 4, 4, "_top") == 0) tops.push_back(n);
    EXPECT_EQ(tops, c.tops) << c.schema;
  }
}

TEST(Top, PlacedBetweenGetAndPut) {
  const Names fns = gentest::functionsOf(
      generate("class p { signed<4> x; sequence<signed<4>> q; unique tree<x> ix; };", debug()).h, "p_x");
  EXPECT_EQ(fns, (Names{"p_x_get", "p_x_top", "p_x_put"}));
}

// Once per struct in release mode, never in debug mode. The class's own
// cursor function has the same prototype in debug mode and is defined in
// release mode, so the schemas with and without top-N are compared.
TEST(Top, FromCursorPrototype) {
  const char withTop[] = "class p { signed<4> x; char<6> k; sequence<signed<4>> q; unique tree<x> ix; unique tree<k> ik; };";
  const char without[] = "class p { signed<4> x; char<6> k; sequence<signed<4>> q; tree<x> ix; tree<k> ik; };";
  const std::string release = generate(withTop).h;
  EXPECT_EQ(count(release, kFromCursorProto), count(generate(without).h, kFromCursorProto) + 1);
  EXPECT_LT(release.find(kFromCursorProto), release.find("p_x_top"));
  EXPECT_EQ(count(generate(withTop, debug()).h, kFromCursorProto), count(generate(without, debug()).h, kFromCursorProto));
  Options hpp;
  hpp.hpp = true;
  EXPECT_EQ(count(generate(withTop, hpp).h, kFromCursorProto), count(generate(without, hpp).h, kFromCursorProto));
}

// The body shared by the variants, up to the move of the entries.
const std::string kTopHead =
    "{\n"
    "    ZKT_RET rc;\n"
    "    zkt_size_t max = *n;\n"
    "    zkt_size_t top = 0;\n"
    "    p handle;\n"
    "    double value;\n"
    "    do {\n"
    "        if (filter) { \n"
    "            switch (filter(t, cursor, ctx)) { \n"
    "              case ZKT_S_OK:\n"
    "                break;\n"
    "              case ZKT_S_NOTFOUND:\n"
    "                goto skip;\n"
    "              case ZKT_S_CURSOR_END:\n"
    "                *n = top;\n"
    "                zkt_cursor_close(t, cursor);\n"
    "                return ZKT_S_OK;\n"
    "              default:\n"
    "                return rc;\n"
    "            }\n"  // the switch and the if closed so that the text compiles
    "        }\n"
    "        rc = p_from_cursor(t, cursor, &handle);\n"
    "        if (rc != ZKT_S_OK) { \n"
    "            return rc;\n"
    "        }\n"
    "        rc = aggregate(t, &handle, &value, ctx);\n"
    "        if (rc == ZKT_S_NOTFOUND) { \n"
    "            goto skip;\n"
    "        } else if (rc != ZKT_S_OK) { \n"
    "            return rc;\n"
    "        }\n"
    "        if (top < max || aggregates[top-1] < value) { \n"
    "            zkt_size_t l = 0, r = top;\n";
const std::string kTopSearch =
    "            while (l < r) { \n"
    "                zkt_size_t m = (l + r) >> 1;\n"
    "                if (aggregates[m] > value) { \n"
    "                    l = m+1;\n"
    "                } else { \n"
    "                    r = m;\n"
    "                }\n"
    "            }\n"
    "            if (top < max) { \n"
    "                top += 1;\n";
const std::string kTopStore =
    "            if (rc != ZKT_S_OK) { \n"
    "                return rc;\n"
    "            }\n"
    "        }\n"
    "      skip:\n"
    "        rc = zkt_cursor_next(t, cursor);\n"
    "    } while (rc == ZKT_S_OK);\n";

TEST(Top, Bodies) {
  const std::string scalar =
      kTopHead + kTopSearch +
      "            }\n"
      "            zkt_memmove(&keys[r+1], &keys[r], (top-r-1)*sizeof(*keys));\n"
      "            zkt_memmove(&aggregates[r+1], &aggregates[r], (top-r-1)*sizeof(*aggregates));\n"
      "            aggregates[r] = value;\n"
      "            rc = p_x_get(&handle, &keys[r]);\n" +
      kTopStore +
      "    *n = top;\n"
      "    zkt_cursor_close(t, cursor);\n"
      "    return (rc == ZKT_S_CURSOR_END) ? ZKT_S_OK : rc;\n"
      "}\n\n";
  const std::string fixed =
      kTopHead + kTopSearch +
      "            }\n"
      "            zkt_memmove(keys[r+1], keys[r], (top-r-1)*sizeof(*keys));\n"
      "            zkt_memmove(&aggregates[r+1], &aggregates[r], (top-r-1)*sizeof(*aggregates));\n"
      "            aggregates[r] = value;\n"
      "            rc = p_k_get(&handle, keys[r], (uint2)sizeof(*keys));\n" +
      kTopStore +
      "    zkt_cursor_close(t, cursor);\n"
      "    *n = top;\n"
      "    return (rc == ZKT_S_CURSOR_END) ? ZKT_S_OK : rc;\n"
      "}\n\n";
  // "} else {" without the blank, intended
  const std::string var =
      kTopHead +
      "            uint2 len;\n"
      "            nchar_t* dst;\n" +
      kTopSearch +
      "                dst = buf;\n"
      "                buf += max_key_len;\n"
      "            } else {\n"
      "                dst = keys[top-1];\n"
      "            }\n"
      "            zkt_memmove(&keys[r+1], &keys[r], (top-r-1)*sizeof(*keys));\n"
      "            zkt_memmove(&aggregates[r+1], &aggregates[r], (top-r-1)*sizeof(*aggregates));\n"
      "            aggregates[r] = value;\n"
      "            keys[r] = dst;\n"
      "            rc = p_v_get(&handle, dst, max_key_len, &len);\n" +
      kTopStore +
      "    zkt_cursor_close(t, cursor);\n"
      "    *n = top;\n"
      "    return (rc == ZKT_S_CURSOR_END) ? ZKT_S_OK : rc;\n"
      "}\n\n";
  const Files f = generate(
      "class p { signed<4> x; char<6> k; nstring v; sequence<signed<4>> q; unique tree<x> ix; unique tree<k> ik;\n"
      "  unique tree<v> iv; };",
      debug());
  EXPECT_NE(f.c.find(scalar), std::string::npos) << scalar;
  EXPECT_NE(f.c.find(fixed), std::string::npos) << fixed;
  EXPECT_NE(f.c.find(var), std::string::npos) << var;
  // "/*INOUT*/" in the scalar signature, " (" and "/*IN-OUT*/" in the others
  // clang-format off
  for (const char* params : {
         "(zkt_trans_h t, zkt_cursor_h cursor, /*INOUT*/zkt_size_t* n, /*OUT*/int4* keys, /*OUT*/double* aggregates, ZKT_RET (*aggregate)(zkt_trans_h t, p* handle, /*OUT*/double* result, void* ctx), ZKT_RET (*filter)(zkt_trans_h t, zkt_cursor_h cursor, void* ctx), void* ctx);\n",
         " (zkt_trans_h t, zkt_cursor_h cursor, /*IN-OUT*/zkt_size_t* n, /*OUT*/char keys[][6], /*OUT*/double* aggregates, ZKT_RET (*aggregate)(zkt_trans_h t, p* handle, /*OUT*/double* result, void* ctx), ZKT_RET (*filter)(zkt_trans_h t, zkt_cursor_h cursor, void* ctx), void* ctx);\n",
         " (zkt_trans_h t, zkt_cursor_h cursor, /*IN-OUT*/zkt_size_t* n, /*OUT*/nchar_t** keys, uint2 max_key_len, nchar_t* buf, /*OUT*/double* aggregates, ZKT_RET (*aggregate)(zkt_trans_h t, p* handle, /*OUT*/double* result, void* ctx), ZKT_RET (*filter)(zkt_trans_h t, zkt_cursor_h cursor, void* ctx), void* ctx);\n" })
    EXPECT_NE(f.h.find(params), std::string::npos) << params;
  // clang-format on
}

}  // namespace

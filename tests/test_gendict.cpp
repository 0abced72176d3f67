// In-memory dictionary: records, layouts, initialisers and allocations as zkt_db_load_dictionary builds them.
#include <gtest/gtest.h>

#include "dict_util.h"

namespace {

using dicttest::Lib;

#define ASSERT_COMPILED(l) ASSERT_EQ((l).rc, 0) << ((l).msgs.empty() ? "" : (l).msgs.back().text)

zktcomp_options_t nosortOpts() {
  zktcomp_options_t o = zktcomp_options_t();
  o.nosort = 1;
  return o;
}

// One dynamic class (a fixed-size one would get a list index), nothing else:
// the head record and every block, in the order made.
TEST(MemoryDict, SmallestDictionaryAndItsBlocks) {
  Lib l("declare database tiny;\nclass c { string a; };");
  ASSERT_COMPILED(l);
  EXPECT_EQ(l.dsize, 168u);
  EXPECT_STREQ(l.name, "tiny");
  EXPECT_EQ(l.nameSize, 5u);
  const zkt_dictionary_t& d = *l.d;
  EXPECT_EQ(d.version_major, 8);
  EXPECT_EQ(d.version_minor, 3);
  EXPECT_EQ(d.version_build, 1803);
  EXPECT_EQ(d.magic_number, 9);
  EXPECT_EQ(d.flags, 0u);
  EXPECT_EQ(d.n_class_codes, 1);
  EXPECT_EQ(d.n_structs, 1);
  EXPECT_EQ(d.v_desc_indexes, nullptr);
  EXPECT_EQ(d.v_desc_events, nullptr);
  EXPECT_EQ(d.v_desc_colls, nullptr);
  EXPECT_EQ(d.str_index_names, nullptr);
  EXPECT_EQ(d.str_class_names[0], nullptr);
  EXPECT_STREQ(d.str_class_names[1], "c");
  EXPECT_EQ(d.exact_OID_sizeof, 0);
  EXPECT_EQ(d.layout_OID_size, 0);
  EXPECT_EQ(d.oid_is_supported, 0);
  for (int i = 0; i < 2; i++) {
    EXPECT_EQ(d.sizeof_zkt_offs_t[i], 8);
    EXPECT_EQ(d.sizeof_zkt_size_t[i], 8);
  }
  const zkt_dict_class_info_t& ci = d.v_class_info[1];
  EXPECT_EQ(ci.first_index_num, -1);
  EXPECT_EQ(ci.last_index_num, -2);
  EXPECT_EQ(ci.first_event_num, -1);
  EXPECT_EQ(ci.last_event_num, -2);
  EXPECT_EQ(ci.list_index_num, -1);
  EXPECT_EQ(ci.autoid_index_num, -1);
  EXPECT_EQ(ci.history_index_num, -1);
  EXPECT_EQ(ci.fixedsize, 0u);
  EXPECT_EQ(ci.flags, 8192);  // not atomic by default
  // The class code 0 record is all zero.
  const zkt_dict_class_info_t zero = zkt_dict_class_info_t();
  EXPECT_EQ(memcmp(&d.v_class_info[0], &zero, sizeof zero), 0);
  // Every block, in the order made: header, struct table, field block, names,
  // the three initialiser tables, class table, class names.
  const struct {
    bool calloc;
    size_t n, size;
  } blocks[] = {{true, 1, 168}, {true, 1, 40}, {true, 1, 64}, {false, 1, 2}, {false, 1, 2}, {true, 1, 4},
                {true, 1, 8},   {false, 1, 0}, {true, 2, 56}, {true, 2, 8},  {false, 1, 2}};
  const std::vector<fakert::Alloc>& a = fakert::allocs();
  ASSERT_EQ(a.size(), sizeof blocks / sizeof blocks[0]);
  for (size_t i = 0; i < a.size(); i++) {
    EXPECT_EQ(a[i].calloc, blocks[i].calloc) << i;
    EXPECT_EQ(a[i].n, blocks[i].n) << i;
    EXPECT_EQ(a[i].size, blocks[i].size) << i;
  }
  EXPECT_NE(d.init_i_data.ptr, nullptr);
  EXPECT_EQ(d.init_i_data_n, 0u);
}

// Header counts and flags under options, with indexes, events and a collation.
TEST(MemoryDict, HeaderCountsAndOptions) {
  const char* schema =
      "declare database h;\nclass a { autoid[10]; char<8> s; unsigned<4> x; list; tree<s collate lat> t; hash<x> hx[5];\n"
      "event<new> en; event<x update> eu; };\nclass b { unsigned<2> y; };";
  zktcomp_options_t o = nosortOpts();
  o.largeDatabase = 1;
  Lib l(schema, o);
  ASSERT_COMPILED(l);
  const zkt_dictionary_t& d = *l.d;
  EXPECT_EQ(d.flags, 1u | 2u);
  EXPECT_EQ(d.n_autoid_indexes, 1);
  EXPECT_EQ(d.n_list_indexes, 2);  // b, fixed-size without indexes, gets one
  EXPECT_EQ(d.n_desc_events, 2);
  EXPECT_EQ(d.n_desc_colls, 1);
  EXPECT_STREQ(d.v_desc_colls[0].name, "lat");
  EXPECT_EQ(d.v_desc_colls[0].type, 7);
  EXPECT_EQ(d.n_desc_indexes, 5);
  EXPECT_EQ(d.max_numof_indexes_per_obj, 4);
  const zkt_dict_class_info_t& a = *l.cls("a");
  EXPECT_EQ(a.first_index_num, 0);
  EXPECT_EQ(a.last_index_num, 3);
  EXPECT_EQ(l.cls("b")->first_index_num, 4);
  EXPECT_EQ(l.index("b.list_index_")->impl_no, 1);  // nosort makes the list index a tree
  EXPECT_GE(a.list_index_num, 0);
  EXPECT_GE(a.autoid_index_num, 0);
  EXPECT_EQ(d.v_desc_indexes[a.autoid_index_num].flags & 4096u, 4096u);
  EXPECT_EQ(d.v_desc_indexes[a.list_index_num].flags & 1024u, 1024u);
  EXPECT_EQ(a.first_event_num, 0);
  EXPECT_EQ(a.last_event_num, 1);
  EXPECT_EQ(l.cls("b")->first_event_num, -1);
  EXPECT_EQ(d.v_desc_events[0].flags, 1);
  EXPECT_EQ(d.v_desc_events[0].field_type, 0);
  const zkt_dict_event_t& eu = d.v_desc_events[1];
  EXPECT_EQ(eu.flags, 2);
  EXPECT_EQ(eu.field_type, 3);
  EXPECT_EQ(eu.field_size, 4u);
  const zkt_dict_field_t* x = Lib::field(l.strct("a"), "x");
  EXPECT_EQ(eu.field_offset, x->layout.u_offset);
  EXPECT_EQ(eu.fld_no, x->no);
  EXPECT_EQ(x->event_id, 1);
  EXPECT_EQ(Lib::field(l.strct("a"), "s")->event_id, 65535);
  // An autoid field's offset is that of its $autoid field.
  const zkt_dict_struct_t* sa = l.strct("a");
  for (int i = 0; i < sa->n_fields; i++) {
    if (sa->fields[i].field_el_type != 14) continue;
    EXPECT_EQ(a.autoid_offset, sa->fields[i].layout.u_offset);
  }
  // nosort keeps the declared order in the run.
  const zkt_dict_struct_t* sb = l.strct("b");
  EXPECT_EQ(sb->fields[0].order_no, 0);
  EXPECT_EQ(std::string(d.str_index_names[0]).substr(0, 2), "a.");
}

TEST(MemoryDict, IndexRecords) {
  Lib l("declare database ix;\nstruct p { unsigned<2> q; unsigned<4> z; };\n"
        "persistent class c { char<4> k; vector<p> ps; vector<unsigned<4>> vs; nullable unsigned<8> n;\n"
        "hash<k> hk[9]; tree<ps.z> tz; tree<vs> tv; tree<n desc> tn; };");
  ASSERT_COMPILED(l);
  ASSERT_EQ(l.msgs.size(), 1u);  // "Tree declaration expected"
  EXPECT_EQ(l.msgs[0].type, ZKTCOMP_WARNING);
  const zkt_dict_struct_t* c = l.strct("c");
  const zkt_dict_struct_t* p = l.strct("p");
  EXPECT_EQ(l.index("c.hk")->impl_no, 2);  // a persistent hash is a disk tree
  EXPECT_EQ(l.index("c.hk")->numof_keys_estimate, 9u);
  const zkt_dict_index_t* tz = l.index("c.tz");
  EXPECT_EQ(tz->vect_field_offset, (int)Lib::field(c, "ps")->layout.u_offset);
  EXPECT_EQ(tz->fields[0].vect_field_offset, tz->vect_field_offset);
  EXPECT_EQ(tz->fields[0].field_offset, Lib::field(p, "z")->layout.u_offset);
  EXPECT_EQ(tz->flags & (8u | 32u | 2048u), 8u | 32u | 2048u);
  const zkt_dict_index_t* tv = l.index("c.tv");
  EXPECT_EQ(tv->fields[0].field_offset, 0u);
  EXPECT_EQ(tv->vect_field_offset, (int)Lib::field(c, "vs")->layout.u_offset);
  EXPECT_EQ(tv->flags & 16u, 16u);
  const zkt_dict_index_t* tn = l.index("c.tn");
  const zkt_dict_index_field_t& nf = tn->fields[0];
  EXPECT_EQ(nf.fld_flags, 1 | 2 | 8);
  EXPECT_EQ(nf.field_type, 12);
  EXPECT_EQ(nf.vect_field_offset, -1);
  EXPECT_EQ(tn->flags & 65536u, 65536u);
  const zkt_dict_field_t* n = Lib::field(c, "n");
  const zkt_dict_field_t* ind = Lib::field(c, "n_indicator");
  EXPECT_EQ(nf.indicator_offset, nf.field_offset + ind->layout.u_offset - n->layout.u_offset);
  EXPECT_EQ(l.index("c.hk")->fields[0].indicator_offset, 0xffffffffu);
  EXPECT_EQ(&c->fields[n->indicator], ind);
  EXPECT_EQ(ind->flags & 64, 64);
  EXPECT_EQ(Lib::field(c, "ps")->struct_num, (int)(p - l.d->v_all_struct));
  EXPECT_EQ(Lib::field(c, "k")->struct_num, -1);
}

TEST(MemoryDict, InitialValues) {
  Lib l("declare database iv;\nenum colour { red, green = 5 };\n"
        "class c { signed<8> big = -1; unsigned<4> small = 7; colour col = green; double d = 2.5; boolean b = true;\n"
        "string s = \"its\"; char<8> q = \"a'bc\\d\"; };");
  ASSERT_COMPILED(l);
  const zkt_dictionary_t& d = *l.d;
  const zkt_dict_struct_t* s = l.strct("c");
  const int32_t* iv = d.init_i_data.ptr;
  ASSERT_EQ(d.init_i_data_n, 5u);
  const zkt_dict_field_t* big = Lib::field(s, "big");
  EXPECT_EQ(iv[big->init_index - 1], -1);  // low word, then high word
  EXPECT_EQ(iv[big->init_index], -1);
  EXPECT_EQ(iv[Lib::field(s, "small")->init_index - 1], 7);
  EXPECT_EQ(iv[Lib::field(s, "col")->init_index - 1], 5);
  EXPECT_EQ(iv[Lib::field(s, "b")->init_index - 1], 1);
  EXPECT_EQ(d.init_d_data_n, 1u);
  EXPECT_EQ(d.init_d_data.ptr[Lib::field(s, "d")->init_index - 1], 2.5);
  const std::string chars(d.init_s_data.ptr, d.init_s_data_n);
  const zkt_dict_field_t* str = Lib::field(s, "s");
  const zkt_dict_field_t* q = Lib::field(s, "q");
  EXPECT_EQ(std::string(d.init_s_data.ptr + str->init_index - 1), "its");
  // The quote is dropped and the character behind it kept; the backslash stays.
  EXPECT_EQ(std::string(d.init_s_data.ptr + q->init_index - 1), "abc\\d");
  EXPECT_EQ(d.init_s_data_n, 4u + 6u);
  EXPECT_EQ(Lib::field(s, "d")->init_index, 1u);
  EXPECT_EQ(fakert::allocOf(d.init_s_data.ptr)->calloc, false);
  EXPECT_EQ(fakert::allocOf(d.init_i_data.ptr)->n, 6u);
}

TEST(MemoryDict, DirectStructsKeepDeclarationOrder) {
  Lib l("declare database ds;\ndirect struct v { unsigned<1> a; double b; unsigned<2> c; };\nclass k { v pos; unsigned<4> z; unsigned<1> y; };");
  ASSERT_COMPILED(l);
  EXPECT_EQ(Lib::run(l.strct("v")), "a b c");
  // Natural alignment inside, tail padding to 8, alignment 1 from outside.
  const zkt_dict_struct_t* v = l.strct("v");
  EXPECT_EQ(Lib::field(v, "b")->layout.u_offset, 8u);
  EXPECT_EQ(Lib::field(v, "c")->layout.u_offset, 16u);
  EXPECT_EQ(v->u_size, 24u);
  EXPECT_EQ(v->c_size, 24);
  EXPECT_EQ(v->u_align, 1u);
  const zkt_dict_field_t* pos = Lib::field(l.strct("k"), "pos");
  EXPECT_EQ(pos->field_el_type, 50);
  EXPECT_EQ(pos->field_size, 24u);
}

struct Refused {
  const char* schema;
  const char* message;
};

TEST(MemoryDict, BuilderErrors) {
  // clang-format off
  const Refused rows[] = {
    { "class c { blob b[2]; };", "Blob cannot be element of array" },
    { "class c { vector<blob> b; };", "Blob cannot be element of vector" },
    { "struct s { unsigned<4> a; };\nclass c { sequence<s> q; };", "python wraper does not support sequence of structs" },
    { "class c { unsigned<4> a = x; };", "initial value for c.a is not integer: \"x\"" },
    { "class c { double a = x; };", "initial value for c.a is not double: \"x\"" },
    { "class c { boolean a = yes; };", "initial value for c.a is not boolean: \"yes\"" },
    { "class c { string a = 5; };", "initial value for c.a is not string literal: \"5\"" },
    { "class c { ref r = 5; };", "Initilizer is not allowed for this type of field: c.r" },
  };
  // clang-format on
  for (const Refused& r : rows) {
    Lib l(std::string("declare database e;\nstruct k { unsigned<4> a; };\ndeclare oid k[10];\n") + r.schema);
    EXPECT_EQ(l.rc, 1005) << r.schema;
    ASSERT_EQ(l.msgs.size(), 1u) << r.schema;
    EXPECT_EQ(l.msgs[0].text, r.message);
    EXPECT_EQ(l.msgs[0].type, ZKTCOMP_ERROR);
    EXPECT_EQ(l.msgs[0].file, "<memory buffer>");
    EXPECT_EQ(l.dsize, 7777u);  // untouched
  }
}

TEST(MemoryDict, OidAndAutoOid) {
  Lib l("declare database o;\nstruct key { unsigned<4> region; unsigned<8> serial; };\ndeclare oid key[5000];\n"
        "declare auto_oid[7];\nclass p { oid; string n; };");
  ASSERT_COMPILED(l);
  // The packed oid: 4, rounded to 4, then 8.
  EXPECT_EQ(l.d->oid_is_supported, 1);
  EXPECT_EQ(l.d->exact_OID_sizeof, 12);
  EXPECT_EQ(l.d->layout_OID_size, 12);
  EXPECT_EQ(l.d->num_oid_estimation, 5000u);
  EXPECT_EQ(l.d->auto_oid_supported, 1);
  EXPECT_EQ(l.d->num_HA_estimation, 7u);
  const zkt_dict_field_t* ao = Lib::field(l.strct("p"), "auto_oid@");
  ASSERT_NE(ao, nullptr);
  EXPECT_EQ(ao->field_el_type, 18);
  EXPECT_EQ(l.cls("p")->auto_oid_offset, ao->layout.u_offset);
  EXPECT_GE(ao->layout.u_offset, 12u);  // behind the oid
}

// Numbers over two bytes keep their low 16 bits in the compact fields; a
// size over 2147483647 is refused.
TEST(MemoryDict, LargeNumbers) {
  Lib big("declare database b;\nclass c { char<70000> a; unsigned<1> z; };");
  ASSERT_COMPILED(big);
  EXPECT_EQ(big.strct("c")->c_size, 70001 & 0xffff);
  EXPECT_EQ(big.strct("c")->u_size, 70001u);
  const char* tooLarge[] = {
      "declare database b;\ndirect struct v { char<100000> a; };\nclass c { v a[30000]; };",
      "declare database b;\nstruct v { char<100000> a; };\nclass c { v a[30000]; };",
  };
  for (const char* schema : tooLarge) {
    Lib l(schema);
    EXPECT_EQ(l.rc, 1005) << schema;
    ASSERT_EQ(l.msgs.size(), 1u) << schema;
    EXPECT_EQ(l.msgs[0].text, "Struct c is too large") << schema;
  }
}

}  // namespace

// Class API: the class functions per condition and option, their C++ methods, cursors and history versions.
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
    "declare database d;\n"
    "declare oid K[10];\n"
    "struct K { unsigned<4> region; };\n";

// The class functions per condition, in order.
TEST(ClassApi, FunctionsPerCondition) {
  struct Case {
    const char* schema;  // behind kHead
    const char* cls;
    Names functions;
  };
  // clang-format off
  const Case cases[] = {
    { "transient class p { oid; char<4> s; tree<s> by_s; };", "p_",
      { "p_new", "p_delete", "p_delete_all", "p_checkpoint", "p_oid_find", "p_oid_get", "p_from_cursor" } },
    { "persistent class p { oid; char<4> s; tree<s> by_s; };", "p_",
      { "p_new", "p_delete", "p_set_allocation_block_size", "p_set_caching_priority", "p_set_fill_factor",
        "p_delete_all", "p_checkpoint", "p_oid_find", "p_oid_get", "p_from_cursor" } },
    { "transient class p { string s; list; };", "p_",
      { "p_new", "p_delete", "p_delete_all", "p_checkpoint", "p_pack", "p_from_cursor", "p_list_cursor" } },
    { "persistent class p { char<4> s; userdef tree<s> u; };", "p_",
      { "p_new", "p_delete", "p_set_allocation_block_size", "p_set_caching_priority", "p_set_fill_factor",
        "p_delete_all", "p_checkpoint", "p_from_cursor", "p_normalize_handle" } },
    { "transient class p { char<4> s; userdef tree<s> u; };", "p_",
      { "p_new", "p_delete", "p_delete_all", "p_checkpoint", "p_from_cursor" } },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o;
    o.debug = true;
    Generated g(std::string(kHead) + c.schema, o);
    ASSERT_TRUE(g.run()) << g.msg;
    // the functions of the field s, of the indexes by_s and u and of the
    // fixed view are not the class's
    Names functions;
    for (const std::string& n : gentest::functionsOf(Generated::text(g.gen.m_h), c.cls))
      if (n.rfind("p_s_", 0) != 0 && n.rfind("p_by_s_", 0) != 0 && n.rfind("p_u_", 0) != 0 &&
          n.rfind("p_fixed_", 0) != 0)
        functions.push_back(n);
    EXPECT_EQ(functions, c.functions) << c.schema;
  }
}

// The bodies, each with its placeholders filled by hand: class code 1, oid d_oid.
TEST(ClassApi, Bodies) {
  struct Case {
    const char* schema;  // behind kHead
    Options opts;
    const char* text;  // in the C file
  };
  Options mergeable;
  mergeable.mergeable = true;
  const char kEvents[] =
      "persistent class p { oid; string s; event<new> n; event<delete> d; event<delete_all> a; event<checkpoint> c; };";
  const char kNoEvents[] = "persistent class p { oid; string s; };";
  const char kNoOid[] = "transient class p { signed<4> a; event<new> n; list; };";
  // clang-format off
  const Case cases[] = {
    { kNoEvents, {}, "{ return zkt_w_obj_delete( (zkt_objhandle_h)handle); \n}\n\n" },
    { kEvents,   {}, "{ return zkt_w_obj_delete_ev( (zkt_objhandle_h)handle, 1); \n}\n\n" },
    { kNoEvents, {}, "{ return zkt_set_class_allocation_block_size(t, 1, block_size); \n}\n\n" },
    { kNoEvents, {}, "{ return zkt_set_class_caching_priority(t, 1, priority); \n}\n\n" },
    { kNoEvents, {}, "{ return zkt_set_class_fill_factor(t, 1, fill_factor); \n}\n\n" },
    { kNoEvents, {}, "{ return zkt_w_obj_delete_all( t, 1 ); \n}\n\n" },
    { kEvents,   {}, "{ return zkt_w_obj_delete_all_ev( t, 1, 2); \n}\n\n" },
    { kNoEvents, {}, "{ return zkt_w_obj_checkpoint( (zkt_objhandle_h)handle );\n}\n\n" },
    { kEvents,   {}, "{ return zkt_w_obj_checkpoint_ev( (zkt_objhandle_h)handle,3 );\n}\n\n" },
    { kNoEvents, {}, "{ return zkt_w_find_byoid(t, id, (zkt_objhandle_h)handle, 1); \n}\n\n" },
    { kNoEvents, {}, "{ return zkt_w_oid_get( (zkt_objhandle_h)handle, id, (uint2) sizeof(*id) );\n}\n\n" },
    { kNoEvents, {}, "{ return zkt_w_compact( (zkt_objhandle_h)handle, 1, 0, pages_released); \n}\n\n" },
    { kNoEvents, {}, "{ return zkt_w_obj_from_cursor( t, c, 1, (zkt_objhandle_h)handle ); \n}\n\n" },
    { kNoOid,    {}, "{ return zkt_w_list_cursor( t, 1, c );\n}\n\n" },
    { kNoOid,    mergeable, "{ return zkt_w_list_cursor( t, dict.class_code_origin + 1, c );\n}\n\n" },
    { kNoEvents, mergeable, "{ return zkt_w_compact( (zkt_objhandle_h)handle, dict.class_code_origin + 1, 0, pages_released); \n}\n\n" },
    { kNoEvents, mergeable, "{ return zkt_set_class_fill_factor(t, dict.class_code_origin + 1, fill_factor); \n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o = c.opts;
    o.debug = true;
    Generated g(std::string(kHead) + c.schema, o);
    ASSERT_TRUE(g.run()) << g.msg;
    EXPECT_NE(Generated::text(g.gen.m_c).find(c.text), std::string::npos) << c.schema << "\n" << c.text;
  }
}

// _new takes the size of the layout the class is stored in: compact or normal.
TEST(ClassApi, NewBySizeAndEvent) {
  struct Case {
    const char* schema;  // behind kHead
    const char* text;    // {init_size} stands for the size
  };
  // clang-format off
  const Case cases[] = {
    { "class p { oid; string s; };",
      "{ return zkt_w_new_obj_oid( t, {init_size}, 1, id, sizeof(*id), (zkt_objhandle_h)handle);\n}\n\n" },
    { "class p { oid; string s; event<new> n; };",
      "{ return zkt_w_new_obj_oid_ev( t, {init_size}, 1, id, sizeof(*id), (zkt_objhandle_h)handle, 0);\n}\n\n" },
    { "compact class p { string s; list; };",
      "{ return zkt_w_new_obj_noid( t, {init_size}, 1, (zkt_objhandle_h)handle);\n}\n\n" },
    { "class p { string s; event<new> n; list; };",
      "{ return zkt_w_new_obj_noid_ev( t, {init_size}, 1, (zkt_objhandle_h)handle, 0);\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o;
    o.debug = true;
    Generated g(std::string(kHead) + c.schema, o);
    ASSERT_TRUE(g.run()) << g.msg;
    const Class& cls = *g.schema().findClass("p");
    const FSize& size = cls.m_compact ? cls.m_layout.c.m_size : cls.m_layout.u.m_size;
    std::string want = c.text;
    want.replace(want.find("{init_size}"), 11, std::to_string(size.m_size_n));
    EXPECT_NE(Generated::text(g.gen.m_c).find(want), std::string::npos) << want;
  }
  Options o;
  Generated g(std::string(kHead) + "compact class p { string s; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const Class& cls = *g.schema().findClass("p");
  EXPECT_NE((int)cls.m_layout.c.m_size, (int)cls.m_layout.u.m_size);  // the case above tells them apart
}

// The prototype pattern: padded return type and name, ";" behind the
// parameters in debug mode; the pack function has no method.
TEST(ClassApi, PrototypesAndMethods) {
  Options o;
  o.debug = true;
  o.hpp = true;
  Generated g(std::string(kHead) + "persistent class p { oid; string s; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  const std::string hpp = Generated::text(g.gen.m_hpp);
  const int width = g.schema().findClass("p")->m_maxFuncName;
  const std::string name = "p_delete";
  const std::string ret = "ZKT_RET" + std::string(g.gen.m_fmtRet - 7, ' ');
  EXPECT_NE(h.find(ret + " " + name + std::string(width - name.size(), ' ') + " ( p *handle );\n"), std::string::npos);
  // clang-format off
  const char* const methods[] = {
    "  ZKT_RET create( zkt_trans_h t, const d_oid *id );\n",
    "inline  ZKT_RET p::create( zkt_trans_h t, const d_oid *id )\n{ ZKT_RET ret_ = d::p_new(t,id,this); set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
    "  ZKT_RET remove();\n",
    "inline  ZKT_RET p::remove()\n{ ZKT_RET ret_; set_valid(false); return (ret_=d::p_delete(this)); \n}\n\n",
    "inline  ZKT_RET p::set_allocation_block_size(zkt_trans_h t, zkt_size_t block_size)\n{ return d::p_set_allocation_block_size(t, block_size); \n}\n\n",
    "inline  ZKT_RET p::set_caching_priority(zkt_trans_h t, int priority)\n{ return d::p_set_caching_priority(t, priority); \n}\n\n",
    "inline  ZKT_RET p::set_fill_factor(zkt_trans_h t, int fill_factor)\n{ return d::p_set_fill_factor(t, fill_factor); \n}\n\n",
    "inline  ZKT_RET p::remove_all( zkt_trans_h t )\n{ ZKT_RET ret_; set_valid(false); return (ret_=d::p_delete_all(t)); \n}\n\n",
    "inline  ZKT_RET p::checkpoint()\n{ ZKT_RET ret_=d::p_checkpoint(this); return ret_;\n}\n\n",
    "inline  ZKT_RET p::oid_find( zkt_trans_h t, const d_oid *id )\n{ ZKT_RET ret_ = d::p_oid_find(t,id,this); set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
    "inline  ZKT_RET p::oid_get( d_oid *id)\n{ ZKT_RET ret_=d::p_oid_get(this,id); return ret_; \n}\n\n",
    "inline  ZKT_RET p::from_cursor( zkt_trans_h t, zkt_cursor_h c )\n{ ZKT_RET ret_ = d::p_from_cursor(t,c,this); set_valid(ret_==ZKT_S_OK); return ret_; \n}\n\n",
    "  static ZKT_RET list_cursor( zkt_trans_h t, /*OUT*/ zkt_cursor_h c );\n",
    "inline  ZKT_RET p::list_cursor( zkt_trans_h t, /*OUT*/ zkt_cursor_h c )\n{ return d::p_list_cursor(t,c); \n}\n\n",
  };
  // clang-format on
  for (const char* m : methods) EXPECT_NE(hpp.find(m), std::string::npos) << m;
  EXPECT_EQ(hpp.find("pack"), std::string::npos);
}

TEST(ClassApi, SuppressedApiKeepsTheFrameOnly) {
  Options o;
  o.debug = true;
  o.hpp = true;
  o.suppress = {"p"};
  Generated g(std::string(kHead) + "class p { oid; signed<4> a; tree<a> ia; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  EXPECT_EQ(gentest::functionsOf(Generated::text(g.gen.m_h), "p_"), Names{});
  EXPECT_NE(Generated::text(g.gen.m_hpp).find("class p : public ZktBase_\n{\n  public:\n\n};\n"), std::string::npos);
}

TEST(ClassApi, PrefixAndDll) {
  Options o;
  o.debug = true;
  o.prefix = true;
  o.dll = true;
  Generated g("declare database d;\nclass p { signed<4> a; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  EXPECT_EQ(gentest::functionsOf(h, "d_p_"),
            (Names{"d_p_new", "d_p_delete", "d_p_delete_all", "d_p_checkpoint", "d_p_a_get", "d_p_a_put",
                   "d_p_from_cursor", "d_p_list_cursor", "d_p_fixed_get", "d_p_fixed_put"}));
  EXPECT_NE(h.find("ZKT_DLL_SPEC d_p_new"), std::string::npos);
}

// No statement makes a history index: the model is set by hand.
TEST(ClassApi, HistoryIndexVersions) {
  Options o;
  o.debug = true;
  o.hpp = true;
  Generated g("declare database d;\nclass p { signed<4> a; tree<a> ia; hash<a> ha[10]; };", o);
  ASSERT_TRUE(g.ok) << g.msg;
  Class& cls = *g.schema().findClass("p");
  cls.v_index[1].m_isHistoryIndex = true;
  cls.m_historyLength = 7;
  const int code = cls.v_index[1].m_code;
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  const std::string c = Generated::text(g.gen.m_c);
  EXPECT_NE(h.find("\n#define p_versions_limit 7\n"), std::string::npos);
  EXPECT_EQ(gentest::functionsOf(h, "p_v"), (Names{"p_version_prev", "p_version_next"}));
  const std::string n = std::to_string(code);
  EXPECT_NE(c.find("{ return zkt_w_version_prev( (zkt_objhandle_h)handle, (zkt_objhandle_h)res_handle, " + n +
                   ");\n}\n\n"),
            std::string::npos);
  EXPECT_NE(c.find("{ return zkt_w_version_next( (zkt_objhandle_h)handle, (zkt_objhandle_h)res_handle, " + n +
                   ");\n}\n\n"),
            std::string::npos);
  EXPECT_EQ(Generated::text(g.gen.m_hpp).find("version"), std::string::npos);
}

}  // namespace

// Event API, XML and JSON methods: texts per event kind, XML suppression, class codes, both placements.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "genout_util.h"

namespace {

using gentest::Generated;
using gentest::Options;

Options debugOpts() {
  Options o;
  o.debug = true;
  return o;
}

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// One event per schema, so its id is 0 and its define 1. Class p's function
// width is 1 (field a) + 1 (index i) + 1 + 16 = 19; every name is longer.
TEST(Events, TextsPerKind) {
  struct Case {
    const char* event;
    const char* h;  // in the header, with -debug
    const char* c;  // the register definition in the C file
  };
  // clang-format off
  const Case cases[] = {
    { "event<new> e;",
      "#define ZKT_EVENT_e  1\n"
      "typedef ZKT_RET (*zkt_e_handler)( zkt_trans_h t, p * obj, ZKT_EVENT_TYPE et, /*INOUT*/ void *param); \n"
      "ZKT_RET      zkt_register_e_handler ( zkt_trans_h t, zkt_e_handler handler, void * param );\n"
      "ZKT_RET      zkt_unregister_e_handler ( zkt_trans_h t, zkt_e_handler handler);\n"
      "\n",
      "ZKT_RET      zkt_register_e_handler ( zkt_trans_h t, zkt_e_handler handler, void * param )\n"
      "{ return zkt_ev_h_register( t, (zkt_generic_ev_handler)handler, 0, param, 0 );\n}\n\n" },
    { "event<delete> e;",
      "#define ZKT_EVENT_e  1\n"
      "typedef ZKT_RET (*zkt_e_handler)( zkt_trans_h t, p * obj, ZKT_EVENT_TYPE et, /*INOUT*/ void *param); \n"
      "ZKT_RET      zkt_register_e_handler ( zkt_trans_h t, zkt_e_handler handler, void * param );\n",
      "{ return zkt_ev_h_register( t, (zkt_generic_ev_handler)handler, 0, param, 0 );\n}\n\n" },
    { "event<delete_all> e;",
      "ZKT_RET      zkt_register_e_handler ( zkt_trans_h t, zkt_e_handler handler, void * param );\n",
      "{ return zkt_ev_h_register( t, (zkt_generic_ev_handler)handler, 0, param, 0 );\n}\n\n" },
    { "event<checkpoint> e;",
      "#define ZKT_EVENT_e  1\n"
      "typedef ZKT_RET (*zkt_e_handler)( zkt_trans_h t, p * obj, ZKT_EVENT_TYPE et, /*INOUT*/ void *param); \n"
      "ZKT_RET      zkt_register_e_handler ( zkt_trans_h t, zkt_e_handler handler, void * param, ZKT_HANDLING_ORDER when );\n"
      "ZKT_RET      zkt_unregister_e_handler ( zkt_trans_h t, zkt_e_handler handler);\n"
      "\n",
      "ZKT_RET      zkt_register_e_handler ( zkt_trans_h t, zkt_e_handler handler, void * param, ZKT_HANDLING_ORDER when )\n"
      "{ return zkt_ev_h_register( t, (zkt_generic_ev_handler)handler, 0, param, (uint2)(when==ZKT_BEFORE_UPDATE) );\n}\n\n" },
    { "event<a update> e;",
      "#define ZKT_EVENT_e  1\n"
      "typedef ZKT_RET (*zkt_e_handler)( zkt_trans_h t, p * obj, ZKT_EVENT_TYPE et, /*INOUT*/ void *param); \n"
      "ZKT_RET      zkt_register_e_handler ( zkt_trans_h t, zkt_e_handler handler, void * param, ZKT_HANDLING_ORDER when );\n",
      "{ return zkt_ev_h_register( t, (zkt_generic_ev_handler)handler, 0, param, (uint2)(when==ZKT_BEFORE_UPDATE) );\n}\n\n" },
  };
  // clang-format on
  for (const Case& c : cases) {
    Generated g(std::string("declare database d;\nclass p { signed<4> a; ") + c.event + " tree<a> i; };", debugOpts());
    ASSERT_TRUE(g.run()) << g.msg;
    const std::string h = Generated::text(g.gen.m_h);
    const std::string cf = Generated::text(g.gen.m_c);
    EXPECT_TRUE(has(h, "/* class p events")) << c.event;
    EXPECT_TRUE(has(h, c.h)) << c.event << "\n" << h;
    EXPECT_TRUE(has(cf, c.c)) << c.event << "\n" << cf;
    EXPECT_TRUE(has(cf, "ZKT_RET      zkt_unregister_e_handler ( zkt_trans_h t, zkt_e_handler handler)\n"
                        "{ return zkt_ev_h_unregister( t, (zkt_generic_ev_handler)handler, 0);\n}\n\n"))
        << c.event;
    // registration is C only
    EXPECT_FALSE(has(Generated::text(g.gen.m_hpp), "handler")) << c.event;
  }
}

// The class update handler gets the field's name, type and value; the second
// event of the schema has id 1 and the define 2. The bitmap field widens the
// functions to 14 + 1 + 1 + 16 = 32.
TEST(Events, ClassUpdateAndSecondEvent) {
  Generated g("declare database d;\nclass p { signed<4> a; boolean updated_bitmap[]; event<new> n; event<update> u; tree<a> i; };",
              debugOpts());
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  EXPECT_TRUE(has(h,
                  "#define ZKT_EVENT_u  2\n"
                  "typedef ZKT_RET (*zkt_u_handler)( zkt_trans_h t, p * obj, int class_code, const char* field_name, "
                  "zkt_dict_type_t field_type,const void * value, /*INOUT*/ void *param); \n"
                  "ZKT_RET      zkt_register_u_handler           ( zkt_trans_h t, zkt_u_handler handler, void * param, "
                  "ZKT_HANDLING_ORDER when );\n"
                  "ZKT_RET      zkt_unregister_u_handler         ( zkt_trans_h t, zkt_u_handler handler);\n"
                  "\n"))
      << h;
  EXPECT_TRUE(has(Generated::text(g.gen.m_c),
                  "{ return zkt_ev_h_register( t, (zkt_generic_ev_handler)handler, 1, param, "
                  "(uint2)(when==ZKT_BEFORE_UPDATE) );\n}\n\n"));
  EXPECT_EQ(std::string(ehandler_name(g.cls("p")->v_events[1]).c_str()), "zkt_u_handler");
}

// A class without events has no events section; a suppressed class none either.
TEST(Events, NoneWithoutEventsOrApi) {
  Options o = debugOpts();
  o.suppress = {"q"};
  Generated g("declare database d;\nclass p { signed<4> a; list; };\nclass q { signed<4> b; event<new> n; list; };", o);
  ASSERT_TRUE(g.run()) << g.msg;
  const std::string h = Generated::text(g.gen.m_h);
  EXPECT_FALSE(has(h, "events")) << h;
  EXPECT_FALSE(has(h, "ZKT_EVENT_")) << h;
}

// Class p: a (1) + i (1) + p (1) + 16 gives the function width 19.
const char kXmlSchema[] = "declare database d;\nclass p { signed<4> a; tree<a> i; };";

Generated* xmlRun(const std::string& schema, Options o) {
  Generated* g = new Generated(schema, o);
  g->gen.m_genXmlMethods = true;
  g->gen.m_genJsonMethods = true;
  return g;
}

TEST(Xml, FunctionsOutOfLine) {
  std::unique_ptr<Generated> g(xmlRun(kXmlSchema, debugOpts()));
  ASSERT_TRUE(g->run()) << g->msg;
  const std::string h = Generated::text(g->gen.m_h);
  const std::string cf = Generated::text(g->gen.m_c);
  // clang-format off
  EXPECT_TRUE(has(h,
      "ZKT_RET      p_xml_get           ( p *handle, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );\n"
      "ZKT_RET      p_xml_put           ( p *handle, const char * xml );\n"
      "ZKT_RET      p_xml_create        ( zkt_trans_h t, const char * xml, /*OUT*/ p * handle); /* create object from XML */\n"
      "ZKT_RET      p_xml_schema        ( zkt_trans_h t, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );\n"
      "ZKT_RET      p_json_get          ( p *handle, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );\n")) << h;
  EXPECT_TRUE(has(cf,
      "ZKT_RET      p_xml_get           ( p *handle, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )\n"
      "{ return zkt_w_xml_get_object( (zkt_objhandle_h)handle,  stream_handle, o_stream, 1); \n}\n\n"
      "ZKT_RET      p_xml_put           ( p *handle, const char * xml )\n"
      "{ return zkt_w_xml_put_object( (zkt_objhandle_h)handle,  xml, 1); \n}\n\n"
      "ZKT_RET      p_xml_create        ( zkt_trans_h t, const char * xml, /*OUT*/ p * handle) /* create object from XML */\n"
      "{ return zkt_w_xml_create_object( t, xml, (zkt_objhandle_h)handle, 1); \n}\n\n"
      "ZKT_RET      p_xml_schema        ( zkt_trans_h t, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )\n"
      "{ return zkt_w_xml_schema(t, stream_handle, o_stream, 1); \n}\n\n"
      "ZKT_RET      p_json_get          ( p *handle, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )\n"
      "{ return zkt_w_json_get_object( (zkt_objhandle_h)handle,  stream_handle, o_stream, 1); \n}\n\n")) << cf;
  // clang-format on
}

// Inline, the note stands between the parameters and the body.
TEST(Xml, CreateInline) {
  std::unique_ptr<Generated> g(xmlRun(kXmlSchema, Options()));
  ASSERT_TRUE(g->run()) << g->msg;
  EXPECT_TRUE(has(Generated::text(g->gen.m_h),
                  "ZKT_TARGET_INLINE ZKT_RET      p_xml_create        ( zkt_trans_h t, const char * xml, /*OUT*/ p * "
                  "handle) /* create object from XML */\n"
                  "{ return zkt_w_xml_create_object( t, xml, (zkt_objhandle_h)handle, 1); \n}\n\n"));
}

TEST(Xml, MergeableClassCode) {
  Options o = debugOpts();
  o.mergeable = true;
  std::unique_ptr<Generated> g(xmlRun(kXmlSchema, o));
  ASSERT_TRUE(g->run()) << g->msg;
  const std::string cf = Generated::text(g->gen.m_c);
  EXPECT_TRUE(has(cf, "{ return zkt_w_xml_schema(t, stream_handle, o_stream, dict.class_code_origin + 1); \n}\n\n"));
  EXPECT_TRUE(has(cf, "o_stream, dict.class_code_origin + 1); \n}\n\nZKT_RET      p_xml_put"));
  EXPECT_TRUE(has(cf, "{ return zkt_w_json_get_object( (zkt_objhandle_h)handle,  stream_handle, o_stream, "
                      "dict.class_code_origin + 1); \n}\n\n"));
}

// The members: a blank after "::" only in xml_get and json_get.
TEST(Xml, CppMembers) {
  Options o;
  o.hpp = true;
  std::unique_ptr<Generated> g(xmlRun(kXmlSchema, o));
  ASSERT_TRUE(g->run()) << g->msg;
  const std::string hpp = Generated::text(g->gen.m_hpp);
  // clang-format off
  EXPECT_TRUE(has(hpp,
      "  ZKT_RET xml_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );\n"
      "  ZKT_RET xml_put( const char * xml );\n"
      "  ZKT_RET xml_create( zkt_trans_h t, const char * xml);\n"
      "  ZKT_RET xml_schema(  zkt_trans_h t, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );\n"
      "  ZKT_RET json_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );\n")) << hpp;
  EXPECT_TRUE(has(hpp,
      "inline  ZKT_RET p:: xml_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )\n"
      "{ return d::p_xml_get(this,stream_handle,o_stream); \n} \n\n"
      "inline  ZKT_RET p::xml_put( const char * xml )\n"
      "{ return d::p_xml_put(this, xml); \n} \n\n"
      "inline  ZKT_RET p::xml_create( zkt_trans_h t, const char * xml )\n"
      "{ ZKT_RET ret_ = d::p_xml_create(t,xml,this); set_valid(ret_==ZKT_S_OK); return ret_; }\n\n"
      "inline  ZKT_RET p::xml_schema(  zkt_trans_h t, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )\n"
      "{ return d::p_xml_schema(t,stream_handle,o_stream); \n} \n\n"
      "inline  ZKT_RET p:: json_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )\n"
      "{ return d::p_json_get(this,stream_handle,o_stream); \n} \n\n")) << hpp;
  // clang-format on
}

// A wide character field of the class's own drops the XML functions, one in
// a struct member doesn't; JSON stays; a suppressed class keeps both.
TEST(Xml, Suppression) {
  struct Case {
    const char* schema;
    std::vector<std::string> suppress;
    bool xml;
  };
  // clang-format off
  const Case cases[] = {
    { "class p { signed<4> a; nstring n; tree<a> i; };",                          {},    false },
    { "class p { signed<4> a; nchar<4> n; tree<a> i; };",                         {},    false },
    { "struct S { nstring n; };\nclass p { signed<4> a; S s; tree<a> i; };",      {},    true },
    { "class p { signed<4> a; string n; tree<a> i; };",                           {},    true },
    { "class p { signed<4> a; tree<a> i; };",                                     {"p"}, true },
  };
  // clang-format on
  for (const Case& c : cases) {
    Options o = debugOpts();
    o.suppress = c.suppress;
    std::unique_ptr<Generated> g(xmlRun(std::string("declare database d;\n") + c.schema, o));
    ASSERT_TRUE(g->run()) << g->msg;
    const std::string h = Generated::text(g->gen.m_h);
    EXPECT_EQ(has(h, "p_xml_get "), c.xml) << c.schema;
    EXPECT_EQ(has(h, "p_xml_schema "), c.xml) << c.schema;
    EXPECT_TRUE(has(h, "p_json_get ")) << c.schema;
  }
}

}  // namespace

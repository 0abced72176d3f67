// XML methods of a class: write an object as XML, read it back, create one from XML, write the class's XML schema.
#include "genout.h"

namespace {

// One XML function: its C suffix, parameters and body, and its C++ member
// (declaration, and definition behind "inline  ZKT_RET {class}::").
struct XmlFunction {
  const char* suffix;
  const char* note;  // behind the prototype's ";", before its line end
  const char* params;
  const char* body;
  const char* decl;
  const char* def;
};

// clang-format off
const XmlFunction kXmlFunctions[] = {
  // suffix, note
  //                 params                                                                                       body
  //                 decl
  //                 def
  { "_xml_get", "",
                   " ( {class} *handle, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )",           "{ return zkt_w_xml_get_object( (zkt_objhandle_h)handle,  stream_handle, o_stream, {cc}); {nl}}{nl}{nl}",
                     "  ZKT_RET xml_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );{nl}",
                     " xml_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream ){nl}{ return {db}::{class}_xml_get(this,stream_handle,o_stream); {nl}} {nl}{nl}" },
  { "_xml_put", "",
                   " ( {class} *handle, const char * xml )",                                                    "{ return zkt_w_xml_put_object( (zkt_objhandle_h)handle,  xml, {cc}); {nl}}{nl}{nl}",
                     "  ZKT_RET xml_put( const char * xml );{nl}",
                     "xml_put( const char * xml ){nl}{ return {db}::{class}_xml_put(this, xml); {nl}} {nl}{nl}" },
  { "_xml_create", " /* create object from XML */",
                   " ( zkt_trans_h t, const char * xml, /*OUT*/ {class} * handle)",                             "{ return zkt_w_xml_create_object( t, xml, (zkt_objhandle_h)handle, {cc}); {nl}}{nl}{nl}",
                     "  ZKT_RET xml_create( zkt_trans_h t, const char * xml);{nl}",
                     "xml_create( zkt_trans_h t, const char * xml ){nl}{ ZKT_RET ret_ = {db}::{class}_xml_create(t,xml,this); set_valid(ret_==ZKT_S_OK); return ret_; }{nl}{nl}" },
  { "_xml_schema", "",
                   " ( zkt_trans_h t, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )",             "{ return zkt_w_xml_schema(t, stream_handle, o_stream, {cc}); {nl}}{nl}{nl}",
                     "  ZKT_RET xml_schema(  zkt_trans_h t, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );{nl}",
                     "xml_schema(  zkt_trans_h t, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream ){nl}{ return {db}::{class}_xml_schema(t,stream_handle,o_stream); {nl}} {nl}{nl}" },
};
// clang-format on

// Element type codes of the wide character fields (nchar<n>, nstring and the
// two wchar forms), which the XML writer of the runtime can't handle.
bool hasWideField(const Class& cls) {
  for (unsigned int i = 0; i < cls.v_field.size(); i++) {
    const int etype = cls.v_field[i].dict_info(true).etype;
    if (etype >= 19 && etype <= 22) return true;
  }
  return false;
}

}  // namespace

void GenOutput::memberFrag(const Class& cls, Frag& fr) const {
  fr.set("class", cls.m_name).set("db", m_sc.m_dbname).set("cc", classCode(cls)).set("nl", "\n");
}

void GenOutput::cFunctionNoted(const mstring& name, int width, const mstring& params, const char* note,
                               const mstring& body) {
  *m_def2 << inline_on_release() << retColumn() << " " << MF(name, width) << params;
  *m_prot << ";";
  *m_def2 << note << "\n";
  *m_body << body;
}

// Only the class's own fields are tested, not those inside a struct member.
void GenOutput::outputXmlRW(Class& cls) {
  if (hasWideField(cls)) return;
  Frag fr;
  memberFrag(cls, fr);
  for (const XmlFunction& f : kXmlFunctions) {
    cFunctionNoted(cls.m_name + f.suffix, cls.m_maxFuncName, fr.fill(f.params), f.note, fr.fill(f.body));
    cppMethod(hppClass(cls.m_name), fr.fill(f.decl), fr.fill(f.def));
  }
}

// JSON method of a class: write an object as JSON.
#include "genout.h"

namespace {

// clang-format off
const char kJsonGetParams[] = " ( {class} *handle, void * stream_handle, /*INOUT*/ zkt_stream_write o_stream )";
const char kJsonGetBody[]   = "{ return zkt_w_json_get_object( (zkt_objhandle_h)handle,  stream_handle, o_stream, {cc}); {nl}}{nl}{nl}";
const char kJsonGetDecl[]   = "  ZKT_RET json_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream );{nl}";
const char kJsonGetDef[]    = " json_get( void * stream_handle, /*INOUT*/ zkt_stream_write o_stream ){nl}{ return {db}::{class}_json_get(this,stream_handle,o_stream); {nl}} {nl}{nl}";
// clang-format on

}  // namespace

// Every class gets it: no field is refused.
void GenOutput::outputJsonW(Class& cls) {
  Frag fr;
  memberFrag(cls, fr);
  cFunction(cls.m_name + "_json_get", cls.m_maxFuncName, fr.fill(kJsonGetParams), fr.fill(kJsonGetBody));
  cppMethod(hppClass(cls.m_name), fr.fill(kJsonGetDecl), fr.fill(kJsonGetDef));
}

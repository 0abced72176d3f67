// Event API: per class event the define of its number, the handler type and the register and unregister functions.
#include "genout.h"

namespace {

// clang-format off
const char kEventDefine[]      = "#define ZKT_EVENT_{name}  {id1}{nl}";
const char kHandlerClassUpd[]  = "typedef ZKT_RET (*zkt_{name}_handler)( zkt_trans_h t, {class} * obj, int class_code, const char* field_name, zkt_dict_type_t field_type,const void * value, /*INOUT*/ void *param); {nl}";
const char kHandlerOther[]     = "typedef ZKT_RET (*zkt_{name}_handler)( zkt_trans_h t, {class} * obj, ZKT_EVENT_TYPE et, /*INOUT*/ void *param); {nl}";
const char kRegisterName[]     = "zkt_register_{name}_handler";
const char kRegisterWhen[]     = " ( zkt_trans_h t, zkt_{name}_handler handler, void * param, ZKT_HANDLING_ORDER when )";
const char kRegisterNoWhen[]   = " ( zkt_trans_h t, zkt_{name}_handler handler, void * param )";
const char kRegisterBody[]     = "{ return zkt_ev_h_register( t, (zkt_generic_ev_handler)handler, {id}, param, {order} );{nl}}{nl}{nl}";
const char kOrderWhen[]        = "(uint2)(when==ZKT_BEFORE_UPDATE)";
const char kOrderNone[]        = "0";
const char kUnregisterName[]   = "zkt_unregister_{name}_handler";
const char kUnregisterParams[] = " ( zkt_trans_h t, zkt_{name}_handler handler)";
const char kUnregisterBody[]   = "{ return zkt_ev_h_unregister( t, (zkt_generic_ev_handler)handler, {id});{nl}}{nl}{nl}";
// clang-format on

// Whether a handler of this kind is registered before or after the update.
bool hasHandlingOrder(Event::Type type) {
  switch (type) {
    case Event::UPDATE:
    case Event::CHECKPOINT:
    case Event::CLASS_UPDATE:
      return true;
    case Event::NONE:
    case Event::NEW:
    case Event::DELETE:
    case Event::DELETE_ALL:
    case Event::EXPRESSION:
      return false;
  }
  throw "unknown case";
}

}  // namespace

mstring ehandler_name(const Event& e) { return "zkt_" + e.m_name + "_handler"; }

// Registration is C only: the events have no C++ members.
void GenOutput::outputEvents(Class& cls) {
  for (unsigned int i = 0; i < cls.v_events.size(); i++) {
    const Event& e = cls.v_events[i];
    const bool when = hasHandlingOrder(e.m_type);
    Frag fr;
    fr.set("name", e.m_name).set("class", cls.m_name).set("nl", "\n");
    fr.set("id", (long)e.m_eventId).set("id1", (long)e.m_eventId + 1);
    fr.set("order", when ? kOrderWhen : kOrderNone);
    fr.fillTo(*m_h, kEventDefine);
    fr.fillTo(*m_h, e.m_type == Event::CLASS_UPDATE ? kHandlerClassUpd : kHandlerOther);
    cFunction(fr.fill(kRegisterName), cls.m_maxFuncName, fr.fill(when ? kRegisterWhen : kRegisterNoWhen),
              fr.fill(kRegisterBody));
    cFunction(fr.fill(kUnregisterName), cls.m_maxFuncName, fr.fill(kUnregisterParams), fr.fill(kUnregisterBody));
    *m_h << "\n";
  }
}
